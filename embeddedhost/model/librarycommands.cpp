#include "model/librarycommands.h"

#include "base/text8.h"
#include "model/accessorcontext.h"
#include "model/libraryedits.h"
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
    if (item)
        library->ChangeObject(*item, ApplyChange(item->GetObject(), from, to));
}

CAddItemCommand::CAddItemCommand(CLibrary& library, DataSourcePtr const& source,
                                 QString const& path, ordered_json object, std::string const& text)
    : CLibraryCommand(library, text)
    , m_Source(source)
    , m_Path(path)
    , m_Object(std::move(object))
    , m_Uid(embeddedhost::GetUid(m_Object))
{}

void CAddItemCommand::Do()
{
    CLibrary* const library = GetLibrary();
    if (library && !library->FindItem(m_Uid.c_str()))
        library->AddNewItem(m_Source, m_Path, m_Object);
}

void CAddItemCommand::Undo()
{
    CLibrary* const library = GetLibrary();
    CLibraryItem* const item = library ? library->FindItem(m_Uid.c_str()) : nullptr;
    if (!item)
        return;
    // A redo restores the item with later changes.
    m_Object = item->GetObject();
    library->RemoveItem(*item);
}

CRemoveItemCommand::CRemoveItemCommand(CLibrary& library, CLibraryItem const& item,
                                       std::string const& text)
    : CLibraryCommand(library, text)
    , m_Uid(item.GetIdentity().uid)
    , m_Path(item.GetFile().path)
{}

void CRemoveItemCommand::Do()
{
    CLibrary* const library = GetLibrary();
    CLibraryItem* const item = library ? library->FindItem(m_Uid.c_str()) : nullptr;
    if (!item)
        return;
    m_Object = item->GetObject();
    m_SavedObject = item->GetSavedObject();
    m_Digest = item->GetFile().digest;
    library->RemoveItem(*item);
}

void CRemoveItemCommand::Undo()
{
    CLibrary* library = GetLibrary();
    LibraryFile* const file = library ? library->FindFile(m_Path) : nullptr;
    if (!file || library->FindItem(m_Uid.c_str()))
        return;
    if (file->digest.isEmpty() || file->digest != m_Digest) {
        // A save has removed the file meanwhile, and another program may have made one of its name.
        QString const path =
            file->entries.empty()
                ? m_Path
                : FindFreePath(*library, file->source, ToText8(GetName(m_Object)).c_str());
        library->AddNewItem(file->source, path, m_Object);
        return;
    }
    file->hasOtherEntries = false;
    library->AddSavedItem(*file, m_Object);
    // A listener may have closed the library or removed the item.
    library = GetLibrary();
    if (CLibraryItem* const item = library ? library->FindItem(m_Uid.c_str()) : nullptr)
        item->SetSavedObject(m_SavedObject);
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
    wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> const kept(command);
    if (manager)
        manager->Execute(kept);
    else
        kept->Do();
}

} // namespace embeddedhost
