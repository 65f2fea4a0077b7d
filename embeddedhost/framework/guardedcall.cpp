#include "framework/guardedcall.h"

#include "framework/messagechannel.h"

#include <QPointer>

#include <exception>

namespace embeddedhost {

namespace {

void Tell(CMessageChannel* messages, QString const& text)
{
    if (messages)
        messages->Post(eSeverity::kError, text);
    else
        qWarning("%s", qPrintable(text));
}

} // namespace

bool RunGuarded(CMessageChannel* messages, QString const& what, std::function<void()> const& call)
{
    // The call may destroy the channel.
    QPointer<CMessageChannel> const channel(messages);
    try {
        call();
        return true;
    } catch (std::exception const& error) {
        Tell(channel, QStringLiteral("%1: %2.").arg(what, QString::fromUtf8(error.what())));
    } catch (...) {
        Tell(channel, QStringLiteral("%1: an unknown failure.").arg(what));
    }
    return false;
}

} // namespace embeddedhost
