#include "storage/filemove.h"

#include "base/text8.h"
#include "model/librarycommands.h"
#include "model/libraryitem.h"
#include "sourcecontrol/sourcecontrolservice.h"
#include "storage/heldfolder.h"

#include <QDir>
#include <QFileInfo>

namespace embeddedhost {

namespace {

bool IsReadOnly(CDataSource const& source)
{
    return source.GetAccessMode() == qorm::IDataSource::kReadOnlyAccess;
}

QString GetSourceName(CDataSource const& source)
{
    return FromText8(source.GetDescription().name.c_str());
}

/// The place of the file below another data source's folder.
QString GetTargetPath(LibraryFile const& file, CDataSource const& target)
{
    QString const below = QDir(file.source->GetDescription().folder).relativeFilePath(file.path);
    return target.GetDescription().folder + QLatin1Char('/') + below;
}

/// The file on disk has moved; git's index follows asynchronously.
void MoveThroughGit(QString const& from, QString const& to)
{
    if (CSourceControlService* const service = CSourceControlService::GetInstance())
        service->GetActions().FollowMove(from, to);
}

/// The folder of a file below that of its data source, see CHeldFolder::Open.
std::unique_ptr<CHeldFolder> OpenFolder(CDataSource const& source, QString const& path,
                                        bool makesIt, QString* fault)
{
    return CHeldFolder::Open(source.GetDescription().folder, QFileInfo(path).path(), makesIt,
                             fault);
}

/// Why the file was not moved; empty when it was.
QString MoveOnDisk(CDataSource const& source, QString const& from, CDataSource const& target,
                   QString const& to)
{
    QFileInfo const file(from);
    // An item that was never saved has no file yet.
    if (!file.exists() && !file.isSymLink())
        return QString();
    // A relative link would lead elsewhere from there.
    if (file.isSymLink())
        return QStringLiteral("it is a link");
    QString fault;
    auto const fromFolder = OpenFolder(source, from, false, &fault);
    auto const toFolder = fromFolder ? OpenFolder(target, to, true, &fault) : nullptr;
    if (!toFolder)
        return fault;
    // Rename refuses this, too, but with a text of the system.
    if (QFileInfo::exists(to))
        return QStringLiteral("there is such a file already");
    FileResult const moved =
        fromFolder->Rename(file.fileName(), *toFolder, QFileInfo(to).fileName());
    if (moved.IsDone())
        MoveThroughGit(from, to);
    if (moved.error == eFileError::kOtherFileSystem)
        return QStringLiteral("the folders lie on different file systems");
    return moved.reason;
}

/// Takes the file from one data source to another and back.
class CMoveFileCommand final : public CLibraryCommand
{
public:
    CMoveFileCommand(CLibrary& library, CLibraryItem const& item, DataSourcePtr const& target)
        : CLibraryCommand(library, std::string("Move ") + item.GetName())
        , m_Uid(item.GetIdentity().uid)
        , m_From(item.GetSource())
        , m_FromPath(item.GetFile().path)
        , m_To(target)
        , m_ToPath(GetTargetPath(item.GetFile(), *target))
    {}

    void Do() override
    {
        Move(m_From, m_FromPath, m_To, m_ToPath);
    }

    void Undo() override
    {
        Move(m_To, m_ToPath, m_From, m_FromPath);
    }

private:
    void Move(DataSourcePtr const& source, QString const& from, DataSourcePtr const& target,
              QString const& to)
    {
        CLibrary* const library = GetLibrary();
        CLibraryItem* const item = library ? library->FindItem(m_Uid.c_str()) : nullptr;
        if (!item || item->GetFile().path != from)
            return;
        QString const fault = MoveOnDisk(*source, from, *target, to);
        if (fault.isEmpty()) {
            library->MoveFile(*item, target, to);
        } else {
            library->GetMessages().Post(
                eSeverity::kError,
                QStringLiteral("%1 could not be moved to %2: %3. Nothing was changed.")
                    .arg(from, to, fault));
        }
    }

    std::string const m_Uid;
    DataSourcePtr const m_From;
    QString const m_FromPath;
    DataSourcePtr const m_To;
    QString const m_ToPath;
};

/// Why the move is refused; empty when it is not.
QString FindObstacle(CLibrary const& library, CLibraryItem const& item, CDataSource const* target)
{
    if (!target)
        return QStringLiteral("there is no data source to move it to");
    if (IsReadOnly(*target))
        return QStringLiteral("the data source \"%1\" is read-only").arg(GetSourceName(*target));
    if (item.IsReadOnly())
        return QStringLiteral("it is read-only where it is");
    if (target == item.GetSource().get())
        return QStringLiteral("it is there already");
    if (item.GetFile().isArray || item.GetFile().entries.size() != 1)
        return QStringLiteral("it shares the file %1 with other objects").arg(item.GetFile().path);
    QString const path = GetTargetPath(item.GetFile(), *target);
    if (QFileInfo::exists(path) || library.FindFile(path))
        return QStringLiteral("the file %1 exists already").arg(path);
    return QString();
}

} // namespace

bool MoveItem(CLibrary& library, CLibraryItem& item, DataSourcePtr const& target,
              wek::fwk::ICommandManager* manager)
{
    QString const obstacle = FindObstacle(library, item, target.get());
    if (!obstacle.isEmpty()) {
        library.GetMessages().Post(
            eSeverity::kWarning,
            QStringLiteral("Cannot move \"%1\": %2.").arg(FromText8(item.GetName()), obstacle));
        return false;
    }
    RunCommand(new CMoveFileCommand(library, item, target), manager);
    return true;
}

} // namespace embeddedhost
