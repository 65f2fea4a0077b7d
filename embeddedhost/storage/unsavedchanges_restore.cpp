#include "storage/unsavedchanges.h"

#include "base/text8.h"
#include "model/librarycommands.h"
#include "model/libraryedits.h"
#include "model/libraryitem.h"
#include "storage/folderscan.h"
#include "storage/objectformat.h"

#include <QDir>
#include <QFileInfo>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

QString GetText(ordered_json const& object, char const* key)
{
    return QString::fromStdString(object[key].get_ref<std::string const&>());
}

QByteArray GetDigest(ordered_json const& entry)
{
    return QByteArray::fromHex(GetText(entry, "digest").toLatin1());
}

/// Restores a conflict: an item with changes whose file was changed by another program.
class CConflictCommand final : public CLibraryCommand
{
public:
    /// `saved` and `digest` are the object and the file before the changes.
    CConflictCommand(CLibrary& library, CLibraryItem const& item, ordered_json const& saved,
                     QByteArray const& digest)
        : CLibraryCommand(library, std::string())
        , m_Uid(item.GetIdentity().uid)
        , m_Saved(saved)
        , m_Digest(digest)
        , m_TheirSaved(item.GetSavedObject())
        , m_TheirDigest(item.GetFile().digest)
    {}

    void Do() override
    {
        Replace(m_TheirDigest, m_Saved, m_Digest);
    }

    void Undo() override
    {
        Replace(m_Digest, m_TheirSaved, m_TheirDigest);
    }

private:
    /// Nothing happens once the conflict is resolved: the file has another digest then.
    void Replace(QByteArray const& expected, ordered_json const& saved, QByteArray const& digest)
    {
        CLibrary* const library = GetLibrary();
        CLibraryItem* const item = library ? library->FindItem(m_Uid.c_str()) : nullptr;
        if (!item || (item->GetFile().digest != expected && item->GetFile().digest != digest))
            return;
        item->SetSavedObject(saved);
        item->GetFile().digest = digest;
    }

    std::string const m_Uid;
    ordered_json const m_Saved;
    QByteArray const m_Digest;
    ordered_json const m_TheirSaved;
    QByteArray const m_TheirDigest;
};

/// Makes a document's changes into one command.
class Restorer
{
public:
    explicit Restorer(CLibrary& library)
        : m_Library(library)
    {}

    void Add(ordered_json const& entry)
    {
        ordered_json const& object = entry["object"];
        std::string const& uid = GetUid(object);
        CLibraryItem const* const item = m_Library.FindItem(uid.c_str());
        if (item)
            AddChange(*item, entry);
        else
            AddNewItem(entry);
    }

    void AddRemoval(ordered_json const& entry)
    {
        QString const path = GetPath(entry);
        LibraryFile const* const file = m_Library.FindFile(path);
        bool const isAlone =
            file && !file->isArray && file->entries.size() == 1 && file->entries.front().item;
        if (isAlone && file->digest == GetDigest(entry))
            Keep(new CRemoveItemCommand(m_Library, *file->entries.front().item, std::string()));
        else if (file && !file->entries.empty())
            LeaveOut(GetText(entry, "file"), QStringLiteral("the file was changed since, and is "
                                                            "not removed"));
    }

    void Run(wek::fwk::ICommandManager* manager) const
    {
        if (!m_Commands.empty())
            RunCommand(new CCommandGroup(m_Library, m_Commands, "Recover changes"), manager);
    }

    QStringList const& GetLeftOut() const
    {
        return m_LeftOut;
    }

private:
    void AddChange(CLibraryItem const& item, ordered_json const& entry)
    {
        ordered_json const& object = entry["object"];
        if (item.HasObject(object))
            return;
        if (!item.HasIdentityOf(object)) {
            LeaveOut(QString::fromStdString(GetName(object)),
                     QStringLiteral("it has another kind, or another uid, now"));
            return;
        }
        if (item.IsReadOnly()) {
            LeaveOut(QString::fromStdString(GetName(object)),
                     QStringLiteral("it is read-only now"));
            return;
        }
        if (!item.HasSavedObject(entry["saved"]))
            Keep(new CConflictCommand(m_Library, item, entry["saved"], GetDigest(entry)));
        Keep(new CChangeObjectCommand(m_Library, item, object, std::string()));
    }

    void AddNewItem(ordered_json const& entry)
    {
        ordered_json const& object = entry["object"];
        DataSourcePtr const source = FindSource(GetText(entry, "source").toStdString());
        if (!source || m_Library.GetDatabase().HasFixedObject(GetUid(object).c_str())) {
            LeaveOut(QString::fromStdString(GetName(object)),
                     QStringLiteral("there is no data source any more that it can be put into"));
            return;
        }
        Keep(new CAddItemCommand(m_Library, source, ChoosePath(source, entry), object,
                                 std::string()));
    }

    DataSourcePtr FindSource(std::string const& uid) const
    {
        for (DataSourcePtr const& source : m_Library.GetSources()) {
            if (source->GetDescription().uid == uid && !source->GetDescription().isReadOnly)
                return source;
        }
        return FindWritableSource(m_Library);
    }

    QString GetPath(ordered_json const& entry) const
    {
        return QDir::cleanPath(m_Library.GetFolder() + QLatin1Char('/') + GetText(entry, "file"));
    }

    /// The file that it was created in, unless another program has made one of that name. The uid
    /// in the name prevents two new files from getting the same one.
    QString ChoosePath(DataSourcePtr const& source, ordered_json const& entry) const
    {
        QString const path = GetPath(entry);
        bool const isInSource =
            IsWithin(source->GetDescription().folder, path) && IsObjectFile(path);
        if (isInSource && !m_Library.FindFile(path) && !QFileInfo::exists(path))
            return path;
        ordered_json const& object = entry["object"];
        std::string const name = ToText8(GetName(object));
        return FindFreePath(m_Library, source, (name + ' ' + GetUid(object)).c_str());
    }

    void Keep(CLibraryCommand* command)
    {
        m_Commands.emplace_back(command);
    }

    void LeaveOut(QString const& name, QString const& reason)
    {
        m_LeftOut << QStringLiteral("A change of \"%1\" was not recovered: %2.").arg(name, reason);
    }

    CLibrary& m_Library;
    CCommandGroup::Commands m_Commands;
    QStringList m_LeftOut;
};

} // namespace

QStringList RestoreUnsavedChanges(CLibrary& library, ordered_json const& document,
                                  wek::fwk::ICommandManager* manager)
{
    Restorer restorer(library);
    for (ordered_json const& entry : document["objects"])
        restorer.Add(entry);
    for (ordered_json const& entry : document["removedFiles"])
        restorer.AddRemoval(entry);
    restorer.Run(manager);
    return restorer.GetLeftOut();
}

} // namespace embeddedhost
