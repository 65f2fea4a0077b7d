#include "model/library.h"

#include "base/text8.h"
#include "model/accessorcontext.h"
#include "model/libraryitem.h"
#include "model/librarynotifier.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

namespace embeddedhost {

using namespace tarno::datamodel;
using nlohmann::ordered_json;

namespace {

/// Tag strings by category, 8-bit.
typedef std::map<std::string, std::string> Tags;

Tags ReadTags(ordered_json const& object)
{
    Tags tags;
    for (auto const& [category, text] : ListObject(object).tags)
        tags.emplace(ToText8(std::string(category)), ToText8(std::string(text)));
    return tags;
}

/// The tag categories of which the two objects have different texts; 8-bit.
std::set<std::string> FindChangedCategories(ordered_json const& before, ordered_json const& after)
{
    Tags const a = ReadTags(before);
    Tags const b = ReadTags(after);
    std::vector<Tags::value_type> different;
    std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(),
                                  std::back_inserter(different));
    std::set<std::string> changed;
    for (auto const& [category, text] : different)
        changed.insert(category);
    return changed;
}

/// Whether the change affects the item's place or look in lists.
bool IsListedDifferently(ordered_json const& before, ordered_json const& after)
{
    auto const differs = [&](char const* key) {
        return before.value(key, ordered_json()) != after.value(key, ordered_json());
    };
    auto const keys = {Keys::kSignature, Keys::kLoop, Keys::kParent, Keys::kSpecializes,
                       Keys::kReadOnly};
    return std::any_of(keys.begin(), keys.end(), differs);
}

/// Announces the beginning and the end of a change.
class ChangeScope
{
public:
    explicit ChangeScope(CLibrary& library)
        : m_Kept(library.GetAccessor())
    {
        GetNotifier().BeginChanges();
    }
    // Announced even if a listener has closed the library in between: each beginning has an end.
    ~ChangeScope()
    {
        GetNotifier().EndChanges();
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
    // Items added and removed between two saves never had a file.
    bool const isNowhere = entries.empty() && digest.isEmpty();
    return (hasOtherEntries && !isNowhere)
           || std::any_of(entries.begin(), entries.end(), [](Entry const& entry) {
                  return entry.item && entry.item->IsModified();
              });
}

void CLibrary::ChangeObject(CLibraryItem& item, ordered_json object)
{
    ItemID const id(&item.GetIdentity());
    ordered_json const before = item.GetObject();
    ChangeScope const change(*this);
    if (!change.IsLibraryOpen() || item.GetIdentity().item != &item)
        return;
    // A listener of the beginning may have changed the item itself.
    if (item.GetObject() != before)
        object = ApplyChange(item.GetObject(), before, object);
    // Everything that may throw comes before the change, which is always announced.
    std::string const oldName = item.GetName();
    auto const categories = FindChangedCategories(item.GetObject(), object);
    bool const isListedDifferently = IsListedDifferently(item.GetObject(), object);
    item.SetObject(std::move(object), m_Arena);
    if (oldName != item.GetName())
        change.GetNotifier().NameChanged(id);
    for (std::string const& category : categories)
        change.GetNotifier().TagsChanged(id, category);
    if (isListedDifferently)
        change.GetNotifier().Invalidated();
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
    // It is not on disk yet.
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
    // Listeners of the beginning may have changed the file.
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

/// The item itself stays in the pool, because callers may still hold pointers to it.
void CLibrary::TakeOut(CLibraryItem& item)
{
    LibraryFile& file = item.GetFile();
    // From the end, where FileReconciler sorts the items that it removes.
    auto const isEntry = [&](LibraryFile::Entry const& entry) {
        return entry.item == &item;
    };
    auto const last = std::find_if(file.entries.rbegin(), file.entries.rend(), isEntry);
    if (last != file.entries.rend())
        file.entries.erase(last.base() - 1);
    file.hasOtherEntries = true;
    m_HasTakenOutItems[std::size_t(GetKindIndex(item.GetIdentity().kind))] = true;
    // Without its identity the item cannot be found any more.
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

bool CLibrary::SetReadOnly(LibraryFile& file, bool isReadOnly)
{
    if (file.isReadOnly == isReadOnly)
        return true;
    ItemLibraryAccessor const kept = GetAccessor();
    {
        // In a block, because listeners to its end may close the library, too.
        ChangeScope const change(*this);
        if (change.IsLibraryOpen()) {
            file.isReadOnly = isReadOnly;
            change.GetNotifier().Invalidated();
        }
    }
    return kept.Revalidate();
}

} // namespace embeddedhost
