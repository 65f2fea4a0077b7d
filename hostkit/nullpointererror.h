#ifndef HOSTKIT_NULLPOINTERERROR_H
#define HOSTKIT_NULLPOINTERERROR_H

namespace hostkit {

/// Raises ExBase::NullPtr for a pointer or handle that was followed, after printing it unless
/// error reporting is disabled.
[[noreturn]] void RaiseNullPtr();

} // namespace hostkit

#endif
