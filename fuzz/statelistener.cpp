#include "statelistener.h"

#include "filevalues.h"
#include "require.h"

using namespace tarno::datamodel;

StateListener::StateListener(CEmbeddedHost& host)
    : m_Host(host)
    , m_Library(host.GetLibrary())
    , m_Toc(GetTOC(m_Library))
    , m_Told(GetShownState())
{
    m_Library.AddNotification(this, kItemLibraryNotificationInterface, m_Library.GetContextID());
    m_Toc.AddNotification(this, kItemTOCNotificationInterface, m_Toc.GetContextID());
}

StateListener::~StateListener()
{
    m_Toc.RemoveNotification(this, kItemTOCNotificationInterface, m_Toc.GetContextID());
    m_Library.RemoveNotification(this, kItemLibraryNotificationInterface, m_Library.GetContextID());
}

void StateListener::RequireEverythingTold() const
{
    LibraryState const state = GetShownState();
    Require(m_Told == state, "a change is announced" + Describe(m_Told, state));
    Require(m_Changes == 0, "a change that begins ends");
}

LibraryState StateListener::GetShownState() const
{
    LibraryState state = GetState(m_Host);
    for (auto& [uid, item] : state)
        item.erase("body");
    return state;
}

/// The accessor of an item that was removed does not say which one it was.
void StateListener::TakeMembers()
{
    LibraryState const state = GetShownState();
    for (auto item = m_Told.begin(); item != m_Told.end();)
        item = state.count(item->first) ? std::next(item) : m_Told.erase(item);
    m_Told.insert(state.begin(), state.end());
}

void StateListener::TakeAnswer(ItemID const& id, char const* question)
{
    std::string const uid = FoldUid(ItemIDUnlock::GetItemIDUID(id));
    LibraryState const state = GetShownState();
    Require(m_Told.count(uid) && state.count(uid), "a change is told of an item that is there");
    m_Told[uid][question] = state.at(uid).at(question);
}

void StateListener::ItemAdded(ItemAccessor&)
{
    TakeMembers();
}

void StateListener::ItemRemoved(ItemAccessor&)
{
    TakeMembers();
}

void StateListener::OnBeginChanges(ItemLibraryAccessor&)
{
    ++m_Changes;
}

void StateListener::OnEndChanges(ItemLibraryAccessor&)
{
    --m_Changes;
}

void StateListener::LibraryInvalidated(ItemLibraryAccessor&)
{
    m_Told = GetShownState();
}

void StateListener::ItemNameChanged(ItemLibraryAccessor&, ItemID const& id)
{
    TakeAnswer(id, "name");
}

void StateListener::ItemTagsChanged(ItemLibraryAccessor&, ItemID const& id, char const* category)
{
    if (std::string("ApplicationTags") == category)
        TakeAnswer(id, "tags");
    if (std::string("Other") == category)
        TakeAnswer(id, "other tags");
}

void StateListener::ItemAccessStateChanged(ItemLibraryAccessor&, ItemID const&, long) {}

void StateListener::OnPreCommit(ItemLibraryAccessor&, bool*) {}

void StateListener::OnPostCommit(ItemLibraryAccessor&) {}
