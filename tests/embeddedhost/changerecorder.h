#ifndef NODEBROWSER_TESTS_CHANGERECORDER_H
#define NODEBROWSER_TESTS_CHANGERECORDER_H

#include <datamodel.h>

#include <QStringList>

#include <functional>
#include <utility>

/// Writes down what a library tells, item names as the library has them by then.
class ChangeRecorder : public tarno::datamodel::IItemTOCNotification,
                       public tarno::datamodel::IItemLibraryNotification
{
public:
    typedef tarno::datamodel::ItemID ItemID;
    typedef tarno::datamodel::ItemAccessor ItemAccessor;
    typedef tarno::datamodel::ItemLibraryAccessor ItemLibraryAccessor;

    /// Into a record of its own, or one that several share, each line behind the name.
    explicit ChangeRecorder(ItemLibraryAccessor const& library, QString const& name = QString(),
                            QStringList* record = nullptr)
        : m_Library(library)
        , m_Toc(GetTOC(library))
        , m_Name(name)
        , m_Record(record ? *record : m_Told)
    {
        Register();
    }
    virtual ~ChangeRecorder()
    {
        Unregister();
    }

    void Register()
    {
        m_Library.AddNotification(this, tarno::datamodel::kItemLibraryNotificationInterface,
                                  m_Library.GetContextID());
        m_Toc.AddNotification(this, tarno::datamodel::kItemTOCNotificationInterface,
                              m_Toc.GetContextID());
    }
    void Unregister()
    {
        m_Toc.RemoveNotification(this, tarno::datamodel::kItemTOCNotificationInterface,
                                 m_Toc.GetContextID());
        m_Library.RemoveNotification(this, tarno::datamodel::kItemLibraryNotificationInterface,
                                     m_Library.GetContextID());
    }

    /// What was told since this was asked last.
    QStringList Take()
    {
        return std::exchange(m_Record, {});
    }

    bool refusesCommits = false;
    /// Called for each; may destroy the recorder.
    std::function<void()> onTold;

    // The accessors belong to this listener: what it does to them concerns no other.
    void ItemAdded(ItemAccessor& item) override
    {
        ItemID const id = item.GetItemID();
        item = ItemAccessor();
        Tell("added " + NameOf(id));
    }
    void ItemRemoved(ItemAccessor&) override
    {
        Tell("removed");
    }
    void OnBeginChanges(ItemLibraryAccessor& library) override
    {
        bool const isValid = library.IsValid();
        library = ItemLibraryAccessor();
        Tell(isValid ? "begin" : "begin of nothing");
    }
    void OnEndChanges(ItemLibraryAccessor&) override
    {
        Tell("end");
    }
    void LibraryInvalidated(ItemLibraryAccessor&) override
    {
        Tell("invalidated");
    }
    void ItemNameChanged(ItemLibraryAccessor&, ItemID const& id) override
    {
        Tell("name " + NameOf(id));
    }
    void ItemTagsChanged(ItemLibraryAccessor&, ItemID const& id, char const* category) override
    {
        Tell("tags " + NameOf(id) + ' ' + category);
    }
    void ItemAccessStateChanged(ItemLibraryAccessor&, ItemID const& id, long state) override
    {
        Tell("state " + NameOf(id) + ' ' + QString::number(state, 16));
    }
    void OnPreCommit(ItemLibraryAccessor&, bool* cancel) override
    {
        *cancel = refusesCommits;
        Tell("precommit");
    }
    void OnPostCommit(ItemLibraryAccessor&) override
    {
        Tell("postcommit");
    }

private:
    QString NameOf(ItemID const& id) const
    {
        return QString::fromLatin1(m_Library.GetItemName(id, true, nullptr).c_str());
    }

    void Tell(QString const& what)
    {
        m_Record << m_Name + what;
        std::function<void()> const call = onTold;
        if (call)
            call();
    }

    ItemLibraryAccessor const m_Library;
    tarno::datamodel::ItemTOCAccessor const m_Toc;
    QString const m_Name;
    QStringList m_Told;
    QStringList& m_Record;
};

#endif
