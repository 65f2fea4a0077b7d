#include "framework/messagechannel.h"

namespace embeddedhost {

CMessageChannel::CMessageChannel(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<eSeverity>("embeddedhost::eSeverity");
}

void CMessageChannel::Post(eSeverity severity, QString const& text)
{
    if (m_Log.size() == kLogSize)
        m_Log.pop_front();
    m_Log.push_back({severity, text});
    try {
        Q_EMIT MessagePosted(severity, text);
    } catch (...) {
        // The reported event has happened already; an exception of a view must not look like a
        // failure of it.
        qWarning("A message could not be shown: %s", qPrintable(text));
    }
}

std::deque<CMessageChannel::Message> const& CMessageChannel::GetLog() const
{
    return m_Log;
}

void CMessageChannel::ClearLog()
{
    m_Log.clear();
}

} // namespace embeddedhost

#include "moc_messagechannel.cpp"
