#include "model/librarycommands.h"

#include "model/accessorcontext.h"
#include "model/libraryitem.h"

namespace embeddedhost {

using nlohmann::ordered_json;

CLibraryCommand::CLibraryCommand(CLibrary& library, std::string const& text)
    : m_Accessor(library.GetAccessor())
    , m_Text(text)
{}

void CLibraryCommand::AddRef()
{
    ++m_References;
}

void CLibraryCommand::Release()
{
    if (--m_References == 0)
        delete this;
}

char const* CLibraryCommand::GetText() const
{
    return m_Text.c_str();
}

CLibrary* CLibraryCommand::GetLibrary() const
{
    return m_Accessor.GetContext()->GetLibrary();
}

CChangeObjectCommand::CChangeObjectCommand(CLibrary& library, CLibraryItem const& item,
                                           ordered_json changed, std::string const& text)
    : CLibraryCommand(library, text)
    , m_Uid(item.GetIdentity().uid)
    , m_Before(item.GetObject())
    , m_After(std::move(changed))
{}

void CChangeObjectCommand::Do()
{
    Change(m_Before, m_After);
}

void CChangeObjectCommand::Undo()
{
    Change(m_After, m_Before);
}

void CChangeObjectCommand::Change(ordered_json const& from, ordered_json const& to)
{
    CLibrary* const library = GetLibrary();
    CLibraryItem* const item = library ? library->FindItem(m_Uid.c_str()) : nullptr;
    // Only the difference is applied, since other changes may have been made meanwhile, on disk
    // too.
    if (item)
        library->ChangeObject(*item, ApplyChange(item->GetObject(), from, to));
}

CAddItemCommand::CAddItemCommand(CLibrary& library, DataSourcePtr const& source,
                                 QString const& path, ordered_json object, std::string const& text)
    : CLibraryCommand(library, text)
    , m_Item(source, path, std::move(object))
{}

void CAddItemCommand::Do()
{
    if (CLibrary* const library = GetLibrary())
        m_Item.PutInto(*library);
}

void CAddItemCommand::Undo()
{
    if (CLibrary* const library = GetLibrary())
        m_Item.TakeOutOf(*library);
}

CRemoveItemCommand::CRemoveItemCommand(CLibrary& library, CLibraryItem const& item,
                                       std::string const& text)
    : CLibraryCommand(library, text)
    , m_Item(item)
{}

void CRemoveItemCommand::Do()
{
    if (CLibrary* const library = GetLibrary())
        m_Item.TakeOutOf(*library);
}

void CRemoveItemCommand::Undo()
{
    if (CLibrary* const library = GetLibrary())
        m_Item.PutInto(*library);
}

CCommandGroup::CCommandGroup(CLibrary& library, Commands const& commands, std::string const& text)
    : CLibraryCommand(library, text)
    , m_Commands(commands)
{}

void CCommandGroup::Do()
{
    std::size_t done = 0;
    try {
        for (; done < m_Commands.size(); ++done)
            m_Commands[done]->Do();
    } catch (...) {
        while (done > 0)
            m_Commands[--done]->Undo();
        throw;
    }
}

void CCommandGroup::Undo()
{
    for (auto command = m_Commands.rbegin(); command != m_Commands.rend(); ++command)
        (*command)->Undo();
}

void RunCommand(CLibraryCommand* command, wek::fwk::ICommandManager* manager)
{
    // The first reference. Without a manager it is the only one, and the command ends here.
    wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> const kept(command);
    if (manager)
        manager->Execute(kept);
    else
        kept->Do();
}

} // namespace embeddedhost
