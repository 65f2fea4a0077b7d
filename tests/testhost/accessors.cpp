#include "testcontext.h"
#include "testtext.h"

#include <algorithm>

using namespace tarno::datamodel;

namespace {

bool SupportsItem(TestItem const& item, eInterfaceID interfaceID)
{
    bool const isCompound = item.kind == TarnoType::gCompound;
    switch (interfaceID) {
    case kUnspecifiedInterface:
    case kItemInterface:
        return true;
    case kCompoundInterface:
    case kCompoundModifierInterface:
        return isCompound;
    case kLoopCompoundInterface:
    case kLoopCompoundModifierInterface:
        return isCompound && item.isLoop;
    case kTypeDescriptorInterface:
        return item.kind == LibType::gType;
    case kFunctionInterface:
        return item.kind != LibType::gType && item.kind != TarnoType::gGlobalConstant;
    default:
        return false;
    }
}

bool Supports(UnspecifiedAccessor const& accessor, eInterfaceID interfaceID)
{
    switch (accessor.GetHandle()) {
    case kLibraryHandle:
        return interfaceID == kUnspecifiedInterface || interfaceID == kItemLibraryInterface
               || interfaceID == kItemLibraryModifierInterface
               || interfaceID == kLowLevelItemLibraryInterface;
    case kTOCHandle:
        return interfaceID == kUnspecifiedInterface || interfaceID == kItemTOCInterface;
    default:
        return ItemOf(accessor) && SupportsItem(*ItemOf(accessor), interfaceID);
    }
}

/// Whose notification, of which interface, and whether the right context goes with it.
void RecordNotification(UnspecifiedAccessor const& accessor, char const* operation,
                        eInterfaceID interfaceID, ContextID contextID)
{
    bool const isOwn = contextID == accessor.GetContextID();
    TestHost::Get().Record(operation, {TextOf(LibraryOf(accessor)), QString::number(interfaceID),
                                       isOwn ? "own context" : "other context"});
}

template <class Listener>
void RemoveOne(std::vector<Listener*>& listeners, Listener* listener)
{
    auto const found = std::find(listeners.begin(), listeners.end(), listener);
    if (found != listeners.end())
        listeners.erase(found);
}

} // namespace

