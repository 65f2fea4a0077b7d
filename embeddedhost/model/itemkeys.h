#ifndef EMBEDDEDHOST_ITEMKEYS_H
#define EMBEDDEDHOST_ITEMKEYS_H

#include <array>

namespace embeddedhost {

/// The keys of an item's object in a library file, and of the entries of its lists.
namespace Keys {

constexpr char const* kUid = "uid";
constexpr char const* kKind = "kind";
constexpr char const* kName = "name";
constexpr char const* kCategory = "category";
constexpr char const* kTags = "tags";
constexpr char const* kSignature = "signature";
constexpr char const* kImplements = "implements";
constexpr char const* kLoop = "loop";
constexpr char const* kParent = "parent";
constexpr char const* kSpecializes = "specializes";
constexpr char const* kReadOnly = "readOnly";
constexpr char const* kInputs = "inputs";
constexpr char const* kOutputs = "outputs";
constexpr char const* kNodes = "nodes";
constexpr char const* kConnections = "connections";
constexpr char const* kPortNodes = "portNodes";

/// In the order in which they are written; unknown keys follow.
constexpr std::array<char const*, 16> kWritten = {
    kUid,    kKind,        kName,     kCategory, kTags,    kSignature, kImplements,  kLoop,
    kParent, kSpecializes, kReadOnly, kInputs,   kOutputs, kNodes,     kConnections, kPortNodes};

namespace Port {
constexpr char const* kName = "name";
constexpr char const* kType = "type";
} // namespace Port

namespace Node {
constexpr char const* kId = "id";
constexpr char const* kItem = "item";
constexpr char const* kPosition = "position";
} // namespace Node

namespace Connection {
constexpr char const* kFrom = "from";
constexpr char const* kTo = "to";
} // namespace Connection

} // namespace Keys

/// The ids by which connections name the compound's own inputs and outputs. No node has them.
constexpr char const* kInputsNode = "in";
constexpr char const* kOutputsNode = "out";

} // namespace embeddedhost

#endif
