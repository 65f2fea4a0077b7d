#ifndef EMBEDDING_PARTS_H
#define EMBEDDING_PARTS_H

// What this host works on: a fixed list of parts, which lives as long as the process.

#include <hostkit/sharedcontext.h>
#include <nodebrowser/hostapi/datamodel.h>

#include <functional>
#include <string>
#include <vector>

namespace tarno {
namespace datamodel {

/// The panel only passes pointers to it on, so it can be the part itself.
struct ItemIdentity
{
    char const* kind;
    std::string uid;
    std::string name;
    std::string tags;
};

/// What accessors are bound to. There is one library, so there is nothing to hold.
class AccessorContext : public hostkit::CSharedContext
{
};

} // namespace datamodel
} // namespace tarno

typedef tarno::datamodel::ItemIdentity Part;

std::vector<Part> const& GetParts();

// Handles: the library, its table of contents, then the parts in their order.
tarno::datamodel::ItemHandle const kLibraryHandle = 1;
tarno::datamodel::ItemHandle const kTOCHandle = 2;
tarno::datamodel::ItemHandle const kFirstPartHandle = 3;

tarno::datamodel::ItemLibraryAccessor GetPartsLibrary();
/// Null for what is bound to no part.
Part const* PartOf(tarno::datamodel::UnspecifiedAccessor const& accessor);

/// Called with the compound that a double click in the panel chooses.
void SetCompoundOpener(std::function<void(Part const&)> const& opener);

#endif
