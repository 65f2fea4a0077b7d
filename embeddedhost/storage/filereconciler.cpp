#include "storage/filereconciler.h"

#include "model/libraryitem.h"
#include "storage/filedigest.h"
#include "storage/fileobjects.h"
#include "storage/folderscan.h"

#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <set>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Brings one file's items up to date with the disk. The library stays in memory meanwhile, but a
/// listener may close it.
class FileReconciler
{
public:
    FileReconciler(CLibrary& library, LibraryFile& file, ordered_json const& content)
        : m_Library(library)
        , m_Kept(library.GetAccessor())
        , m_File(file)
        , m_Objects(library, file.path, content)
    {}

    void Apply()
    {
        MoveRemovedToEnd();
        // By uid, looked up each time: listeners to one change may add and remove items.
        for (std::string const& uid : GetUids()) {
            CLibraryItem* const item = IsOpen() ? FindItem(uid.c_str()) : nullptr;
            if (item)
                Update(*item);
        }
        for (FileObjects::Entry const& entry : m_Objects.GetEntries()) {
            if (IsOpen() && entry.makesItem && !m_Library.FindItem(GetUid(entry)))
                m_Library.AddSavedItem(m_File, *entry.object);
        }
    }

    /// Puts the entries into the order of the file; raw entries that make no item keep their place.
    void Reorder()
    {
        std::vector<LibraryFile::Entry> entries;
        for (FileObjects::Entry const& entry : m_Objects.GetEntries()) {
            CLibraryItem* const item = entry.makesItem ? FindItem(GetUid(entry)) : nullptr;
            entries.push_back({item, item ? ordered_json() : *entry.object});
        }
        m_File.entries = std::move(entries);
        m_File.hasOtherEntries = false;
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
    static char const* GetUid(FileObjects::Entry const& entry)
    {
        return embeddedhost::GetUid(*entry.object).c_str();
    }

    std::set<std::string> GetUids() const
    {
        std::set<std::string> uids;
        for (LibraryFile::Entry const& entry : m_File.entries) {
            if (entry.item)
                uids.insert(entry.item->GetIdentity().uid);
        }
        return uids;
    }

    /// The file's item with the uid; null for none.
    CLibraryItem* FindItem(char const* uid) const
    {
        CLibraryItem* const item = m_Library.FindItem(uid);
        return item && &item->GetFile() == &m_File ? item : nullptr;
    }

    /// Sorts the entries to be removed to the end, in reverse order of their removal: removing the
    /// last entry is the cheapest.
    void MoveRemovedToEnd()
    {
        auto& entries = m_File.entries;
        auto const stays = [this](LibraryFile::Entry const& entry) {
            return !entry.item || entry.item->IsModified() || !IsGone(*entry.item);
        };
        auto const goes = std::stable_partition(entries.begin(), entries.end(), stays);
        std::sort(goes, entries.end(),
                  [](LibraryFile::Entry const& a, LibraryFile::Entry const& b) {
                      return std::strcmp(a.item->GetIdentity().uid, b.item->GetIdentity().uid) > 0;
                  });
    }

    bool IsGone(CLibraryItem const& item) const
    {
        ordered_json const* const onDisk = m_Objects.Find(item.GetIdentity().uid);
        return !onDisk || !item.HasIdentityOf(*onDisk);
    }

    void Update(CLibraryItem& item)
    {
        ordered_json const* const onDisk = m_Objects.Find(item.GetIdentity().uid);
        bool const isGone = IsGone(item);
        if (item.IsModified()) {
            bool const isSame = !isGone && item.HasSavedObject(*onDisk);
            m_HasConflict = m_HasConflict || !isSame;
        } else if (isGone) {
            m_Library.RemoveItem(item);
        } else if (!item.HasObject(*onDisk)) {
            m_Library.ChangeObject(item, *onDisk);
            if (IsOpen())
                item.SetSavedObject(*onDisk);
        }
    }

    CLibrary& m_Library;
    tarno::datamodel::ItemLibraryAccessor const m_Kept;
    LibraryFile& m_File;
    FileObjects const m_Objects;
    bool m_HasConflict = false;
};

/// Whether opening the library now would find the file.
bool IsThere(QString const& path)
{
    QFileInfo const info(path);
    return info.exists() && IsRealFolder(info.path());
}

bool LeadsToReadOnlySource(CLibrary const& library, QString const& path)
{
    QString const realPath = IsThere(path) ? QFileInfo(path).canonicalFilePath() : path;
    return LiesInReadOnlySource(library.GetSources(), realPath);
}

/// Whether a missing file is known to be missing: its folder can be read.
bool CanMiss(CDataSource const& source, QString const& path)
{
    QString const top = source.GetDescription().folder;
    QFileInfo folder(QFileInfo(path).path());
    while (!IsRealFolder(folder.filePath()) && folder.filePath() != top
           && folder.filePath() != folder.path())
        folder.setFile(folder.path());
    return IsRealFolder(folder.filePath()) && folder.isReadable() && folder.isExecutable();
}

/// The next save removes the file, or leaves it empty.
bool IsRemovalPending(LibraryFile const& file)
{
    return file.entries.empty() && file.IsModified();
}

} // namespace

