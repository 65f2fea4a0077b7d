#ifndef EDITOR_EDITORAPPLICATION_H
#define EDITOR_EDITORAPPLICATION_H

#include <QApplication>

namespace embeddedhost {
class CMessageChannel;
}

/// An application that outlives exceptions out of event handlers: each is logged, reported, and
/// counts as an event that was not handled.
class CEditorApplication : public QApplication
{
    Q_OBJECT

public:
    CEditorApplication(int& argc, char** argv);

    /// Failures are posted on the channel too, as long as it lives.
    void ReportTo(embeddedhost::CMessageChannel& messages);

    bool notify(QObject* receiver, QEvent* event) override;

Q_SIGNALS:
    /// Sent from the event loop, never from within the handler that failed.
    void ExceptionCaught(QString const& message);
};

#endif
