#ifndef NODEBROWSER_TESTS_TESTCONTEXT_H
#define NODEBROWSER_TESTS_TESTCONTEXT_H

// What the accessors of the test host are bound to.

#include "sharedcontext.h"
#include "testhost.h"

#include <string>

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
