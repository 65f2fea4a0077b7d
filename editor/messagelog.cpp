#include "messagelog.h"

#include "shorttext.h"

#include <QTextCursor>

#include <algorithm>
#include <utility>

using namespace embeddedhost;

namespace {

QString Name(eSeverity severity)
{
    switch (severity) {
    case eSeverity::kInformation:
        break;
    case eSeverity::kWarning:
        return QStringLiteral("Warning: ");
    case eSeverity::kError:
        return QStringLiteral("Error: ");
    }
    return QString();
}

/// The text as one paragraph: line breaks in it become line separators.
QString MakeParagraph(QString const& text)
{
    QString paragraph = ShortenText(text);
    for (QChar const end : {QChar(QLatin1Char('\n')), QChar(QChar::ParagraphSeparator)})
        paragraph.replace(end, QChar(QChar::LineSeparator));
    return paragraph.remove(QLatin1Char('\r'));
}

} // namespace

CMessageLog::CMessageLog(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setAccessibleName(tr("Messages"));
    setUndoRedoEnabled(false);
    // Messages come in bursts, and appending them one by one would lay out the text each time.
    m_Timer.setSingleShot(true);
    m_Timer.setInterval(0);
    connect(&m_Timer, &QTimer::timeout, this, &CMessageLog::ShowPending);
}

void CMessageLog::Append(eSeverity severity, QString const& text)
{
    m_Pending.push_back({QTime::currentTime(), severity, text});
    if (m_Pending.size() > kMostMessages) {
        m_Pending.pop_front();
        ++m_DroppedCount;
    }
    if (!m_Timer.isActive())
        m_Timer.start();
}

void CMessageLog::ShowPending()
{
    std::deque<Message> const messages = std::exchange(m_Pending, {});
    if (messages.empty())
        return;
    QStringList paragraphs;
    for (Message const& message : messages)
        paragraphs << message.time.toString(Qt::ISODate) + QStringLiteral("  ")
                          + Name(message.severity) + MakeParagraph(message.text);
    appendPlainText(paragraphs.join(QLatin1Char('\n')));
    DropOldest();
    Q_EMIT Shown(messages.back().text);
}

void CMessageLog::DropOldest()
{
    // QPlainTextEdit::setMaximumBlockCount is of no use here: it would drop the notice first.
    int const noticeCount = m_HasNotice ? 1 : 0;
    int const over = std::max(0, blockCount() - noticeCount - kMostMessages);
    m_DroppedCount += over;
    if (m_DroppedCount == 0)
        return;
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor, over + noticeCount);
    cursor.insertText(tr("%L1 earlier messages are not shown any more.").arg(m_DroppedCount)
                      + QLatin1Char('\n'));
    cursor.endEditBlock();
    m_HasNotice = true;
}

#include "moc_messagelog.cpp"
