// Accessors as values: construction, copies, and the interface of each class. SetFrom, Revalidate
// and GetItemID are the host's: they need its items.

#include "sharedcontext.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using hostkit::GetShared;

UnspecifiedAccessor::UnspecifiedAccessor()
    : UnspecifiedAccessor(kUnspecifiedInterface, nullptr, 0)
{}

UnspecifiedAccessor::UnspecifiedAccessor(UnspecifiedAccessor const& other)
    : UnspecifiedAccessor(other.m_InterfaceID, other.m_Context, other.m_Handle)
{}

UnspecifiedAccessor::UnspecifiedAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kUnspecifiedInterface, context, handle)
{}

UnspecifiedAccessor::UnspecifiedAccessor(eInterfaceID interfaceID)
    : UnspecifiedAccessor(interfaceID, nullptr, 0)
{}

UnspecifiedAccessor::UnspecifiedAccessor(eInterfaceID interfaceID, AccessorContext* context,
                                         ItemHandle handle)
    : m_Context(context)
    , m_InterfaceID(interfaceID)
    , m_Handle(handle)
{
    if (m_Context)
        GetShared(*m_Context).AddRef();
}

UnspecifiedAccessor& UnspecifiedAccessor::operator=(UnspecifiedAccessor const& other)
{
    m_Handle = other.m_Handle;
    // One context has one number: comparing the pointers compares both.
    if (m_Context == other.m_Context)
        return *this;
    AccessorContext* const previous = m_Context;
    m_Context = other.m_Context;
    if (m_Context)
        GetShared(*m_Context).AddRef();
    // Released last: the other accessor may be owned by the previous context.
    if (previous)
        GetShared(*previous).Release();
    return *this;
}

UnspecifiedAccessor::~UnspecifiedAccessor()
{
    if (m_Context)
        GetShared(*m_Context).Release();
}

bool UnspecifiedAccessor::IsValid() const
{
    return m_Context && m_Handle != 0;
}

eInterfaceID UnspecifiedAccessor::GetAccessorInterfaceID() const
{
    return m_InterfaceID;
}

ContextID UnspecifiedAccessor::GetContextID() const
{
    return m_Context ? GetShared(*m_Context).GetID() : 0;
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

ItemTOCAccessor::ItemTOCAccessor()
    : UnspecifiedAccessor(kItemTOCInterface)
{}

ItemTOCAccessor::ItemTOCAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemTOCInterface, context, handle)
{}

ItemLibraryAccessor::ItemLibraryAccessor()
    : UnspecifiedAccessor(kItemLibraryInterface)
{}

ItemLibraryAccessor::ItemLibraryAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemLibraryInterface, context, handle)
{}

LowLevelItemLibraryAccessor::LowLevelItemLibraryAccessor()
    : UnspecifiedAccessor(kLowLevelItemLibraryInterface)
{}

ItemLibraryModifierAccessor::ItemLibraryModifierAccessor()
    : UnspecifiedAccessor(kItemLibraryModifierInterface)
{}

CompoundModifierAccessor::CompoundModifierAccessor()
    : UnspecifiedAccessor(kCompoundModifierInterface)
{}

LoopCompoundModifierAccessor::LoopCompoundModifierAccessor()
    : UnspecifiedAccessor(kLoopCompoundModifierInterface)
{}

} // namespace datamodel
} // namespace tarno
