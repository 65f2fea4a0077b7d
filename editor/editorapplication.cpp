#include "editorapplication.h"

#include <embeddedhost/framework/messagechannel.h>

#include <QLoggingCategory>
#include <QMetaEnum>

#include <cstdio>
#include <exception>

namespace {

Q_LOGGING_CATEGORY(lcEditor, "nodeeditor")

QString DescribeFailure(QEvent::Type type, char const* receiver, char const* reason)
{
    char const* const event = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
    return QStringLiteral("A %1 event of %2 failed: %3")
        .arg(QLatin1String(event ? event : "user"), QLatin1String(receiver),
             QString::fromLocal8Bit(reason));
}

/// Called in a handler of an exception, so it must not throw.
void Report(CEditorApplication* application, QEvent::Type type, char const* receiver,
            char const* reason) noexcept
{
    try {
        QString const message = DescribeFailure(type, receiver, reason);
        qCCritical(lcEditor).noquote() << message;
        // Widgets must not be touched now: this may be the middle of a paint event.
        QMetaObject::invokeMethod(
            application, [application, message] { Q_EMIT application->ExceptionCaught(message); },
            Qt::QueuedConnection);
    } catch (...) {
        std::fputs("nodeeditor: a failure could not be reported\n", stderr);
    }
}

} // namespace

CEditorApplication::CEditorApplication(int& argc, char** argv)
    : QApplication(argc, argv)
{}

void CEditorApplication::ReportTo(embeddedhost::CMessageChannel& messages)
{
    auto const post = [&messages](QString const& text) {
        try {
            messages.Post(embeddedhost::eSeverity::kError, text);
        } catch (...) {
            // Posted as well, this would fail again, and so on for ever.
            qCCritical(lcEditor, "A listener to the messages failed.");
        }
    };
    connect(this, &CEditorApplication::ExceptionCaught, &messages, post);
}

bool CEditorApplication::notify(QObject* receiver, QEvent* event)
{
    // Asked for beforehand: the receiver may be gone when its handler fails.
    QEvent::Type const type = event->type();
    char const* const receiverClass = receiver->metaObject()->className();
    try {
        return QApplication::notify(receiver, event);
    } catch (std::exception const& exception) {
        Report(this, type, receiverClass, exception.what());
    } catch (...) {
        Report(this, type, receiverClass, "unknown reason");
    }
    // Otherwise a window would close although saving failed, for example.
    event->ignore();
    return false;
}

#include "moc_editorapplication.cpp"
