#ifndef HOSTKIT_KINDTABLE_H
#define HOSTKIT_KINDTABLE_H

#include <array>

namespace hostkit {

/// What distinguishes one kind of item from the others; a new kind is a row of GetKinds.
struct Kind
{
    /// The kind constant, compared by identity.
    char const* constant;
    bool isCompound;
    /// Computes something: supports kFunctionInterface.
    bool isFunction;
    bool isType;
};

constexpr int kKindCount = 5;

/// In the order in which a table of contents may list them.
std::array<Kind, kKindCount> const& GetKinds();

/// The kind with the constant; null if the pointer is not one of the kind constants.
Kind const* FindKind(char const* constant);

} // namespace hostkit

#endif
