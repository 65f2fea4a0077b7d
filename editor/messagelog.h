#ifndef EDITOR_MESSAGELOG_H
#define EDITOR_MESSAGELOG_H

#include <embeddedhost/framework/messagechannel.h>

#include <QPlainTextEdit>
#include <QTime>
#include <QTimer>

#include <deque>

/// Shows the host's messages, newest last. A library can have hundreds of thousands of faults:
/// messages are added in batches, long texts are cut, and the newest 1000 are kept, below a line
/// that says how many there were before.
class CMessageLog : public QPlainTextEdit
{
    Q_OBJECT

public:
    static constexpr int kMostMessages = 1000;

    explicit CMessageLog(QWidget* parent = nullptr);

    /// The message is shown from the event loop.
    void Append(embeddedhost::eSeverity severity, QString const& text);

Q_SIGNALS:
    /// Messages were shown, of which this is the newest.
    void Shown(QString const& text);

private:
    struct Message
    {
        QTime time;
        embeddedhost::eSeverity severity;
        QString text;
    };

    void ShowPending();
    void DropOldest();

    QTimer m_Timer;
    std::deque<Message> m_Pending;
    /// The number of messages dropped so far, and whether the first line is the notice about them.
    int m_DroppedCount = 0;
    bool m_HasNotice = false;
};

#endif