namespace tarno {
namespace datamodel {

namespace TarnoType {
char const* const gSolver = "solver";
char const* const gPolymorphicSolver = "polymorphicSolver";
char const* const gCompound = "compound";
char const* const gGlobalConstant = "constant";
} // namespace TarnoType
namespace LibType {
char const* const gType = "type";
}

ItemID::ItemID()
    : m_Identity(nullptr)
{}

ItemID::ItemID(ItemIdentity const* identity)
    : m_Identity(identity)
{}

bool ItemID::IsNull() const
{
    return !m_Identity;
}

bool ItemID::IsValid() const
{
    return m_Identity && m_Identity->kind;
}

char const* ItemID::GetType() const
{
    return m_Identity ? m_Identity->kind : nullptr;
}

std::string ItemID::Serialize() const
{
    return m_Identity ? "item:" + m_Identity->uid : std::string();
}

bool ItemID::operator==(ItemID const& other) const
{
    return m_Identity == other.m_Identity;
}

bool ItemID::operator!=(ItemID const& other) const
{
    return m_Identity != other.m_Identity;
}

bool ItemID::operator<(ItemID const& other) const
{
    return std::less<ItemIdentity const*>()(m_Identity, other.m_Identity);
}

char const* ItemIDUnlock::GetItemIDUID(ItemID const& id)
{
    return id.m_Identity ? id.m_Identity->uid.c_str() : "";
}

ItemIdentity const* ItemIDUnlock::GetIdentity(ItemID const& id)
{
    return id.m_Identity;
}

CSimpleValue::CSimpleValue()
    : m_IsValid(false)
{}

CSimpleValue::CSimpleValue(std::string const& text)
    : m_IsValid(true)
    , m_Text(text)
{}

bool CSimpleValue::IsValid() const
{
    return m_IsValid;
}

std::string const& CSimpleValue::GetText() const
{
    return m_Text;
}

UnspecifiedAccessor::UnspecifiedAccessor()
    : UnspecifiedAccessor(kUnspecifiedInterface)
{}

UnspecifiedAccessor::UnspecifiedAccessor(eInterfaceID interfaceID)
    : UnspecifiedAccessor(interfaceID, nullptr, 0)
{}

UnspecifiedAccessor::UnspecifiedAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kUnspecifiedInterface, context, handle)
{}

UnspecifiedAccessor::UnspecifiedAccessor(eInterfaceID interfaceID, AccessorContext* context,
                                         ItemHandle handle)
    : m_Context(context)
    , m_InterfaceID(interfaceID)
    , m_Handle(handle)
{
    if (m_Context)
        m_Context->AddRef();
}

UnspecifiedAccessor::UnspecifiedAccessor(UnspecifiedAccessor const& other)
    : UnspecifiedAccessor(other.m_InterfaceID, other.m_Context, other.m_Handle)
{}

UnspecifiedAccessor& UnspecifiedAccessor::operator=(UnspecifiedAccessor const& other)
{
    if (other.m_Context)
        other.m_Context->AddRef();
    if (m_Context)
        m_Context->Release();
    m_Context = other.m_Context;
    m_Handle = other.m_Handle;
    return *this;
}

UnspecifiedAccessor::~UnspecifiedAccessor()
{
    if (m_Context)
        m_Context->Release();
}

void UnspecifiedAccessor::SetFrom(UnspecifiedAccessor const& other)
{
    TestHost::Get().Count("SetFrom");
    *this = Supports(other, m_InterfaceID) ? other : UnspecifiedAccessor();
}

bool UnspecifiedAccessor::IsValid() const
{
    return m_Context && m_Handle != 0;
}

bool UnspecifiedAccessor::Revalidate() const
{
    TestHost::Get().Query("Revalidate", {TextOf(ItemOf(*this))});
    return IsValid() && LibraryOf(*this) && (m_Handle < kFirstItemHandle || ItemOf(*this));
}

eInterfaceID UnspecifiedAccessor::GetAccessorInterfaceID() const
{
    return m_InterfaceID;
}

ContextID UnspecifiedAccessor::GetContextID() const
{
    return m_Context ? m_Context->GetID() : 0;
}

ItemID UnspecifiedAccessor::GetItemID() const
{
    TestItem const* const item = ItemOf(*this);
    return item ? item->id : ItemID();
}

AccessorContext* UnspecifiedAccessor::GetContext() const
{
    return m_Context;
}

ItemHandle UnspecifiedAccessor::GetHandle() const
{
    return m_Handle;
}

FunctionAccessor::FunctionAccessor()
    : UnspecifiedAccessor(kFunctionInterface)
{}

CompoundAccessor::CompoundAccessor()
    : UnspecifiedAccessor(kCompoundInterface)
{}

LoopCompoundAccessor::LoopCompoundAccessor()
    : UnspecifiedAccessor(kLoopCompoundInterface)
{}

TypeDescriptorAccessor::TypeDescriptorAccessor()
    : UnspecifiedAccessor(kTypeDescriptorInterface)
{}

ItemAccessor::ItemAccessor()
    : UnspecifiedAccessor(kItemInterface)
{}

ItemAccessor::ItemAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemInterface, context, handle)
{}

CSimpleValue ItemAccessor::GetValue(char const* name) const
{
    TestItem const* const item = ItemOf(*this);
    TestHost::Get().Query("GetValue", {TextOf(item), name});
    std::string const asked = name;
    bool const exists = item
                        && ((asked == "Parent" && item->hasParent)
                            || (asked == "Specializes" && item->hasSpecializes));
    return exists ? CSimpleValue("other") : CSimpleValue();
}

std::string ItemAccessor::GetName(bool display, char const* reserved) const
{
    TestItem const* const item = ItemOf(*this);
    TestHost::Get().Query("GetName", {TextOf(item), TextOf(display), Quoted(reserved)});
    return item ? item->name : std::string();
}

template <class T>
struct Iterator<T>::State
{
    std::vector<T> items;
    std::size_t position;
};

template <class T>
Iterator<T>::Iterator(std::shared_ptr<State> const& state)
    : m_State(state)
{}

template <class T>
Iterator<T>::Iterator(Iterator const& other) = default;

template <class T>
Iterator<T>::~Iterator() = default;

template <class T>
bool Iterator<T>::IsDone() const
{
    return m_State->position == m_State->items.size();
}

