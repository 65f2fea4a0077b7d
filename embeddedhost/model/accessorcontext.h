#ifndef EMBEDDEDHOST_ACCESSORCONTEXT_H
#define EMBEDDEDHOST_ACCESSORCONTEXT_H

#include "model/itemidentity.h"
#include "model/librarynotifier.h"

#include <datamodel.h>
#include <hostkit/sharedcontext.h>

namespace embeddedhost {
class CLibrary;

/// Handles of the library and its table of contents. An item's handle is the address of its
/// identity.
constexpr tarno::datamodel::ItemHandle kLibraryHandle = 1;
constexpr tarno::datamodel::ItemHandle kTocHandle = 2;

inline tarno::datamodel::ItemHandle GetItemHandle(tarno::datamodel::ItemIdentity const& identity)
{
    return reinterpret_cast<tarno::datamodel::ItemHandle>(&identity);
}

/// Null for the handle of something that is not an item.
inline tarno::datamodel::ItemIdentity const* GetIdentity(tarno::datamodel::ItemHandle handle)
{
    return handle > kTocHandle ? reinterpret_cast<tarno::datamodel::ItemIdentity const*>(handle)
                               : nullptr;
}
} // namespace embeddedhost

namespace tarno {
namespace datamodel {

/// State shared by the accessors of one library. It outlives the library while accessors hold it;
/// they return empty values from then on.
class AccessorContext : public hostkit::CSharedContext
{
public:
    explicit AccessorContext(embeddedhost::CLibrary& library);

    /// Null once the library is closed.
    embeddedhost::CLibrary* GetLibrary() const
    {
        return m_Library;
    }

    /// The living item behind the handle; null for none.
    embeddedhost::CLibraryItem* FindItem(ItemHandle handle) const
    {
        ItemIdentity const* const identity = embeddedhost::GetIdentity(handle);
        return identity && m_Library ? identity->item : nullptr;
    }

    /// The handle is that of a living item, or of the open library or its table of contents.
    bool Exists(ItemHandle handle) const
    {
        return handle > embeddedhost::kTocHandle ? FindItem(handle) != nullptr
                                                 : handle && m_Library;
    }

    /// Whether the item, library or table of contents supports the interface.
    bool Supports(eInterfaceID interfaceID, ItemHandle handle) const;

    embeddedhost::CLibraryNotifier& GetNotifier();

    /// Called when the library is closed.
    void Close();

private:
    ~AccessorContext() override = default;

    embeddedhost::CLibrary* m_Library;
    embeddedhost::CLibraryNotifier m_Notifier;
};

/// The library that the accessor may be asked about; null for none.
embeddedhost::CLibrary* FindLibrary(UnspecifiedAccessor const& accessor);

/// The living item that the accessor is bound to; null for none.
inline embeddedhost::CLibraryItem* FindItem(UnspecifiedAccessor const& accessor)
{
    AccessorContext const* const context = accessor.GetContext();
    return context ? context->FindItem(accessor.GetHandle()) : nullptr;
}

} // namespace datamodel
} // namespace tarno

#endif
