#ifndef EDITOR_MESSAGELOG_H
#define EDITOR_MESSAGELOG_H

#include <messagechannel.h>

#include <QPlainTextEdit>

/// Shows what the host had to say, the newest last.
class CMessageLog : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit CMessageLog(QWidget* parent = nullptr);

    void Append(eSeverity severity, QString const& text);
};

#endif
