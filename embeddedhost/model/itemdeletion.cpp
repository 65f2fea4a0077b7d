#include "model/itemdeletion.h"

#include "base/text8.h"
#include "model/graphjson.h"
#include "model/itemkeys.h"
#include "model/librarycommands.h"
#include "model/libraryitem.h"

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

bool IsUser(ordered_json const& object, std::string const& uid)
{
    for (char const* const key : {Keys::kImplements, Keys::kParent, Keys::kSpecializes}) {
        auto const found = object.find(key);
        if (found != object.end() && *found == uid)
            return true;
    }
    // Its faults were reported when the library was read.
    GraphBody const body = ReadGraphBody(object, [](std::string const&, std::string const&) {});
    return std::any_of(body.nodes.begin(), body.nodes.end(),
                       [&uid](GraphNode const& node) { return node.item == uid; });
}

/// Undone before a save, the file is as it was, with what was unsaved in it; after one, the item is
/// unsaved, at its old place in the file.
class CDeleteItemCommand final : public CLibraryCommand
{
public:
    CDeleteItemCommand(CLibrary& library, CLibraryItem const& item)
        : CLibraryCommand(library, std::string("Delete ") + item.GetName())
        , m_Uid(item.GetIdentity().uid)
    {}

    void Do() override
    {
        CLibrary* const library = GetLibrary();
        CLibraryItem* const item = library ? library->FindItem(m_Uid.c_str()) : nullptr;
        if (!item)
            return;
        LibraryFile const& file = item->GetFile();
        auto const isEntry = [item](LibraryFile::Entry const& entry) {
            return entry.item == item;
        };
        m_Place =
            std::find_if(file.entries.begin(), file.entries.end(), isEntry) - file.entries.begin();
        m_Source = file.source;
        m_Path = file.path;
        m_Digest = file.digest;
        m_HadOtherEntries = file.hasOtherEntries;
        m_Object = item->GetObject();
        m_Saved = item->GetSavedObject();
        library->RemoveItem(*item);
    }

    void Undo() override
    {
        CLibrary* const library = GetLibrary();
        if (!library || library->FindItem(m_Uid.c_str()))
            return;
        LibraryFile* const file = library->FindFile(m_Path);
        if (!file || file->digest.isEmpty())
            library->AddNewItem(m_Source, m_Path, m_Object);
        else
            library->AddSavedItem(*file, m_Object);
        // A listener may have closed the library, or taken the item away again.
        CLibraryItem* const item = GetLibrary() ? GetLibrary()->FindItem(m_Uid.c_str()) : nullptr;
        if (item)
            Restore(*item);
    }

private:
    void Restore(CLibraryItem& item) const
    {
        LibraryFile& file = item.GetFile();
        bool const isAsBefore = file.digest == m_Digest;
        item.SetSavedObject(isAsBefore ? m_Saved : ordered_json());
        file.hasOtherEntries = !isAsBefore || m_HadOtherEntries;
        std::ptrdiff_t const last = std::ptrdiff_t(file.entries.size()) - 1;
        if (m_Place < last)
            std::rotate(file.entries.begin() + m_Place, file.entries.begin() + last,
                        file.entries.end());
    }

    std::string const m_Uid;
    // As they were before the item was taken out.
    std::ptrdiff_t m_Place = 0;
    DataSourcePtr m_Source;
    QString m_Path;
    QByteArray m_Digest;
    bool m_HadOtherEntries = false;
    ordered_json m_Object;
    /// What was on disk of it.
    ordered_json m_Saved;
};

} // namespace

std::vector<CLibraryItem*> FindUsers(CLibrary const& library, CLibraryItem const& item)
{
    std::vector<CLibraryItem*> users;
    std::string const uid = item.GetIdentity().uid;
    for (KindIndex kind = 0; kind < kKindCount; ++kind)
        for (CLibraryItem* const other : library.GetItems(kind))
            if (other != &item && IsUser(other->CopyObject(), uid))
                users.push_back(other);
    return users;
}

bool DeleteItem(CLibrary& library, CLibraryItem& item, wek::fwk::ICommandManager* manager)
{
    if (item.IsReadOnly()) {
        library.GetMessages().Post(eSeverity::kWarning,
                                   QStringLiteral("Cannot delete \"%1\": it is read-only.")
                                       .arg(FromText8(item.GetName())));
        return false;
    }
    RunCommand(new CDeleteItemCommand(library, item), manager);
    return true;
}

} // namespace embeddedhost
