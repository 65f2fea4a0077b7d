// Accessors as values: binding, validity, and the accessors of items.

#include "model/accessorcontext.h"
#include "model/libraryitem.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using embeddedhost::CLibraryItem;

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
        m_Context->AddRef();
}

UnspecifiedAccessor& UnspecifiedAccessor::operator=(UnspecifiedAccessor const& other)
{
    if (m_Context != other.m_Context || GetContextID() != other.GetContextID()) {
        AccessorContext* const previous = m_Context;
        m_Context = other.m_Context;
        if (m_Context)
            m_Context->AddRef();
        if (previous)
            previous->Release();
    }
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
    bool const isSupported =
        other.m_Context && other.m_Context->Supports(m_InterfaceID, other.m_Handle);
    *this = isSupported ? other : UnspecifiedAccessor();
}

bool UnspecifiedAccessor::IsValid() const
{
    return m_Context && m_Handle;
}

bool UnspecifiedAccessor::Revalidate() const
{
    return m_Context && m_Context->Supports(kUnspecifiedInterface, m_Handle)
           && (!embeddedhost::GetIdentity(m_Handle) || m_Context->FindItem(m_Handle));
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
    // An item that has been removed still tells which one it was.
    bool const isOpen = m_Context && m_Context->GetLibrary();
    return isOpen ? ItemID(embeddedhost::GetIdentity(m_Handle)) : ItemID();
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
    CLibraryItem const* const item = GetContext() ? GetContext()->FindItem(GetHandle()) : nullptr;
    std::string const* const value = item && name ? item->GetNamedValue(name) : nullptr;
    return value ? CSimpleValue(*value) : CSimpleValue();
}

std::string ItemAccessor::GetName(bool, char const*) const
{
    CLibraryItem const* const item = GetContext() ? GetContext()->FindItem(GetHandle()) : nullptr;
    return item ? item->GetName() : std::string();
}

} // namespace datamodel
} // namespace tarno
