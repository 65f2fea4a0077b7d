#include "testhost.h"
#include <hostkit/interfaces.h>
#include <hostkit/itemiterator.h>

using namespace tarno::datamodel;

namespace {

bool Supports(UnspecifiedAccessor const& accessor, eInterfaceID interfaceID)
{
    if (accessor.GetHandle() == kLibraryHandle)
        return hostkit::LibrarySupports(interfaceID);
    if (accessor.GetHandle() == kTOCHandle)
        return hostkit::TocSupports(interfaceID);
    TestItem const* const item = ItemOf(accessor);
    return item && hostkit::ItemSupports(interfaceID, item->kind, item->isLoop);
}

/// Whose notification, of which interface, and whether the right context goes with it.
void RecordNotification(UnspecifiedAccessor const& accessor, char const* operation,
                        eInterfaceID interfaceID, ContextID contextID)
{
    bool const isOwn = contextID == accessor.GetContextID();
    Record(operation, {TextOf(LibraryOf(accessor)), QString::number(interfaceID),
                       isOwn ? "own context" : "other context"});
}

std::string AnswerName(char const* operation, TestItem const* item, bool display,
                       char const* reserved)
{
    Query(operation, {TextOf(item), TextOf(display), Quoted(reserved)});
    // No test mistakes the name that is stored for the one to be shown.
    return item ? (display ? "" : "stored ") + item->name : std::string();
}

} // namespace

namespace tarno {
namespace datamodel {

char const* ItemID::GetType() const
{
    return m_Identity ? m_Identity->kind : nullptr;
}

std::string ItemID::Serialize() const
{
    return m_Identity ? "item:" + m_Identity->uid : std::string();
}

char const* ItemIDUnlock::GetItemIDUID(ItemID const& id)
{
    return id.m_Identity ? id.m_Identity->uid.c_str() : "";
}

void UnspecifiedAccessor::SetFrom(UnspecifiedAccessor const& other)
{
    Query("SetFrom");
    *this = Supports(other, m_InterfaceID) ? other : UnspecifiedAccessor();
}

bool UnspecifiedAccessor::Revalidate() const
{
    Query("Revalidate", {TextOf(ItemOf(*this))});
    return IsValid() && LibraryOf(*this) && (m_Handle < kFirstItemHandle || ItemOf(*this));
}

ItemID UnspecifiedAccessor::GetItemID() const
{
    TestItem const* const item = ItemOf(*this);
    return item ? item->id : ItemID();
}

CSimpleValue ItemAccessor::GetValue(char const* name) const
{
    TestItem const* const item = ItemOf(*this);
    Query("GetValue", {TextOf(item), name});
    std::string const asked = name;
    bool const exists = item
                        && ((asked == "Parent" && item->hasParent)
                            || (asked == "Specializes" && item->hasSpecializes));
    return exists ? CSimpleValue("other") : CSimpleValue();
}

std::string ItemAccessor::GetName(bool display, char const* reserved) const
{
    return AnswerName("GetName", ItemOf(*this), display, reserved);
}

Iterator<ItemAccessor> ItemTOCAccessor::GetItems(char const* kind) const
{
    Query("GetItems", {kind});
    std::vector<ItemHandle> handles;
    if (TestLibrary* const library = LibraryOf(*this)) {
        for (TestItem const* item : library->m_Listed) {
            if (item->kind == kind)
                handles.push_back(item->handle);
        }
    }
    return hostkit::MakeItemIterator(*this, handles);
}

void ItemTOCAccessor::AddNotification(IItemTOCNotification* /*notification*/,
                                      eInterfaceID interfaceID, ContextID contextID) const
{
    RecordNotification(*this, "TOC.AddNotification", interfaceID, contextID);
}

void ItemTOCAccessor::RemoveNotification(IItemTOCNotification* /*notification*/,
                                         eInterfaceID interfaceID, ContextID contextID) const
{
    RecordNotification(*this, "TOC.RemoveNotification", interfaceID, contextID);
}

std::string ItemLibraryAccessor::GetItemName(ItemID const& id, bool display,
                                             char const* reserved) const
{
    return AnswerName("GetItemName", ItemOf(*this, id), display, reserved);
}

bool ItemLibraryAccessor::ItemIsReadOnly(ItemID const& id) const
{
    TestItem const* const item = ItemOf(*this, id);
    Query("ItemIsReadOnly", {TextOf(item)});
    return item && item->isReadOnly;
}

bool ItemLibraryAccessor::ItemIsModified(ItemID const& id) const
{
    TestItem const* const item = ItemOf(*this, id);
    Query("ItemIsModified", {TextOf(item)});
    return item && item->isModified;
}

UnspecifiedAccessor ItemLibraryAccessor::GetModel(ItemID const& id, std::string* error) const
{
    TestItem const* const item = ItemOf(*this, id);
    Query("GetModel", {TextOf(item), error ? "error" : "null"});
    return item ? UnspecifiedAccessor(GetContext(), item->handle) : UnspecifiedAccessor();
}

std::string ItemLibraryAccessor::GetItemTags(ItemID const& id, char const* category) const
{
    TestItem const* const item = ItemOf(*this, id);
    Query("GetItemTags", {TextOf(item), Quoted(category)});
    if (!item || item->tags.count(category) == 0)
        return std::string();
    return item->tags.at(category);
}

void ItemLibraryAccessor::AddNotification(IItemLibraryNotification* notification,
                                          eInterfaceID interfaceID, ContextID contextID) const
{
    RecordNotification(*this, "Library.AddNotification", interfaceID, contextID);
    if (TestLibrary* const library = LibraryOf(*this))
        library->m_Listeners.Add(notification);
}

void ItemLibraryAccessor::RemoveNotification(IItemLibraryNotification* notification,
                                             eInterfaceID interfaceID, ContextID contextID) const
{
    RecordNotification(*this, "Library.RemoveNotification", interfaceID, contextID);
    if (TestLibrary* const library = LibraryOf(*this))
        library->m_Listeners.Remove(notification);
}

} // namespace datamodel
} // namespace tarno

hostkit::CSharedContext& hostkit::GetShared(AccessorContext& context)
{
    return context;
}
