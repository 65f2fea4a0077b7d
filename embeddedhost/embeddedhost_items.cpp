// The items of the open library.

#include "embeddedhost_p.h"
#include "model/graphjson.h"
#include "model/itemdeletion.h"
#include "model/libraryedits.h"
#include "model/libraryitem.h"
#include "model/listedobject.h"
#include "storage/memorylibrary.h"

using namespace embeddedhost;
using namespace tarno::datamodel;

std::vector<MemoryItem> CEmbeddedHost::GetItems() const
{
    return m_Private->library ? ListItems(*m_Private->library) : std::vector<MemoryItem>();
}

ItemID CEmbeddedHost::FindItem(std::string const& uid) const
{
    CLibraryItem const* const item =
        m_Private->library ? m_Private->library->FindItem(uid.c_str()) : nullptr;
    return item ? ItemID(&item->GetIdentity()) : ItemID();
}

GraphBody CEmbeddedHost::GetBody(ItemID const& id) const
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    if (!m_Private->library || !identity || !identity->item)
        return GraphBody();
    return ReadGraphBody(identity->item->GetObject(), [](std::string const&, std::string const&) {
        // Reported when the library was read.
    });
}

std::string CEmbeddedHost::GetCategory(ItemID const& id) const
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    return m_Private->library && identity && identity->item
               ? std::string(ListObject(identity->item->GetObject()).category)
               : std::string();
}

bool CEmbeddedHost::SetBody(ItemID const& id, GraphBody const& body, std::string const& text)
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    return m_Private->library && identity && identity->item
           && SetItemBody(*m_Private->library, *identity->item, body, text,
                          &m_Private->commandManager);
}

bool CEmbeddedHost::DeleteItem(ItemID const& id)
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    return m_Private->library && identity && identity->item
           && embeddedhost::DeleteItem(*m_Private->library, *identity->item,
                                       &m_Private->commandManager);
}

std::vector<ItemID> CEmbeddedHost::FindUsers(ItemID const& id) const
{
    std::vector<ItemID> users;
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    if (!m_Private->library || !identity || !identity->item)
        return users;
    for (CLibraryItem* const user : embeddedhost::FindUsers(*m_Private->library, *identity->item))
        users.push_back(ItemID(&user->GetIdentity()));
    return users;
}
