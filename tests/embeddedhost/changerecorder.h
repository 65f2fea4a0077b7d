#ifndef NODEBROWSER_TESTS_CHANGERECORDER_H
#define NODEBROWSER_TESTS_CHANGERECORDER_H

#include <datamodel.h>

#include <QStringList>

/// Writes down what a library tells, item names as the library has them by then.
class ChangeRecorder : public tarno::datamodel::IItemTOCNotification,
                       public tarno::datamodel::IItemLibraryNotification
{
public:
    explicit ChangeRecorder(tarno::datamodel::ItemLibraryAccessor const& library)
        : m_Library(library)
        , m_Toc(tarno::datamodel::GetTOC(library))
    {
        m_Library.AddNotification(this, tarno::datamodel::kItemLibraryNotificationInterface,
                                  m_Library.GetContextID());
        m_Toc.AddNotification(this, tarno::datamodel::kItemTOCNotificationInterface,
                              m_Toc.GetContextID());
    }
    ~ChangeRecorder()
    {
        m_Toc.RemoveNotification(this, tarno::datamodel::kItemTOCNotificationInterface,
                                 m_Toc.GetContextID());
        m_Library.RemoveNotification(this, tarno::datamodel::kItemLibraryNotificationInterface,
                                     m_Library.GetContextID());
    }

    /// What was told since this was asked last.
    QStringList Take()
    {
        QStringList taken;
        taken.swap(m_Told);
        return taken;
    }

    void RefuseCommits()
    {
        m_RefusesCommits = true;
    }

    void ItemAdded(tarno::datamodel::ItemAccessor& item) override
    {
        m_Told << "added " + NameOf(item.GetItemID());
    }
    void ItemRemoved(tarno::datamodel::ItemAccessor&) override
    {
        m_Told << "removed";
    }
    void OnBeginChanges(tarno::datamodel::ItemLibraryAccessor&) override
    {
        m_Told << "begin";
    }
    void OnEndChanges(tarno::datamodel::ItemLibraryAccessor&) override
    {
        m_Told << "end";
    }
    void LibraryInvalidated(tarno::datamodel::ItemLibraryAccessor&) override
    {
        m_Told << "invalidated";
    }
    void ItemNameChanged(tarno::datamodel::ItemLibraryAccessor&,
                         tarno::datamodel::ItemID const& id) override
    {
        m_Told << "name " + NameOf(id);
    }
    void ItemTagsChanged(tarno::datamodel::ItemLibraryAccessor&, tarno::datamodel::ItemID const& id,
                         char const* category) override
    {
        m_Told << "tags " + NameOf(id) + ' ' + category;
    }
    void ItemAccessStateChanged(tarno::datamodel::ItemLibraryAccessor&,
                                tarno::datamodel::ItemID const&, long) override
    {}
    void OnPreCommit(tarno::datamodel::ItemLibraryAccessor&, bool* cancel) override
    {
        m_Told << "precommit";
        *cancel = m_RefusesCommits;
    }
    void OnPostCommit(tarno::datamodel::ItemLibraryAccessor&) override
    {
        m_Told << "postcommit";
    }

private:
    QString NameOf(tarno::datamodel::ItemID const& id) const
    {
        return QString::fromLatin1(m_Library.GetItemName(id, true, nullptr).c_str());
    }

    tarno::datamodel::ItemLibraryAccessor const m_Library;
    tarno::datamodel::ItemTOCAccessor const m_Toc;
    QStringList m_Told;
    bool m_RefusesCommits = false;
};

#endif
