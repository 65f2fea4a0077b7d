#include "testprogram.h"

#include <editorapplication.h>
#include <embeddedhost.h>
#include <mainwindow.h>
#include <messagelog.h>

#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTextBlock>
#include <QTimer>

#include <stdexcept>

namespace {

/// Throws in the middle of painting, and when it is closed.
struct SFailingPainter : QWidget
{
    void paintEvent(QPaintEvent*) override
    {
        ++paintCount;
        QPainter painter(this);
        painter.fillRect(rect(), Qt::red);
        throw std::runtime_error("the brush broke");
    }

    void closeEvent(QCloseEvent*) override
    {
        throw std::runtime_error("the brush broke");
    }

    int paintCount = 0;
};

/// Throws something that is no exception class, once it is gone itself.
struct SVanishingButton : QWidget
{
    void mousePressEvent(QMouseEvent*) override
    {
        delete this;
        throw 42;
    }
};

} // namespace

/// Whatever raises an exception, the program goes on and tells about it.
class TestEditorApplication : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void failuresAreSurvived()
    {
        for (char const* const text : {"the brush broke", "unknown reason", "no such thing"})
            Expect(text);
        QSignalSpy failures(qApp, SIGNAL(ExceptionCaught(QString)));
        SFailingPainter painter;
        painter.show();
        QTRY_VERIFY(painter.paintCount > 0);
        QTRY_COMPARE(failures.count(), painter.paintCount);
        // It may have something that is not saved.
        QVERIFY(!painter.close() && painter.isVisible());
        painter.hide();
        QPointer<QWidget> const button = new SVanishingButton;
        failures.clear();
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(button, &press);
        QVERIFY(!button);
        // In the loops of menus and dialogs, too.
        QMenu menu;
        QTimer::singleShot(0, &menu, [] { throw std::out_of_range("no such thing"); });
        QTimer::singleShot(1, &menu, &QMenu::close);
        QVERIFY(!menu.exec());
        QTRY_VERIFY(failures.count() >= 2);
        QVERIFY(failures.last().first().toString().contains("no such thing"));
    }

    void failuresAreTold()
    {
        Expect("out of paper");
        Expect("A listener to the messages failed.");
        CEmbeddedHost host;
        static_cast<CEditorApplication*>(qApp)->ReportTo(host.GetMessages());
        CMainWindow window(host);
        connect(&host.GetMessages(), &CMessageChannel::MessagePosted, &window, [] { throw 42; });
        QSignalSpy failures(qApp, SIGNAL(ExceptionCaught(QString)));
        QTimer::singleShot(0, &window, [] { throw std::runtime_error("out of paper"); });
        QTRY_VERIFY(window.statusBar()->currentMessage().contains("out of paper"));
        // What the listener threw was not posted to it in its turn.
        QCoreApplication::processEvents();
        QCOMPARE(failures.count(), 1);
    }

    void manyMessagesAreSurvived()
    {
        CEmbeddedHost host;
        CMainWindow window(host);
        auto const* const log = window.findChild<CMessageLog*>();
        QSignalSpy shown(log, &CMessageLog::Shown);
        // A first burst is cut before it is shown, a second one counted on.
        int dropped = 1 - CMessageLog::kMostMessages;
        for (int const count : {5000, 10}) {
            for (int number = 1; number <= count; ++number)
                host.GetMessages().Post(eSeverity::kWarning, QString::number(number));
            host.GetMessages().Post(eSeverity::kError, QString(1000000, '\n'));
            shown.clear();
            QTRY_COMPARE(shown.count(), 1);
            dropped += count;
            QCOMPARE(log->blockCount(), CMessageLog::kMostMessages + 1);
            QCOMPARE(log->document()->firstBlock().text(),
                     QStringLiteral("%L1 earlier messages are not shown any more.").arg(dropped++));
        }
        QVERIFY(log->toPlainText().endsWith(QStringLiteral("(%L1 more letters)").arg(998000)));
        QVERIFY(log->toPlainText().contains("  Warning: 10\n"));
        QVERIFY(window.statusBar()->currentMessage().size() < 3000);
    }
};

static TestProgram::Entry<TestEditorApplication> const kTestEditorApplication;

#include "tst_editorapplication.moc"
