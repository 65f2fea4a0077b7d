#include "model/detacheditem.h"

#include "base/text8.h"
#include "model/accessorcontext.h"
#include "model/libraryedits.h"
#include "model/libraryitem.h"

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

DetachedItem::DetachedItem(DataSourcePtr const& source, QString const& path, ordered_json object)
    : m_Uid(GetUid(object))
    , m_Source(source)
    , m_Path(path)
    , m_Object(std::move(object))
{}

DetachedItem::DetachedItem(CLibraryItem const& item)
{
    Record(item);
}

void DetachedItem::Record(CLibraryItem const& item)
{
    LibraryFile const& file = item.GetFile();
    m_Uid = item.GetIdentity().uid;
    m_Source = file.source;
    m_Path = file.path;
    m_Object = item.GetObject();
    m_SavedObject = item.GetSavedObject();
    m_Digest = file.digest;
    m_HadOtherEntries = file.hasOtherEntries;
    auto const isEntry = [&item](LibraryFile::Entry const& entry) {
        return entry.item == &item;
    };
    m_Place =
        std::find_if(file.entries.begin(), file.entries.end(), isEntry) - file.entries.begin();
}

void DetachedItem::PutInto(CLibrary& library) const
{
    if (library.FindItem(m_Uid.c_str()))
        return;
    tarno::datamodel::ItemLibraryAccessor const kept = library.GetAccessor();
    Add(library);
    // A listener may have closed the library, or taken the item away again.
    CLibrary* const present = kept.GetContext()->GetLibrary();
    if (CLibraryItem* const item = present ? present->FindItem(m_Uid.c_str()) : nullptr)
        RestoreFile(*item);
}

void DetachedItem::Add(CLibrary& library) const
{
    LibraryFile* const file = library.FindFile(m_Path);
    bool const isOnDisk = file && !file->digest.isEmpty();
    if (isOnDisk && (file->isArray || (file->digest == m_Digest && file->entries.empty()))) {
        library.AddSavedItem(*file, m_Object);
        return;
    }
    // A save has removed the file, and another program may have made one of its name.
    bool const isFree = !file || file->entries.empty();
    library.AddNewItem(m_Source,
                       isFree ? m_Path
                              : FindFreePath(library, m_Source, ToText8(GetName(m_Object)).c_str()),
                       m_Object);
}

void DetachedItem::RestoreFile(CLibraryItem& item) const
{
    LibraryFile& file = item.GetFile();
    if (file.path != m_Path)
        return;
    bool const isAsBefore = file.digest == m_Digest;
    item.SetSavedObject(isAsBefore ? m_SavedObject : ordered_json());
    file.hasOtherEntries = !isAsBefore || m_HadOtherEntries;
    std::ptrdiff_t const last = std::ptrdiff_t(file.entries.size()) - 1;
    if (m_Place < last)
        std::rotate(file.entries.begin() + m_Place, file.entries.begin() + last,
                    file.entries.end());
}

void DetachedItem::TakeOutOf(CLibrary& library)
{
    CLibraryItem* const item = library.FindItem(m_Uid.c_str());
    if (!item)
        return;
    Record(*item);
    library.RemoveItem(*item);
}

} // namespace embeddedhost
