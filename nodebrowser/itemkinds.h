#ifndef NODEBROWSER_ITEMKINDS_H
#define NODEBROWSER_ITEMKINDS_H

#include <vector>

namespace nodebrowser {

/// The properties of one kind of item.
struct SItemKind
{
    /// The host's kind constant, compared by identity; null for a kind that is not known.
    char const* type;
    /// A compound that is an abstract function; listed with the other compounds.
    bool isSignature;
    /// The tag that every item of the kind carries; empty for none.
    char const* tag;
    /// Icon resource; null for none.
    char const* icon;
    /// The filters that let the kind pass: bit n stands for CNodeBrowser::eConfigType(n).
    unsigned char filters;
};

/// The known kinds, in the order in which their items are collected. They live for the whole
/// process.
std::vector<SItemKind> const& GetItemKinds();

/// The kind of an item, by its type and, for a compound, whether it is an abstract function. An
/// unknown type has a kind without tag and icon.
SItemKind const& FindItemKind(char const* type, bool isSignature);

/// Whether the filter lets the kind pass; false for a filter that does not exist.
bool PassesKindFilter(SItemKind const& kind, int filter);

} // namespace nodebrowser

#endif
