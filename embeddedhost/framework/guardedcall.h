#ifndef EMBEDDEDHOST_GUARDEDCALL_H
#define EMBEDDEDHOST_GUARDEDCALL_H

#include <QString>

#include <functional>

namespace embeddedhost {

class CMessageChannel;

/// Runs `call` where no caller catches exceptions: in a timer's slot, a watcher's, a
/// worker's delivery. An exception becomes an error message, "<what>: <reason>", where `what`
/// names the thing that failed, such as a file. The channel may be null, and `call` may destroy
/// it: the message goes to the debug output then. False after an exception.
bool RunGuarded(CMessageChannel* messages, QString const& what, std::function<void()> const& call);

} // namespace embeddedhost

#endif
