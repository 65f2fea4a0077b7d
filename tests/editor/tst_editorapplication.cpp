#include "testprogram.h"

#include <editorapplication.h>
#include <embeddedhost.h>
#include <mainwindow.h>
#include <messagelog.h>

#include <QMenu>
#include <QPainter>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTextBlock>
#include <QTimer>

#include <stdexcept>

namespace {

/// Throws in the middle of painting, and when it is closed, as long as it is told to.
class FailingPainter : public QWidget
{
public:
    bool isFailing = true;
    int paintCount = 0;

protected:
    void paintEvent(QPaintEvent*) override
    {
        ++paintCount;
        QPainter painter(this);
        painter.fillRect(rect(), Qt::red);
        if (isFailing)
            throw std::runtime_error("the brush broke");
        painter.fillRect(rect(), Qt::green);
    }

    void closeEvent(QCloseEvent*) override
    {
        if (isFailing)
            throw std::runtime_error("the brush broke");
    }
};

/// Throws something that is no exception class, once it is gone itself.
class VanishingButton : public QWidget
{
protected:
    void mousePressEvent(QMouseEvent*) override
    {
        delete this;
        throw 42;
    }
};

} // namespace

class TestEditorApplication : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void survivesFailingPaint()
    {
        Expect(QStringLiteral("the brush broke"));
        QSignalSpy failures(qApp, SIGNAL(ExceptionCaught(QString)));
        FailingPainter widget;
        widget.resize(50, 50);
        widget.show();
        QTRY_VERIFY(widget.paintCount > 0);
        QTRY_COMPARE(failures.count(), widget.paintCount);
        // It may have something that is not saved.
        QVERIFY(!widget.close() && widget.isVisible());
        QTRY_COMPARE(failures.count(), widget.paintCount + 1);

        widget.isFailing = false;
        QCOMPARE(widget.grab().toImage().pixelColor(20, 20), QColor(Qt::green));
    }

    void survivesReceiverThatIsGone()
    {
        Expect(QStringLiteral("unknown reason"));
        QSignalSpy failures(qApp, SIGNAL(ExceptionCaught(QString)));
        QPointer<QWidget> const button = new VanishingButton;
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QVERIFY(!QCoreApplication::sendEvent(button, &press));
        QVERIFY(!button);
        // Told later, when widgets can be touched.
        QCOMPARE(failures.count(), 0);
        QTRY_COMPARE(failures.count(), 1);
    }

    void survivesInNestedLoops()
    {
        Expect(QStringLiteral("no such thing"));
        QMenu menu;
        bool isInnerLoopAlive = false;
        QTimer::singleShot(0, &menu, [] { throw std::out_of_range("no such thing"); });
        QTimer::singleShot(1, &menu, [&] {
            isInnerLoopAlive = true;
            menu.close();
        });
        QVERIFY(!menu.exec());
        QVERIFY(isInnerLoopAlive);
    }

    void tellsTheUser()
    {
        Expect(QStringLiteral("out of paper"));
        Expect(QStringLiteral("A listener to the messages failed."));
        CEmbeddedHost host;
        static_cast<CEditorApplication*>(qApp)->ReportTo(host.GetMessages());
        CMainWindow window(host);
        connect(&host.GetMessages(), &CMessageChannel::MessagePosted, &window, [] { throw 42; });
        QSignalSpy failures(qApp, SIGNAL(ExceptionCaught(QString)));
        QObject failing;
        QTimer::singleShot(0, &failing, [] { throw std::runtime_error("out of paper"); });

        QTRY_VERIFY(window.statusBar()->currentMessage().contains(QStringLiteral("out of paper")));
        CMessageLog const* const log = window.findChild<CMessageLog*>();
        QVERIFY(log && log->toPlainText().contains(QStringLiteral("out of paper")));
        // What the listener threw was not posted to it in its turn.
        QCoreApplication::processEvents();
        QCOMPARE(failures.count(), 1);
    }

    void survivesManyMessages()
    {
        CEmbeddedHost host;
        CMainWindow window(host);
        CMessageLog const* const log = window.findChild<CMessageLog*>();
        QSignalSpy shown(log, &CMessageLog::Shown);
        auto const post = [&](int count) {
            for (int number = 1; number <= count; ++number)
                host.GetMessages().Post(eSeverity::kWarning, QString::number(number));
            host.GetMessages().Post(eSeverity::kError, QString(1000000, QLatin1Char('\n')));
        };
        int dropped = 0;
        for (int const count : {5000, 10}) {
            post(count);
            int const shownCount = shown.count();
            QTRY_COMPARE(shown.count(), shownCount + 1);
            dropped += shownCount == 0 ? count + 1 - CMessageLog::kMostMessages : count + 1;
            QCOMPARE(log->blockCount(), CMessageLog::kMostMessages + 1);
            QCOMPARE(log->document()->firstBlock().text(),
                     QStringLiteral("%L1 earlier messages are not shown any more.").arg(dropped));
        }
        QVERIFY(log->toPlainText().endsWith(QStringLiteral("(%L1 more letters)").arg(998000)));
        QVERIFY(window.statusBar()->currentMessage().size() < 3000);
    }
};

static TestProgram::Entry<TestEditorApplication> const kEntry;

#include "tst_editorapplication.moc"
