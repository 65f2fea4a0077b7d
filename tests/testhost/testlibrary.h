#ifndef NODEBROWSER_TESTS_TESTLIBRARY_H
#define NODEBROWSER_TESTS_TESTLIBRARY_H

// The item libraries of the test host, and what its accessors are bound to.

#include "datamodel.h"
#include "testdatabase.h"
#include <hostkit/listenerlist.h>
#include <hostkit/sharedcontext.h>

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <vector>

class TestLibrary;

namespace tarno {
namespace datamodel {

struct ItemIdentity
{
    char const* kind;
    std::string uid;
};

class AccessorContext : public hostkit::CSharedContext
{
public:
    explicit AccessorContext(TestLibrary* library)
        : m_Library(library)
    {}

    /// Null once the library is gone.
    TestLibrary* m_Library;
};

} // namespace datamodel
} // namespace tarno

/// The handles of a library and its table of contents; items have those after the last.
tarno::datamodel::ItemHandle const kLibraryHandle = 1;
tarno::datamodel::ItemHandle const kTOCHandle = 2;
tarno::datamodel::ItemHandle const kFirstItemHandle = 3;

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
    explicit TestLibrary(char const* name = "A")
        : m_Name(name)
        , m_Self(new tarno::datamodel::AccessorContext(this), kLibraryHandle)
    {}

    ~TestLibrary()
    {
        m_Self.GetContext()->m_Library = nullptr;
    }

    /// A null `uid` makes a database UID up. The reference is valid as long as the library.
    TestItem& Add(char const* kind, std::string const& name, std::string const& tags = "",
                  char const* uid = nullptr)
    {
        // Identities stay for the whole process.
        static std::deque<tarno::datamodel::ItemIdentity> identities;
        QString const madeUp =
            QString("0000A11E-0000-4000-8000-%1").arg(identities.size(), 12, 16, QLatin1Char('0'));
        identities.push_back({kind, uid ? uid : madeUp.toStdString()});

        m_Items.emplace_back();
        TestItem& item = m_Items.back();
        item.id = tarno::datamodel::ItemID(&identities.back());
        item.handle = kFirstItemHandle + m_Items.size() - 1;
        item.kind = kind;
        item.name = name;
        if (!tags.empty())
            item.tags["ApplicationTags"] = tags;
        m_Listed.push_back(&item);
        return item;
    }

    /// The item of that name, which must exist.
    TestItem& operator[](std::string const& name)
    {
        auto const found = std::find_if(m_Listed.begin(), m_Listed.end(),
                                        [&](TestItem const* item) { return item->name == name; });
        Q_ASSERT(found != m_Listed.end());
        return **found;
    }

    /// Takes the item out without a notification.
    void Remove(TestItem& item)
    {
        item.handle = 0;
        m_Listed.erase(std::remove(m_Listed.begin(), m_Listed.end(), &item), m_Listed.end());
    }

    tarno::datamodel::ItemLibraryAccessor GetAccessor() const
    {
        return m_Self;
    }

    tarno::datamodel::ItemAccessor GetAccessor(TestItem const& item) const
    {
        return tarno::datamodel::ItemAccessor(m_Self.GetContext(), item.handle);
    }

    /// Makes a database object behind the item, which must have a database UID.
    TestObject& AddObject(TestItem const& item, TestDataSource* source)
    {
        return TestDatabase::Get().AddObject(tarno::datamodel::ItemIDUnlock::GetItemIDUID(item.id),
                                             source);
    }

    /// Calls `call(listener, accessor of the library)` for each listener.
    template <class Call>
    void Tell(Call const& call)
    {
        tarno::datamodel::ItemLibraryAccessor accessor = GetAccessor();
        m_Listeners.ForEach([&](auto& listener) { call(listener, accessor); });
    }

    // For the definitions of the contract.
    TestItem* Find(tarno::datamodel::ItemHandle handle)
    {
        if (handle < kFirstItemHandle || handle - kFirstItemHandle >= m_Items.size())
            return nullptr;
        TestItem& item = m_Items[handle - kFirstItemHandle];
        return item.handle == handle ? &item : nullptr;
    }

    TestItem* Find(tarno::datamodel::ItemID const& id)
    {
        auto const found = std::find_if(m_Items.begin(), m_Items.end(), [&](TestItem const& item) {
            return item.handle != 0 && item.id == id;
        });
        return found == m_Items.end() ? nullptr : &*found;
    }

    QString m_Name;
    /// False gives an invalid table of contents.
    bool m_HasTOC = true;
    /// The table of contents; an item may stand in it twice.
    std::vector<TestItem*> m_Listed;
    /// Names that are taken by libraries that this one builds on.
    std::set<std::string> m_InheritedNames;
    hostkit::ListenerList<tarno::datamodel::IItemLibraryNotification> m_Listeners;

private:
    TestLibrary(TestLibrary const&) = delete;

    /// Keeps the context.
    tarno::datamodel::ItemLibraryAccessor const m_Self;
    std::deque<TestItem> m_Items;
};

/// Null for an accessor that is bound to nothing, or whose library is gone.
inline TestLibrary* LibraryOf(tarno::datamodel::UnspecifiedAccessor const& accessor)
{
    return accessor.GetContext() ? accessor.GetContext()->m_Library : nullptr;
}

/// Null for an accessor that is not bound to a living item.
inline TestItem* ItemOf(tarno::datamodel::UnspecifiedAccessor const& accessor)
{
    TestLibrary* const library = LibraryOf(accessor);
    return library ? library->Find(accessor.GetHandle()) : nullptr;
}

/// The item of the accessor's library.
inline TestItem* ItemOf(tarno::datamodel::UnspecifiedAccessor const& accessor,
                        tarno::datamodel::ItemID const& id)
{
    TestLibrary* const library = LibraryOf(accessor);
    return library ? library->Find(id) : nullptr;
}

inline QString TextOf(TestLibrary const* library)
{
    return library ? library->m_Name : "-";
}

inline QString TextOf(TestItem const* item)
{
    return item ? QString::fromStdString(item->name) : "-";
}

#endif
