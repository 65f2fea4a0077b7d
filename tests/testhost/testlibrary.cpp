#include "testcontext.h"

#include <algorithm>

using namespace tarno::datamodel;

namespace {

/// Listeners may come and go meanwhile.
template <class Listener, class Call>
void TellAll(std::vector<Listener*> const& listeners, Call call)
{
    std::vector<Listener*> const called = listeners;
    for (Listener* listener : called) {
        if (std::count(listeners.begin(), listeners.end(), listener))
            call(*listener);
    }
}

} // namespace

TestLibrary::TestLibrary(char const* name)
    : m_Name(name)
    , m_Self(new AccessorContext(this), kLibraryHandle)
{}

TestLibrary::~TestLibrary()
{
    m_Self.GetContext()->m_Library = nullptr;
}

TestItem& TestLibrary::Add(char const* kind, std::string const& name, std::string const& tags,
                           char const* uid)
{
    // Identities stay for the whole process.
    static std::deque<ItemIdentity> identities;
    QString const madeUp =
        QString("0000A11E-0000-4000-8000-%1").arg(identities.size(), 12, 16, QLatin1Char('0'));
    identities.push_back(ItemIdentity{kind, uid ? uid : madeUp.toStdString()});

    m_Items.emplace_back();
    TestItem& item = m_Items.back();
    item.id = ItemID(&identities.back());
    item.handle = kFirstItemHandle + m_Items.size() - 1;
    item.kind = kind;
    item.name = name;
    if (!tags.empty())
        item.tags["ApplicationTags"] = tags;
    m_Listed.push_back(&item);
    return item;
}

TestItem& TestLibrary::operator[](std::string const& name)
{
    auto const found = std::find_if(m_Listed.begin(), m_Listed.end(),
                                    [&](TestItem const* item) { return item->name == name; });
    Q_ASSERT(found != m_Listed.end());
    return **found;
}

void TestLibrary::Remove(TestItem& item)
{
    item.handle = 0;
    m_Listed.erase(std::remove(m_Listed.begin(), m_Listed.end(), &item), m_Listed.end());
}

ItemLibraryAccessor TestLibrary::GetAccessor() const
{
    return m_Self;
}

ItemAccessor TestLibrary::GetAccessor(TestItem const& item) const
{
    return ItemAccessor(m_Self.GetContext(), item.handle);
}

TestObject& TestLibrary::AddObject(TestItem const& item, TestDataSource* source)
{
    return TestDatabase::Get().AddObject(ItemIDUnlock::GetItemIDUID(item.id), source);
}

void TestLibrary::Tell(std::function<void(LibraryListener&, ItemLibraryAccessor&)> call)
{
    ItemLibraryAccessor accessor = GetAccessor();
    TellAll(m_LibraryListeners, [&](LibraryListener& listener) { call(listener, accessor); });
}

void TestLibrary::TellToc(std::function<void(TocListener&)> call)
{
    TellAll(m_TocListeners, call);
}

TestItem* TestLibrary::Find(ItemHandle handle)
{
    if (handle < kFirstItemHandle || handle - kFirstItemHandle >= m_Items.size())
        return nullptr;
    TestItem& item = m_Items[handle - kFirstItemHandle];
    return item.handle == handle ? &item : nullptr;
}

TestItem* TestLibrary::Find(ItemID const& id)
{
    auto const found = std::find_if(m_Items.begin(), m_Items.end(), [&](TestItem const& item) {
        return item.handle != 0 && item.id == id;
    });
    return found == m_Items.end() ? nullptr : &*found;
}
