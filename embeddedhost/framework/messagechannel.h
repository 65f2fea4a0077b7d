#ifndef EMBEDDEDHOST_MESSAGECHANNEL_H
#define EMBEDDEDHOST_MESSAGECHANNEL_H

#include "../embeddedhost_export.h"

#include <QMetaType>
#include <QObject>
#include <QString>

#include <deque>

namespace embeddedhost {

/// How bad it is.
enum class eSeverity
{
    kInformation, ///< something was done
    kWarning,     ///< something was refused or left out; the rest works
    kError        ///< the requested operation failed as a whole
};

/// The host's messages to its user, each a sentence or two that can be acted on.
class EMBEDDEDHOST_EXPORT CMessageChannel : public QObject
{
    Q_OBJECT

public:
    /// One message.
    struct Message
    {
        eSeverity severity; ///< how bad it is
        QString text;       ///< plain text
    };

    /// The maximum of messages in the log, which drops the oldest ones.
    static constexpr std::size_t kLogSize = 10000;

    /// With an empty log. The parent, which may be null, owns it.
    explicit CMessageChannel(QObject* parent = nullptr);

    /// Does not throw: exceptions of slots are caught, and the log has the message.
    void Post(eSeverity severity, QString const& text);

    /// Oldest first; valid until the next message.
    std::deque<Message> const& GetLog() const;
    /// Forgets all messages.
    void ClearLog();

Q_SIGNALS:
    /// The message is in the log already.
    void MessagePosted(embeddedhost::eSeverity severity, QString const& text);

private:
    std::deque<Message> m_Log;
};

} // namespace embeddedhost

Q_DECLARE_METATYPE(embeddedhost::eSeverity)

#endif
