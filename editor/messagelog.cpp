#include "messagelog.h"

#include <QTime>

namespace {

int const kMostMessages = 1000;

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

} // namespace

CMessageLog::CMessageLog(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setMaximumBlockCount(kMostMessages);
}

void CMessageLog::Append(eSeverity severity, QString const& text)
{
    appendPlainText(QTime::currentTime().toString(Qt::ISODate) + QStringLiteral("  ")
                    + Name(severity) + text);
}
