#include "storage/librarywriter.h"

#include "model/libraryitem.h"
#include "storage/filedigest.h"
#include "storage/folderscan.h"
#include "storage/openfilelimit.h"
#include "storage/saveleftovers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <set>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

ordered_json const& GetObject(LibraryFile::Entry const& entry)
{
    return entry.item ? entry.item->GetObject() : entry.other;
}

/// Two blanks a level, one newline at the end, and texts as they are.
QByteArray MakeContent(LibraryFile const& file)
{
    ordered_json content = ordered_json::array();
    for (LibraryFile::Entry const& entry : file.entries)
        content.push_back(GetObject(entry));
    // There are more than one when another program has put its object in place of ours.
    if (!file.isArray && content.size() == 1)
        content = ordered_json(content.front());
    std::string const text =
        content.dump(2, ' ', false, ordered_json::error_handler_t::replace) + '\n';
    return QByteArray(text.data(), int(text.size()));
}

/// One file on its way to disk.
class PendingFile
{
public:
    PendingFile(CLibrary const& library, LibraryFile& file)
        : m_File(file)
        , m_LibraryFolder(library.GetFolder())
        , m_ShownPath(GetShownPath(library.GetFolder(), file.path))
        , m_IsRemoval(file.entries.empty() && !file.isArray)
    {
    }

    /// Writes the new content beside the old file. False, with the failure, when that is not
    /// possible or the old file is not the one that was read.
    bool Prepare()
    {
        if (GetDigestOnDisk(m_File.path, m_LibraryFolder) != m_File.digest)
            return Fail(QStringLiteral("it was changed or removed by another program since it "
                                       "was read. Take what is on disk, or overwrite it"));
        if (m_IsRemoval)
            return true;
        if (!QDir().mkpath(QFileInfo(m_File.path).path()))
            return Fail(QStringLiteral("its folder cannot be made; see whether the folder "
                                       "around it may be written to"));
        QByteArray const content = MakeContent(m_File);
        m_Digest = GetDigest(content);
        m_Saved = std::make_unique<QSaveFile>(m_File.path);
        if (!m_Saved->open(QIODevice::WriteOnly) || m_Saved->write(content) != content.size()
            || !m_Saved->flush())
            return Fail(m_Saved->errorString());
        return true;
    }

    bool PutInPlace()
    {
        if (m_IsRemoval) {
            if (!m_File.digest.isEmpty() && !QFile::remove(m_File.path))
                return Fail(QStringLiteral("it cannot be removed; see whether its folder may "
                                           "be written to"));
        } else if (!m_Saved->commit()) {
            return Fail(m_Saved->errorString());
        }
        MarkSaved();
        return true;
    }

    QString const& GetFailure() const
    {
        return m_Failure;
    }

private:
    void MarkSaved()
    {
        m_File.digest = m_Digest;
        m_File.hasOtherEntries = false;
        for (LibraryFile::Entry const& entry : m_File.entries) {
            if (entry.item)
                entry.item->SetSavedObject(entry.item->GetObject());
        }
    }

    bool Fail(QString const& reason)
    {
        m_Saved.reset();
        m_Failure = QStringLiteral("%1 was not saved: %2.").arg(m_ShownPath, reason);
        return false;
    }

    LibraryFile& m_File;
    QString const m_LibraryFolder;
    QString const m_ShownPath;
    /// The last object of the file is gone, and the file goes with it.
    bool const m_IsRemoval;
    std::unique_ptr<QSaveFile> m_Saved;
    QByteArray m_Digest;
    QString m_Failure;
};

void RemoveLeftovers(std::vector<LibraryFile*> const& files)
{
    std::set<QString> folders;
    for (LibraryFile const* const file : files)
        folders.insert(QFileInfo(file->path).path());
    for (QString const& folder : folders)
        RemoveSaveLeftovers(folder);
}

typedef std::vector<LibraryFile*>::const_iterator FileIterator;

/// Prepares all of them, then puts them in place.
void SaveTogether(CLibrary const& library, FileIterator begin, FileIterator end,
                  SaveResult& result)
{
    std::vector<std::unique_ptr<PendingFile>> prepared;
    for (FileIterator file = begin; file != end; ++file) {
        auto pending = std::make_unique<PendingFile>(library, **file);
        if (pending->Prepare())
            prepared.push_back(std::move(pending));
        else
            result.failures.push_back(pending->GetFailure());
    }
    for (std::unique_ptr<PendingFile> const& pending : prepared) {
        if (pending->PutInPlace())
            ++result.writtenFiles;
        else
            result.failures.push_back(pending->GetFailure());
    }
}

} // namespace

SaveResult SaveFiles(CLibrary const& library, std::vector<LibraryFile*> const& files)
{
    SaveResult result;
    // A prepared file is open until it is in place.
    COpenFileLimit const limit(files.size());
    auto const most = static_cast<std::ptrdiff_t>(limit.GetAllowed());
    for (auto begin = files.begin(); begin != files.end();) {
        auto const end = begin + std::min(files.end() - begin, most);
        SaveTogether(library, begin, end, result);
        begin = end;
    }
    RemoveLeftovers(files);
    return result;
}

} // namespace embeddedhost