ParsedFile ReadObjectFile(CLibrary const& library, CDataSource const& source, QString const& path)
{
    ParsedFile onDisk;
    if (IsThere(path)) {
        onDisk = ParseFile(path, library.GetFolder(), GetFormat(path));
        if (onDisk.fault.isEmpty() && onDisk.content.is_primitive())
            onDisk.fault = QStringLiteral("the file must hold an object or an array of objects.");
        return onDisk;
    }
    onDisk.content = ordered_json::array();
    if (!CanMiss(source, path))
        onDisk.fault = QStringLiteral("its folder is gone, is a link, or may not be read.");
    return onDisk;
}

eReconciled ReconcileFile(std::shared_ptr<CLibrary> const& library, DataSourcePtr const& source,
                          QString const& path, QString* fault)
{
    LibraryFile* file = library->FindFile(path);
    bool const isExpected = file || !IsThere(path);
    bool const isReadOnly = LeadsToReadOnlySource(*library, path);
    // Before the digests are compared: a link may lead to another file with the same content.
    if (file && !library->SetReadOnly(*file, isReadOnly))
        return eReconciled::kClosed;
    // Both digests are empty for a file that is neither on disk nor in the library.
    if (isExpected
        && GetDigestOnDisk(path, library->GetFolder()) == (file ? file->digest : QByteArray()))
        return eReconciled::kUpToDate;

    ParsedFile const onDisk = ReadObjectFile(*library, *source, path);
    if (!onDisk.fault.isEmpty()) {
        *fault = onDisk.fault;
        return eReconciled::kUnreadable;
    }
    // Accepting another program's change of a file with a pending removal would undo the removal.
    if (file && IsRemovalPending(*file) && !onDisk.digest.isEmpty())
        return eReconciled::kConflict;
    if (!file)
        file =
            &library->AddFile({path, source, onDisk.content.is_array(), {}, {}, false, isReadOnly});

    bool const hadOtherEntries = file->hasOtherEntries;
    FileReconciler reconciler(*library, *file, onDisk.content);
    reconciler.Apply();
    if (!reconciler.IsOpen())
        return eReconciled::kClosed;
    // The old digest stays after a conflict, so that a save does not replace the file.
    if (reconciler.HasConflict()) {
        // Raw entries that another program removed must not be written again.
        file->hasOtherEntries = hadOtherEntries;
        return eReconciled::kConflict;
    }
    reconciler.Reorder();
    if (!onDisk.digest.isEmpty())
        file->isArray = onDisk.content.is_array();
    file->digest = onDisk.digest;
    return eReconciled::kUpToDate;
}

} // namespace embeddedhost
