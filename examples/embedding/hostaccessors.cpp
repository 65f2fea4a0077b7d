// Identifiers and accessors: small values that the panel copies around.

#include "parts.h"

#include <functional>

namespace {

using namespace tarno::datamodel;

bool PartSupports(Part const& part, eInterfaceID interfaceID)
{
    switch (interfaceID) {
    case kUnspecifiedInterface:
    case kItemInterface:
        return true;
    case kCompoundInterface:
    case kCompoundModifierInterface:
        return part.kind == TarnoType::gCompound;
    case kTypeDescriptorInterface:
        return part.kind == LibType::gType;
    case kFunctionInterface:
        return part.kind != LibType::gType && part.kind != TarnoType::gGlobalConstant;
    default:
        return false;
    }
}

bool Supports(UnspecifiedAccessor const& accessor, eInterfaceID interfaceID)
{
    if (Part const* const part = PartOf(accessor))
        return PartSupports(*part, interfaceID);
    if (interfaceID == kUnspecifiedInterface)
        return accessor.IsValid();
    if (accessor.GetHandle() == kTOCHandle)
        return interfaceID == kItemTOCInterface;
    return accessor.GetHandle() == kLibraryHandle
           && (interfaceID == kItemLibraryInterface || interfaceID == kItemLibraryModifierInterface
               || interfaceID == kLowLevelItemLibraryInterface);
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
    return m_Identity;
}
char const* ItemID::GetType() const
{
    return m_Identity ? m_Identity->kind : nullptr;
}
std::string ItemID::Serialize() const
{
    return m_Identity ? m_Identity->uid : std::string();
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
{}
UnspecifiedAccessor::UnspecifiedAccessor(UnspecifiedAccessor const& other) = default;
UnspecifiedAccessor::~UnspecifiedAccessor() = default;

UnspecifiedAccessor& UnspecifiedAccessor::operator=(UnspecifiedAccessor const& other)
{
    // The interface stays: it belongs to the accessor's class.
    m_Context = other.m_Context;
    m_Handle = other.m_Handle;
    return *this;
}

void UnspecifiedAccessor::SetFrom(UnspecifiedAccessor const& other)
{
    *this = Supports(other, m_InterfaceID) ? other : UnspecifiedAccessor();
}

bool UnspecifiedAccessor::IsValid() const
{
    return m_Context && m_Handle != 0;
}
bool UnspecifiedAccessor::Revalidate() const
{
    return IsValid();
}
eInterfaceID UnspecifiedAccessor::GetAccessorInterfaceID() const
{
    return m_InterfaceID;
}
ContextID UnspecifiedAccessor::GetContextID() const
{
    return reinterpret_cast<ContextID>(m_Context);
}
ItemID UnspecifiedAccessor::GetItemID() const
{
    return ItemID(PartOf(*this));
}
AccessorContext* UnspecifiedAccessor::GetContext() const
{
    return m_Context;
}
ItemHandle UnspecifiedAccessor::GetHandle() const
{
    return m_Handle;
}

CompoundAccessor::CompoundAccessor()
    : UnspecifiedAccessor(kCompoundInterface)
{}
LoopCompoundAccessor::LoopCompoundAccessor()
    : UnspecifiedAccessor(kLoopCompoundInterface)
{}
TypeDescriptorAccessor::TypeDescriptorAccessor()
    : UnspecifiedAccessor(kTypeDescriptorInterface)
{}
FunctionAccessor::FunctionAccessor()
    : UnspecifiedAccessor(kFunctionInterface)
{}

} // namespace datamodel
} // namespace tarno
