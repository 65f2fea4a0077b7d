#include "storage/fileconflict.h"

#include "model/librarycommands.h"
#include "model/libraryedits.h"
#include "model/libraryitem.h"
#include "storage/filedigest.h"
#include "storage/filereconciler.h"
#include "storage/folderscan.h"
#include "storage/jsonfile.h"
#include "storage/objectreader.h"

#include <QFileInfo>

#include <algorithm>
#include <map>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

typedef std::map<std::string, ordered_json> ObjectsByUid;

/// Takes an item away that the file has no more, or has as another kind of item.
class CGiveUpItemCommand final : public CLibraryCommand
{
public:
    CGiveUpItemCommand(CLibrary& library, CLibraryItem const& item)
        : CLibraryCommand(library, std::string())
        , m_Uid(item.GetIdentity().uid)
        , m_Source(item.GetSource())
        , m_Path(item.GetFile().path)
        , m_Ours(item.GetObject())
    {
    }

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

    /// `object` takes the place of what is there; null for nothing.
    void Put(ordered_json const& object)
    {
        CLibraryItem* const item = FindItem();
        if (item && object.is_object() && item->GetObject()["kind"] == object["kind"]) {
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
                            QFileInfo(m_Path).completeBaseName().toLatin1().constData());
    }

    std::string const m_Uid;
    DataSourcePtr const m_Source;
    QString const m_Path;
    ordered_json const m_Ours;
    ordered_json m_Theirs;
};

/// Gives our changes of a file up.
class FileTaker
{
public:
    FileTaker(CLibrary& library, LibraryFile const& file, ObjectsByUid const& onDisk)
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

    std::vector<std::string> const& GetGone() const
    {
        return m_Gone;
    }

private:
    void GiveUp(CLibraryItem const& item)
    {
        std::string const uid = item.GetIdentity().uid;
        auto const onDisk = m_OnDisk.find(uid);
        if (onDisk != m_OnDisk.end() && onDisk->second["kind"] == item.GetObject()["kind"]) {
            m_Commands.emplace_back(
                new CChangeObjectCommand(m_Library, item, onDisk->second, std::string()));
            m_Changed.push_back(uid);
            return;
        }
        m_Commands.emplace_back(new CGiveUpItemCommand(m_Library, item));
        m_Gone.push_back(uid);
    }

    CLibrary& m_Library;
    ObjectsByUid const& m_OnDisk;
    CCommandGroup::Commands m_Commands;
    std::vector<std::string> m_Changed;
    std::vector<std::string> m_Gone;
};

bool Holds(LibraryFile const& file, std::string const& uid)
{
    return std::any_of(file.entries.begin(), file.entries.end(), [&](auto const& entry) {
        return !entry.item && entry.other.is_object()
               && entry.other.value("uid", ordered_json()) == uid;
    });
}

/// An object that went to another file could not come there as long as ours was in the library.
void ReadWhereItWent(std::shared_ptr<CLibrary> const& library, std::string const& uid)
{
    auto const& files = library->GetFiles();
    auto const found = std::find_if(files.begin(), files.end(),
                                    [&](auto const& file) { return Holds(*file, uid); });
    if (found == files.end())
        return;
    LibraryFile& file = **found;
    file.digest.clear();
    QString fault;
    ReconcileFile(library, file.source, file.path, &fault);
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

bool TakeFileFromDisk(std::shared_ptr<CLibrary> const& library, QString const& path,
                      wek::fwk::ICommandManager* manager)
{
    LibraryFile const* const file = library->FindFile(path);
    if (!file)
        return Refuse(*library, path, QStringLiteral("the library has no such file."));
    JsonFile const json =
        QFileInfo::exists(path) ? ReadJsonFile(path, library->GetFolder()) : JsonFile();
    if (!json.fault.isEmpty())
        return Refuse(*library, path, json.fault);
    if (json.content.is_primitive() && !json.digest.isEmpty())
        return Refuse(*library, path, QStringLiteral("it holds no objects."));

    DataSourcePtr const source = file->source;
    ObjectsByUid const onDisk = CollectObjects(json.content);
    FileTaker const taker(*library, *file, onDisk);
    taker.Run("Take from disk " + QFileInfo(path).fileName().toStdString(), manager);
    if (!library->GetAccessor().Revalidate())
        return true;
    for (std::string const& uid : taker.GetChanged()) {
        if (CLibraryItem* const item = library->FindItem(uid.c_str()))
            item->SetSavedObject(onDisk.at(uid));
    }
    QString fault;
    eReconciled const result = ReconcileFile(library, source, path, &fault);
    for (std::string const& uid : taker.GetGone()) {
        if (library->GetAccessor().Revalidate() && !library->FindItem(uid.c_str()))
            ReadWhereItWent(library, uid);
    }
    if (result == eReconciled::kUpToDate || result == eReconciled::kClosed)
        return true;
    return Refuse(*library, path,
                  fault.isEmpty() ? QStringLiteral("it was changed again meanwhile.") : fault);
}

bool OverwriteFileOnDisk(CLibrary& library, QString const& path)
{
    LibraryFile* const file = library.FindFile(path);
    if (!file)
        return false;
    file->digest = GetDigestOnDisk(path, library.GetFolder());
    return true;
}

} // namespace embeddedhost
