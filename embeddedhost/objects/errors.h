#ifndef EMBEDDEDHOST_ERRORS_H
#define EMBEDDEDHOST_ERRORS_H

namespace embeddedhost {

/// Raises ExBase::NullPtr for a pointer or handle that was followed, after printing it unless
/// error reporting is disabled.
[[noreturn]] void RaiseNullPtr();

} // namespace embeddedhost

#endif
