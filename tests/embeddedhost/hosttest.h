#ifndef NODEBROWSER_TESTS_HOSTTEST_H
#define NODEBROWSER_TESTS_HOSTTEST_H

#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <qorm.h>

#include <QUndoStack>

/// Base of tests around one library folder and a host that has it open.
class HostTest : public LoggedTest
{
protected:
    typedef tarno::datamodel::ItemID ItemID;

    void SetUp() override
    {
        m_Folder = std::make_unique<LibraryFolder>();
        Fill();
        Open();
    }

    void TearDown() override
    {
        Close();
        m_Folder.reset();
    }

    /// Writes what is in the folder from the start.
    virtual void Fill() {}

    /// As a program does that has just been started.
    virtual void Open()
    {
        Close();
        m_Host = std::make_unique<CEmbeddedHost>();
        if (!m_Host->OpenLibrary(m_Folder->GetPath()))
            qFatal("the library cannot be opened: %s", qPrintable(Log()));
        m_User = std::make_unique<LibraryUser>(*m_Host);
    }

    /// For the files this is what a kill is, too.
    virtual void Close()
    {
        m_User.reset();
        m_Host.reset();
    }

    ItemID Item(int number) const
    {
        return m_Host->FindItem(Uid(number));
    }

    /// Both are empty where there is no such item.
    QString NameOf(int number) const
    {
        return QString::fromLatin1(m_User->NameOf(Item(number)).c_str());
    }
    QString TagsOf(int number) const
    {
        return QString::fromLatin1(
            m_Host->GetLibrary().GetItemTags(Item(number), "ApplicationTags").c_str());
    }

    QByteArray Content(QString const& file) const
    {
        return m_Folder->Read(file);
    }

    QString Log() const
    {
        return GetMessages(*m_Host).join('\n');
    }

    QUndoStack& Stack() const
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<LibraryUser> m_User;
};

/// The service that panels use, of the host that is there.
inline qorm::IRevisionControlUIHelper& GetUIHelper()
{
    return dynamic_cast<qorm::IRevisionControlUIHelper&>(
        *wekGetSystem()->GetService("RevisionControlUIHelper"));
}

inline qorm::QormHandle<qorm::IDbObject> FindObject(std::string const& uid)
{
    return GetUIHelper().FindObject(qorm::DbObjectId(uid.c_str()));
}

/// As the panel moves it.
inline void MoveObject(std::string const& uid, qorm::QormPtr<qorm::IDataSource> const& target)
{
    auto const object = FindObject(uid);
    qorm::IHelper::GetHelper(object.GetInstance())->MoveToDataSource(object, target, true);
}

inline QByteArray ResourceQuery()
{
    return QByteArray("select object where IS_OF_TYPE_VERSION( {") + qorm::UID_Resource().GetStr()
           + " } )";
}

#endif
