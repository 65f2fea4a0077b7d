#include "model/library.h"

#include "base/text8.h"
#include "model/accessorcontext.h"
#include "model/libraryitem.h"

#include <algorithm>
#include <utility>

namespace embeddedhost {

using namespace tarno::datamodel;
using nlohmann::ordered_json;

CLibrary::CLibrary(QString const& folder, QString const& name, CMessageChannel& messages)
    : m_Folder(folder)
    , m_Name(name)
    , m_Messages(messages)
    , m_Self(new AccessorContext(*this), kLibraryHandle)
    , m_Database(new CObjectDatabase(*this))
{}

CLibrary::~CLibrary()
{
    Close();
}

QString const& CLibrary::GetFolder() const
{
    return m_Folder;
}

QString const& CLibrary::GetName() const
{
    return m_Name;
}

bool CLibrary::IsInMemory() const
{
    return m_Folder.isEmpty();
}

CMessageChannel& CLibrary::GetMessages() const
{
    return m_Messages;
}

CObjectDatabase& CLibrary::GetDatabase() const
{
    return *m_Database;
}

CLibraryNotifier& CLibrary::GetNotifier() const
{
    return m_Self.GetContext()->GetNotifier();
}

ItemLibraryAccessor CLibrary::GetAccessor() const
{
    return ItemLibraryAccessor(m_Self.GetContext(), kLibraryHandle);
}

std::vector<DataSourcePtr> const& CLibrary::GetSources() const
{
    return m_Sources;
}

void CLibrary::AddSource(DataSourcePtr const& source)
{
    m_Sources.push_back(source);
}

std::shared_ptr<MemoryStore> const& CLibrary::GetMemoryStore() const
{
    return m_MemoryStore;
}

void CLibrary::SetMemoryStore(std::shared_ptr<MemoryStore> const& store)
{
    m_MemoryStore = store;
}

CLibrary::Items const& CLibrary::GetItems(KindIndex kind) const
{
    Items& items = m_Items[std::size_t(kind)];
    if (std::exchange(m_HasTakenOutItems[std::size_t(kind)], false)) {
        auto const isTakenOut = [](CLibraryItem const* item) {
            return item->GetIdentity().item != item;
        };
        items.erase(std::remove_if(items.begin(), items.end(), isTakenOut), items.end());
    }
    return items;
}

std::size_t CLibrary::GetItemCount() const
{
    std::size_t count = 0;
    for (KindIndex kind = 0; kind < kKindCount; ++kind)
        count += GetItems(kind).size();
    return count;
}

CLibraryItem* CLibrary::FindItem(char const* uid) const
{
    // The identity table is global, but only the open library has items.
    return m_Self.GetContext()->GetLibrary() ? FindItemByUid(uid) : nullptr;
}

bool CLibrary::HasUid(char const* uid) const
{
    return FindItem(uid) || m_Database->HasFixedObject(uid);
}

bool CLibrary::HasName(char const* name) const
{
    std::string const kept = ToKeptText8(name);
    auto const hasName = [&](CLibraryItem const* item) {
        return EqualIgnoringAsciiCase(item->GetName(), kept.c_str());
    };
    for (KindIndex kind = 0; kind < kKindCount; ++kind) {
        Items const& items = GetItems(kind);
        if (std::any_of(items.begin(), items.end(), hasName))
            return true;
    }
    return false;
}

CLibraryItem& CLibrary::AddItem(LibraryFile& file, ordered_json object)
{
    ListedObject const listed = ListObject(object);
    ItemIdentity& identity = GetItemIdentity(listed.kind, listed.uid);
    int const cacheIndex = m_Database->AddItem(identity);
    return List(m_Pool.Add(identity, file, std::move(object), cacheIndex, m_Arena));
}

CLibraryItem& CLibrary::AddItem(LibraryFile& file, ListedObject const& listed,
                                ObjectPlace const& place)
{
    ItemIdentity& identity = GetItemIdentity(listed.kind, listed.uid);
    int const cacheIndex = m_Database->AddItem(identity);
    return List(m_Pool.Add(identity, file, listed, place, cacheIndex, m_Arena));
}

CLibraryItem& CLibrary::List(CLibraryItem& item)
{
    // The identity comes last: if the push fails, the item cannot be found.
    m_Items[std::size_t(GetKindIndex(item.GetIdentity().kind))].push_back(&item);
    item.GetIdentity().item = &item;
    return item;
}

LibraryFile& CLibrary::AddFile(LibraryFile file)
{
    m_Files.push_back(std::make_unique<LibraryFile>(std::move(file)));
    m_FilesByPath.insert(m_Files.back()->path, m_Files.back().get());
    return *m_Files.back();
}

std::vector<std::unique_ptr<LibraryFile>> const& CLibrary::GetFiles() const
{
    return m_Files;
}

LibraryFile* CLibrary::FindFile(QString const& path) const
{
    LibraryFile* const known = m_FilesByPath.value(path);
    if (known && known->path == path)
        return known;
    auto const found =
        std::find_if(m_Files.begin(), m_Files.end(),
                     [&](std::unique_ptr<LibraryFile> const& file) { return file->path == path; });
    if (found == m_Files.end())
        return nullptr;
    m_FilesByPath.insert(path, found->get());
    return found->get();
}

void CLibrary::Close()
{
    if (!m_Self.GetContext()->GetLibrary())
        return;
    m_Self.GetContext()->Close();
    m_Database->Close();
    for (Items const& items : m_Items) {
        for (CLibraryItem const* item : items) {
            // Unless the item of another library has it by now.
            if (item->GetIdentity().item == item)
                item->GetIdentity().item = nullptr;
        }
    }
}

} // namespace embeddedhost
