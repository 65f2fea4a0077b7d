#include "storage/fileconflict.h"

#include "base/text8.h"
#include "model/librarycommands.h"
#include "model/libraryedits.h"
#include "model/libraryitem.h"
#include "storage/filedigest.h"
#include "storage/fileobjects.h"
#include "storage/filereconciler.h"
#include "storage/folderscan.h"

#include <QFileInfo>

#include <set>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Removes an item that the file has no more, or has as another kind of item.
class CGiveUpItemCommand final : public CLibraryCommand
{
public:
    CGiveUpItemCommand(CLibrary& library, CLibraryItem const& item)
        : CLibraryCommand(library, std::string())
        , m_Uid(item.GetIdentity().uid)
        , m_Source(item.GetSource())
        , m_Path(item.GetFile().path)
        , m_Ours(item.GetObject())
    {}

    void Do() override
    {
        Put(m_Theirs);
    }

    void Undo() override
    {
        // Since then it may have come from disk again, there or in another file.
        CLibraryItem const* const item = FindItem();
        m_Theirs = item ? item->GetObject() : ordered_json();
        Put(m_Ours);
    }

private:
    CLibraryItem* FindItem() const
    {
        CLibrary const* const library = GetLibrary();
        return library ? library->FindItem(m_Uid.c_str()) : nullptr;
    }

    /// Replaces the object of the file; null removes it.
    void Put(ordered_json const& object)
    {
        CLibraryItem* const item = FindItem();
        if (item && object.is_object() && item->HasIdentityOf(object)) {
            GetLibrary()->ChangeObject(*item, object);
            return;
        }
        if (item)
            GetLibrary()->RemoveItem(*item);
        // A listener may have closed the library.
        if (object.is_object() && GetLibrary())
            GetLibrary()->AddNewItem(m_Source, ChoosePath(*GetLibrary()), object);
    }

    /// Its file, unless that holds one other object.
    QString ChoosePath(CLibrary const& library) const
    {
        LibraryFile const* const file = library.FindFile(m_Path);
        if (!file || file->isArray || file->entries.empty())
            return m_Path;
        return FindFreePath(library, m_Source,
                            ToText8(QFileInfo(m_Path).completeBaseName()).c_str());
    }

    std::string const m_Uid;
    DataSourcePtr const m_Source;
    QString const m_Path;
    ordered_json const m_Ours;
    ordered_json m_Theirs;
};

/// Discards the unsaved changes of a file.
class FileTaker
{
public:
    FileTaker(CLibrary& library, LibraryFile const& file, FileObjects const& onDisk)
        : m_Library(library)
        , m_OnDisk(onDisk)
    {
        for (LibraryFile::Entry const& entry : file.entries) {
            if (entry.item && entry.item->IsModified())
                GiveUp(*entry.item);
        }
    }

    void Run(std::string const& text, wek::fwk::ICommandManager* manager) const
    {
        if (!m_Commands.empty())
            RunCommand(new CCommandGroup(m_Library, m_Commands, text), manager);
    }

    std::vector<std::string> const& GetChanged() const
    {
        return m_Changed;
    }

private:
    void GiveUp(CLibraryItem const& item)
    {
        std::string const uid = item.GetIdentity().uid;
        ordered_json const* const onDisk = m_OnDisk.Find(uid.c_str());
        if (onDisk && item.HasIdentityOf(*onDisk)) {
            m_Commands.emplace_back(
                new CChangeObjectCommand(m_Library, item, *onDisk, std::string()));
            m_Changed.push_back(uid);
            return;
        }
        m_Commands.emplace_back(new CGiveUpItemCommand(m_Library, item));
    }

    CLibrary& m_Library;
    FileObjects const& m_OnDisk;
    CCommandGroup::Commands m_Commands;
    std::vector<std::string> m_Changed;
};

/// Makes `onDisk` the saved state: objects that differ from it are written by the next save,
/// also after our changes have been undone.
void SetOnDisk(LibraryFile& file, FileObjects const& onDisk)
{
    std::set<ordered_json const*> known;
    for (LibraryFile::Entry const& entry : file.entries) {
        if (!entry.item)
            continue;
        ordered_json const* const object = onDisk.Find(entry.item->GetIdentity().uid);
        bool const isSame = object && entry.item->HasIdentityOf(*object);
        entry.item->SetSavedObject(isSame ? *object : ordered_json());
        known.insert(object);
    }
    for (FileObjects::Entry const& entry : onDisk.GetEntries()) {
        if (entry.makesItem && !known.count(entry.object))
            file.hasOtherEntries = true;
    }
}

bool Refuse(CLibrary const& library, QString const& path, QString const& reason)
{
    library.GetMessages().Post(
        eSeverity::kError,
        QStringLiteral("%1 cannot be taken from disk: %2 Mend the file and try again, or overwrite "
                       "it.")
            .arg(GetShownPath(library.GetFolder(), path), reason));
    return false;
}

} // namespace

bool TakeFileFromDisk(std::shared_ptr<CLibrary> const library, QString const& path,
                      wek::fwk::ICommandManager* manager)
{
    LibraryFile* const file = library->FindFile(path);
    if (!file)
        return Refuse(*library, path, QStringLiteral("the library has no such file."));
    DataSourcePtr const source = file->source;
    ParsedFile const parsed = ReadObjectFile(*library, *source, path);
    if (!parsed.fault.isEmpty())
        return Refuse(*library, path, parsed.fault);

    FileObjects const onDisk(*library, path, parsed.content);
    FileTaker const taker(*library, *file, onDisk);
    taker.Run("Take from disk " + ToText8(QFileInfo(path).fileName()), manager);
    if (!library->GetAccessor().Revalidate())
        return true;
    for (std::string const& uid : taker.GetChanged()) {
        if (CLibraryItem* const item = library->FindItem(uid.c_str()))
            item->SetSavedObject(*onDisk.Find(uid.c_str()));
    }
    // Pending removals are discarded, too.
    file->hasOtherEntries = false;
    QString fault;
    eReconciled const result = ReconcileFile(library, source, path, &fault);
    // An object that went to another file could not come there as long as ours was here.
    if (library->GetAccessor().Revalidate())
        TakeInLeftOutEntries(*library);
    if (result == eReconciled::kUpToDate || !library->GetAccessor().Revalidate())
        return true;
    return Refuse(*library, path,
                  fault.isEmpty() ? QStringLiteral("it was changed again meanwhile.") : fault);
}

bool OverwriteFileOnDisk(CLibrary& library, QString const& path)
{
    LibraryFile* const file = library.FindFile(path);
    if (!file)
        return false;
    // Without changes of ours there is no conflict: the file is read as after any change of it.
    if (!file->IsModified())
        return true;
    ParsedFile const parsed = ReadObjectFile(library, *file->source, path);
    bool const isRead = parsed.fault.isEmpty();
    ordered_json const content = isRead ? parsed.content : ordered_json::array();
    SetOnDisk(*file, FileObjects(library, path, content));
    file->digest = isRead ? parsed.digest : GetDigestOnDisk(path, library.GetFolder());
    return true;
}

} // namespace embeddedhost
