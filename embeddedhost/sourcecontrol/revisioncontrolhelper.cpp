#include "sourcecontrol/revisioncontrolhelper.h"

#include "base/text8.h"
#include "model/library.h"
#include "sourcecontrol/checkouts.h"
#include "sourcecontrol/sourcecontrolservice.h"

#include <QDir>
#include <QFileInfo>

namespace embeddedhost {

using namespace qorm;

CRevisionControlHelper::CRevisionControlHelper(CMessageChannel& messages,
                                               CSourceControlService& service)
    : m_Messages(messages)
    , m_Service(service)
{}

void CRevisionControlHelper::SetDatabase(ObjectDatabasePtr const& database)
{
    m_Database = database;
    m_Instance = qorm::QormPtr<qorm::IQormInstance>(database.get());
}

void CRevisionControlHelper::SetFilesHandler(FilesHandler const& handler)
{
    m_FilesHandler = handler;
}

QormHandle<IDbObject> CRevisionControlHelper::FindObject(DbObjectId const& objectId)
{
    if (!m_Database)
        return QormHandle<IDbObject>();
    CLibraryItem const* const item = m_Database->FindItem(objectId);
    if (!item)
        return m_Database->FindObject(objectId);
    // Changes nothing for the caller. A rebuild looks up each item and leaves no other trace.
    m_Service.NoteLookUp(&item->GetIdentity());
    int const index = item->GetCacheIndex();
    return index < 0 ? QormHandle<IDbObject>() : QormHandle<IDbObject>(m_Instance, index);
}

void CRevisionControlHelper::CheckOut(QormHandle<IDbObject> const& object, bool& checkedOut,
                                      bool /*askUser*/)
{
    checkedOut = false;
    CLibraryItem const* const item = FindItem(object);
    QString const file = FindFile(item);
    if (file.isEmpty())
        return;
    QString const reason = m_Service.GetActions().CheckOut(file);
    if (!reason.isEmpty()) {
        Refuse(file, QStringLiteral("it cannot be checked out: ") + reason);
        return;
    }
    checkedOut = true;
    m_Service.Refresh({&item->GetIdentity()});
}

void CRevisionControlHelper::MakeWritable(QormHandle<IDbObject> const& object, bool /*askUser*/)
{
    QString const file = FindFile(FindItem(object));
    QString const reason = file.isEmpty() ? QString() : MakeFileWritable(file);
    if (!reason.isEmpty())
        Refuse(file, QStringLiteral("it cannot be made writable: ") + reason);
}

void CRevisionControlHelper::ShowFiles(QormHandle<IDbObject> const& object,
                                       bool /*withDependencies*/)
{
    QString const file = FindFile(FindItem(object));
    if (!file.isEmpty() && m_FilesHandler)
        m_FilesHandler({file});
}

CLibraryItem const* CRevisionControlHelper::FindItem(QormHandle<IDbObject> const& object) const
{
    auto const* const database = CObjectDatabase::From(object.GetInstance());
    return database ? database->GetItem(object.GetCacheIndex()) : nullptr;
}

QString CRevisionControlHelper::FindFile(CLibraryItem const* item)
{
    if (!item)
        return QString();
    if (item->GetSource()->GetDescription().folder.isEmpty()) {
        m_Messages.Post(eSeverity::kWarning,
                        QStringLiteral("\"%1\" has no file: its library is not kept in a folder.")
                            .arg(FromText8(item->GetName())));
        return QString();
    }
    QString const path = item->GetFile().path;
    if (QFileInfo::exists(path))
        return path;
    m_Messages.Post(eSeverity::kWarning,
                    QStringLiteral("\"%1\" has no file on disk. Save the library first.")
                        .arg(FromText8(item->GetName())));
    return QString();
}

void CRevisionControlHelper::Refuse(QString const& file, QString const& reason)
{
    m_Messages.Post(eSeverity::kWarning,
                    QStringLiteral("%1: %2.").arg(QDir::toNativeSeparators(file), reason));
}

} // namespace embeddedhost
