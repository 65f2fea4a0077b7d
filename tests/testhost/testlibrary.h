#ifndef NODEBROWSER_TESTS_TESTLIBRARY_H
#define NODEBROWSER_TESTS_TESTLIBRARY_H

// The item libraries of the test host.

#include "datamodel.h"
#include "testdatabase.h"

#include <QString>

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

/// One item; tests change the fields as they like and notify by themselves.
struct TestItem
{
    /// Distinct for each item unless a test says otherwise; may be null.
    tarno::datamodel::ItemID id;
    tarno::datamodel::ItemHandle handle;
    char const* kind;
    std::string name;
    std::map<std::string, std::string> tags;
    bool isAbstract = false;
    bool isLoop = false;
    bool isValidGraphItem = true;
    bool hasParent = false;
    bool hasSpecializes = false;
    bool isReadOnly = false;
    bool isModified = false;
    bool canModify = true;
};

/// An item library with its table of contents. Accessors may outlive it and are invalid then.
class TestLibrary
{
public:
    explicit TestLibrary(char const* name = "A");
    ~TestLibrary();

    /// A null `uid` makes a database UID up. The reference is valid as long as the library.
    TestItem& Add(char const* kind, std::string const& name, std::string const& tags = "",
                  char const* uid = nullptr);
    /// The item of that name, which must exist.
    TestItem& operator[](std::string const& name);
    /// Takes the item out without a notification.
    void Remove(TestItem& item);

    tarno::datamodel::ItemLibraryAccessor GetAccessor() const;
    tarno::datamodel::ItemAccessor GetAccessor(TestItem const& item) const;
    /// Makes a database object behind the item, which must have a database UID.
    TestObject& AddObject(TestItem const& item, TestDataSource* source);

    typedef tarno::datamodel::IItemLibraryNotification LibraryListener;
    typedef tarno::datamodel::IItemTOCNotification TocListener;
    /// Calls every listener that is still registered when its turn comes.
    void Tell(std::function<void(LibraryListener&, tarno::datamodel::ItemLibraryAccessor&)> call);
    void TellToc(std::function<void(TocListener&)> call);

    // For the definitions of the contract.
    TestItem* Find(tarno::datamodel::ItemHandle handle);
    TestItem* Find(tarno::datamodel::ItemID const& id);

    QString m_Name;
    /// False gives an invalid table of contents.
    bool m_HasTOC = true;
    /// The table of contents; an item may stand in it twice.
    std::vector<TestItem*> m_Listed;
    /// Names that are taken by libraries that this one builds on.
    std::set<std::string> m_InheritedNames;
    std::vector<LibraryListener*> m_LibraryListeners;
    std::vector<TocListener*> m_TocListeners;

private:
    TestLibrary(TestLibrary const&) = delete;

    /// Keeps the context.
    tarno::datamodel::ItemLibraryAccessor const m_Self;
    std::deque<TestItem> m_Items;
};

#endif
