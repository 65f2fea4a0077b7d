#ifndef EMBEDDEDHOST_REVISIONCONTROLHELPER_H
#define EMBEDDEDHOST_REVISIONCONTROLHELPER_H

#include "framework/messagechannel.h"
#include "model/objectdatabase.h"

#include <qorm.h>

#include <QStringList>

#include <functional>

namespace embeddedhost {

class CSourceControlService;

/// The service "RevisionControlUIHelper" over the library that is open. It shows no
/// questions: it does as requested, or posts the reason on the message channel.
class CRevisionControlHelper : public qorm::IRevisionControlUIHelper
{
public:
    typedef std::function<void(QStringList const& paths)> FilesHandler;

    CRevisionControlHelper(CMessageChannel& messages, CSourceControlService& service);

    /// Null when no library is open.
    void SetDatabase(ObjectDatabasePtr const& database);
    /// Gets the absolute paths of files to show.
    void SetFilesHandler(FilesHandler const& handler);

    qorm::QormHandle<qorm::IDbObject> FindObject(qorm::DbObjectId const& objectId) override;
    /// Makes the file writable and marks it as checked out until it is committed next.
    void CheckOut(qorm::QormHandle<qorm::IDbObject> const& object, bool& checkedOut,
                  bool askUser) override;
    void MakeWritable(qorm::QormHandle<qorm::IDbObject> const& object, bool askUser) override;
    /// An object has no files that belong to it but its own.
    void ShowFiles(qorm::QormHandle<qorm::IDbObject> const& object, bool withDependencies) override;

private:
    CLibraryItem const* FindItem(qorm::QormHandle<qorm::IDbObject> const& object) const;
    /// Empty, with a message to the user, when the item has no file on disk.
    QString FindFile(CLibraryItem const* item);
    void Refuse(QString const& file, QString const& reason);

    CMessageChannel& m_Messages;
    CSourceControlService& m_Service;
    ObjectDatabasePtr m_Database;
    /// The same, as handles take it.
    qorm::QormPtr<qorm::IQormInstance> m_Instance;
    FilesHandler m_FilesHandler;
};

} // namespace embeddedhost

#endif
