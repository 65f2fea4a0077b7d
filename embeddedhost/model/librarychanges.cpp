#include "model/library.h"

#include "model/accessorcontext.h"
#include "model/libraryitem.h"
#include "model/librarynotifier.h"

#include <algorithm>
#include <set>

namespace embeddedhost {

using namespace tarno::datamodel;
using nlohmann::ordered_json;

namespace {

/// The tag categories of which the two objects have different texts; 8-bit.
std::set<std::string> FindChangedCategories(ordered_json const& before, ordered_json const& after)
{
    std::set<std::string> changed;
    ordered_json const none = ordered_json::object();
    ordered_json const& a = before.contains("tags") ? before["tags"] : none;
    ordered_json const& b = after.contains("tags") ? after["tags"] : none;
    for (ordered_json const* const tags : {&a, &b}) {
        for (auto const& [category, text] : tags->items()) {
            if (a.value(category, ordered_json()) != b.value(category, ordered_json()))
                changed.insert(category);
        }
    }
    return changed;
}

/// Tells the beginning and the end of a change, the end also when a listener raises.
class ChangeScope
{
public:
    explicit ChangeScope(CLibrary& library)
        : m_Kept(library.GetAccessor())
    {
        GetNotifier().BeginChanges();
    }
    ~ChangeScope()
    {
        try {
            GetNotifier().EndChanges();
        } catch (...) {
            // The change is made, and what raised first is on its way already.
        }
    }

    CLibraryNotifier& GetNotifier() const
    {
        return m_Kept.GetContext()->GetNotifier();
    }

    bool IsLibraryOpen() const
    {
        return m_Kept.GetContext()->GetLibrary() != nullptr;
    }

private:
    ItemLibraryAccessor const m_Kept;
};

} // namespace

bool LibraryFile::IsModified() const
{
    // What came and went without being saved has left no file to remove.
    bool const isNowhere = entries.empty() && digest.isEmpty();
    return (hasOtherEntries && !isNowhere)
           || std::any_of(entries.begin(), entries.end(), [](Entry const& entry) {
                  return entry.item && entry.item->IsModified();
              });
}

void CLibrary::ChangeObject(CLibraryItem& item, ordered_json object)
{
    ItemID const id(&item.GetIdentity());
    ChangeScope const change(*this);
    if (!change.IsLibraryOpen() || item.GetIdentity().item != &item)
        return;
    ordered_json const before = item.GetObject();
    std::string const oldName = item.GetName();
    item.SetObject(std::move(object));
    bool const hasNewName = oldName != item.GetName();
    std::set<std::string> const categories =
        FindChangedCategories(before, item.GetObject());
    if (hasNewName)
        change.GetNotifier().NameChanged(id);
    for (std::string const& category : categories)
        change.GetNotifier().TagsChanged(id, category);
}

void CLibrary::AddNewItem(DataSourcePtr const& source, QString const& path, ordered_json object)
{
    ChangeScope const change(*this);
    if (!change.IsLibraryOpen())
        return;
    LibraryFile* file = FindFile(path);
    if (!file)
        file = &AddFile({path, source, false, {}});
    CLibraryItem& item = AddItem(*file, std::move(object));
    // Nothing of it is on disk.
    item.SetSavedObject(ordered_json());
    file->entries.push_back({&item, ordered_json()});
    file->hasOtherEntries = true;
    change.GetNotifier().ItemAdded(ItemID(&item.GetIdentity()));
}

void CLibrary::AddSavedItem(LibraryFile& file, ordered_json object)
{
    ChangeScope const change(*this);
    if (!change.IsLibraryOpen())
        return;
    CLibraryItem& item = AddItem(file, std::move(object));
    file.entries.push_back({&item, ordered_json()});
    change.GetNotifier().ItemAdded(ItemID(&item.GetIdentity()));
}

void CLibrary::AddLeftOutItem(LibraryFile& file, std::size_t entry)
{
    ChangeScope const change(*this);
    // Listeners have been told already, and may have changed the file.
    if (!change.IsLibraryOpen() || entry >= file.entries.size() || file.entries[entry].item)
        return;
    CLibraryItem& item = AddItem(file, file.entries[entry].other);
    file.entries[entry] = {&item, ordered_json()};
    change.GetNotifier().ItemAdded(ItemID(&item.GetIdentity()));
}

void CLibrary::RemoveItem(CLibraryItem& item)
{
    ItemID const id(&item.GetIdentity());
    ChangeScope const change(*this);
    if (!change.IsLibraryOpen() || item.GetIdentity().item != &item)
        return;
    TakeOut(item);
    change.GetNotifier().ItemRemoved(id);
}

/// The item itself stays in the pool: there may be pointers to it up the stack.
void CLibrary::TakeOut(CLibraryItem& item)
{
    LibraryFile& file = item.GetFile();
    file.entries.erase(std::remove_if(file.entries.begin(), file.entries.end(),
                                      [&](LibraryFile::Entry const& entry) {
                                          return entry.item == &item;
                                      }),
                       file.entries.end());
    file.hasOtherEntries = true;
    Items& items = m_Items[std::size_t(GetKindIndex(item.GetIdentity().kind))];
    items.erase(std::remove(items.begin(), items.end(), &item), items.end());
    // The map by uid keeps the item; without its identity it is not found any more.
    item.GetIdentity().item = nullptr;
}

void CLibrary::MoveFile(CLibraryItem& item, DataSourcePtr const& source, QString const& path)
{
    ChangeScope const change(*this);
    if (!change.IsLibraryOpen() || item.GetIdentity().item != &item)
        return;
    item.GetFile().source = source;
    item.GetFile().path = path;
    change.GetNotifier().Invalidated();
}

} // namespace embeddedhost
