#include "storage/filereconciler.h"

#include "model/libraryitem.h"
#include "storage/filedigest.h"
#include "storage/folderscan.h"
#include "storage/jsonfile.h"
#include "storage/objectreader.h"

#include <QFileInfo>

#include <map>
#include <set>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

typedef std::map<std::string, ordered_json> ObjectsByUid;

/// Brings one file's items up to what is on disk. The library stays in memory meanwhile, but a
/// listener may close it.
class FileReconciler
{
public:
    FileReconciler(CLibrary& library, LibraryFile& file)
        : m_Library(library)
        , m_Kept(library.GetAccessor())
        , m_File(file)
    {
    }

    void Apply(ObjectsByUid const& objects)
    {
        for (std::string const& uid : GetUids()) {
            CLibraryItem* const item = m_Library.FindItem(uid.c_str());
            if (IsOpen() && item && &item->GetFile() == &m_File)
                Update(*item, objects);
        }
        for (auto const& [uid, object] : objects) {
            if (IsOpen() && !m_Library.FindItem(uid.c_str())
                && !m_Library.GetDatabase().HasFixedObject(uid.c_str()))
                m_Library.AddSavedItem(m_File, object);
        }
    }

    bool IsOpen() const
    {
        return m_Kept.Revalidate();
    }

    bool HasConflict() const
    {
        return m_HasConflict;
    }

private:
    std::set<std::string> GetUids() const
    {
        std::set<std::string> uids;
        for (LibraryFile::Entry const& entry : m_File.entries) {
            if (entry.item)
                uids.insert(entry.item->GetIdentity().uid);
        }
        return uids;
    }

    void Update(CLibraryItem& item, ObjectsByUid const& objects)
    {
        auto const onDisk = objects.find(item.GetIdentity().uid);
        bool const isGone = onDisk == objects.end()
                            || onDisk->second["kind"] != item.GetObject()["kind"];
        if (item.IsModified()) {
            bool const isSame = !isGone && item.HasSavedObject(onDisk->second);
            m_HasConflict = m_HasConflict || !isSame;
        } else if (isGone) {
            m_Library.RemoveItem(item);
        } else if (onDisk->second != item.GetObject()) {
            ordered_json const& object = onDisk->second;
            m_Library.ChangeObject(item, object);
            if (IsOpen())
                item.SetSavedObject(object);
        }
    }

    CLibrary& m_Library;
    tarno::datamodel::ItemLibraryAccessor const m_Kept;
    LibraryFile& m_File;
    bool m_HasConflict = false;
};

/// Puts the entries into the order of the file, with what makes no item in its place.
void Reorder(CLibrary const& library, LibraryFile& file, ordered_json const& content)
{
    std::vector<LibraryFile::Entry> entries;
    ordered_json const all = content.is_array() ? content : ordered_json::array({content});
    for (ordered_json const& object : all) {
        bool const hasUid = object.is_object() && object.contains("uid")
                            && object["uid"].is_string();
        CLibraryItem* const item =
            hasUid ? library.FindItem(object["uid"].get_ref<std::string const&>().c_str())
                   : nullptr;
        if (item && &item->GetFile() == &file)
            entries.push_back({item, ordered_json()});
        else
            entries.push_back({nullptr, object});
    }
    file.entries = std::move(entries);
    file.isArray = content.is_array();
    file.hasOtherEntries = false;
}

} // namespace

eReconciled ReconcileFile(std::shared_ptr<CLibrary> const& library, DataSourcePtr const& source,
                          QString const& path, QString* fault)
{
    LibraryFile* file = library->FindFile(path);
    bool const exists = QFileInfo::exists(path);
    QByteArray const digest = file ? file->digest : QByteArray();
    if (GetDigestOnDisk(path, library->GetFolder()) == digest)
        return eReconciled::kUpToDate;

    JsonFile const json = exists ? ReadJsonFile(path, library->GetFolder()) : JsonFile();
    bool const isReadable = json.fault.isEmpty()
                            && (!exists || json.content.is_array() || json.content.is_object());
    if (!isReadable) {
        *fault = json.fault.isEmpty()
                     ? QStringLiteral("the file must hold an object or an array of objects.")
                     : json.fault;
        return eReconciled::kUnreadable;
    }
    if (!file)
        file = &library->AddFile({path, source, json.content.is_array(), {}});
    file->isReadOnly = LiesInReadOnlySource(library->GetSources(), json.realPath);

    FileReconciler reconciler(*library, *file);
    reconciler.Apply(exists ? CollectObjects(json.content) : ObjectsByUid());
    if (!reconciler.IsOpen())
        return eReconciled::kClosed;
    // With a conflict the old digest stays, and keeps a save from replacing the file.
    if (reconciler.HasConflict())
        return eReconciled::kConflict;
    file->digest = json.digest;
    Reorder(*library, *file, exists ? json.content : ordered_json::array());
    return eReconciled::kUpToDate;
}

} // namespace embeddedhost