template <class T>
void Iterator<T>::Next()
{
    ++m_State->position;
}

template <class T>
T& Iterator<T>::GetCurrent() const
{
    return m_State->items.at(m_State->position);
}

template class Iterator<ItemAccessor>;

ItemTOCAccessor::ItemTOCAccessor()
    : UnspecifiedAccessor(kItemTOCInterface)
{}

ItemTOCAccessor::ItemTOCAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemTOCInterface, context, handle)
{}

Iterator<ItemAccessor> ItemTOCAccessor::GetItems(char const* kind) const
{
    TestHost::Get().Query("GetItems", {kind});
    auto const state = std::make_shared<Iterator<ItemAccessor>::State>();
    state->position = 0;
    if (TestLibrary* const library = LibraryOf(*this)) {
        for (TestItem const* item : library->m_Listed) {
            if (item->kind == kind)
                state->items.push_back(library->GetAccessor(*item));
        }
    }
    return Iterator<ItemAccessor>(state);
}

void ItemTOCAccessor::AddNotification(IItemTOCNotification* notification, eInterfaceID interfaceID,
                                      ContextID contextID) const
{
    RecordNotification(*this, "TOC.AddNotification", interfaceID, contextID);
    if (TestLibrary* const library = LibraryOf(*this))
        library->m_TocListeners.push_back(notification);
}

void ItemTOCAccessor::RemoveNotification(IItemTOCNotification* notification,
                                         eInterfaceID interfaceID, ContextID contextID) const
{
    RecordNotification(*this, "TOC.RemoveNotification", interfaceID, contextID);
    if (TestLibrary* const library = LibraryOf(*this))
        RemoveOne(library->m_TocListeners, notification);
}

ItemLibraryAccessor::ItemLibraryAccessor()
    : UnspecifiedAccessor(kItemLibraryInterface)
{}

ItemLibraryAccessor::ItemLibraryAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemLibraryInterface, context, handle)
{}

std::string ItemLibraryAccessor::GetItemName(ItemID const& id, bool display,
                                             char const* reserved) const
{
    TestItem const* const item = ItemOf(*this, id);
    TestHost::Get().Query("GetItemName", {TextOf(item), TextOf(display), Quoted(reserved)});
    return item ? item->name : std::string();
}

bool ItemLibraryAccessor::ItemIsReadOnly(ItemID const& id) const
{
    TestItem const* const item = ItemOf(*this, id);
    TestHost::Get().Query("ItemIsReadOnly", {TextOf(item)});
    return item && item->isReadOnly;
}

bool ItemLibraryAccessor::ItemIsModified(ItemID const& id) const
{
    TestItem const* const item = ItemOf(*this, id);
    TestHost::Get().Query("ItemIsModified", {TextOf(item)});
    return item && item->isModified;
}

UnspecifiedAccessor ItemLibraryAccessor::GetModel(ItemID const& id, std::string* error) const
{
    TestItem const* const item = ItemOf(*this, id);
    TestHost::Get().Query("GetModel", {TextOf(item), error ? "error" : "null"});
    return item ? UnspecifiedAccessor(GetContext(), item->handle) : UnspecifiedAccessor();
}

std::string ItemLibraryAccessor::GetItemTags(ItemID const& id, char const* category) const
{
    TestItem const* const item = ItemOf(*this, id);
    TestHost::Get().Query("GetItemTags", {TextOf(item), Quoted(category)});
    if (!item || item->tags.count(category) == 0)
        return std::string();
    return item->tags.at(category);
}

void ItemLibraryAccessor::AddNotification(IItemLibraryNotification* notification,
                                          eInterfaceID interfaceID, ContextID contextID) const
{
    RecordNotification(*this, "Library.AddNotification", interfaceID, contextID);
    if (TestLibrary* const library = LibraryOf(*this))
        library->m_LibraryListeners.push_back(notification);
}

void ItemLibraryAccessor::RemoveNotification(IItemLibraryNotification* notification,
                                             eInterfaceID interfaceID, ContextID contextID) const
{
    RecordNotification(*this, "Library.RemoveNotification", interfaceID, contextID);
    if (TestLibrary* const library = LibraryOf(*this))
        RemoveOne(library->m_LibraryListeners, notification);
}

} // namespace datamodel
} // namespace tarno
