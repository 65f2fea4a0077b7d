#ifndef HOSTKIT_NULLPOINTERERROR_H
#define HOSTKIT_NULLPOINTERERROR_H

/// @file
/// The error of pointers and handles that name nothing.

/// The part of the contract that is the same in every host; @ref guide-embedding
/// "docs/embedding.md" says what remains.
namespace hostkit {

/// Raises qorm::ExBase::NullPtr for a pointer or handle that was followed, after printing it unless
/// error reporting is disabled.
[[noreturn]] void RaiseNullPtr();

} // namespace hostkit

#endif
