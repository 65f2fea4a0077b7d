#include "windowtest.h"

#include <nodebrowser.h>

#include <QApplication>
#include <QLabel>
#include <QTest>

namespace {

QString const kCompound = QStringLiteral("Rolling Hills");

/// The tool tip on the screen; empty when there is none.
QString GetToolTip()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->inherits("QTipLabel"))
            return static_cast<QLabel*>(widget)->text();
    }
    return QString();
}

/// Mean difference of the channels of two pictures of one size, 0 to 255.
double Difference(QImage const& left, QImage const& right)
{
    double sum = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            QRgb const a = left.pixel(x, y);
            QRgb const b = right.pixel(x, y);
            sum +=
                qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) + qAbs(qBlue(a) - qBlue(b));
        }
    }
    return sum / (3.0 * left.width() * left.height());
}

} // namespace

/// The panel under a real mouse and keyboard.
class TestPanelWindow : public WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatIsTyped();
    void givesRowsToTheCanvas();
    void showsMenusAndToolTips();
    void scrollsWithTheWheel();
};

void TestPanelWindow::findsWhatIsTyped()
{
    QImage screen;
    QString const fault = m_User.Play([&] {
        Search(QStringLiteral("add"));
        WaitForFirstRow(QStringLiteral("Add"));
        screen = m_User.TakePicture(QStringLiteral("search"));
    });
    QVERIFY2(fault.isEmpty(), qPrintable(fault));

    CNodeBrowser& panel = m_Editor->GetPanel();
    QRect const rows = m_Editor->GetRowArea();
    QImage const anew = panel.grab(rows).toImage();
    QRect const onScreen(OnScreenPoint(panel, rows.topLeft()), rows.size());
    QVERIFY(Difference(screen.copy(onScreen), anew) < 3.0);
}

void TestPanelWindow::givesRowsToTheCanvas()
{
    QString const fault = m_User.Play([&] {
        ShowCompound(kCompound);
        std::size_t const before =
            RealUser::OnScreen([&] { return m_Editor->GetBody().nodes.size(); });
        Search(QStringLiteral("add"));
        WaitForFirstRow(QStringLiteral("Add"));
        m_User.Drag(RealUser::OnScreen([&] { return m_Editor->GetRowPoint(0); }),
                    RealUser::OnScreen([&] { return m_Editor->GetFreeCanvasPoint(0.5, 0.9); }));
        RealUser::WaitUntil(QStringLiteral("a node where the row was dropped"),
                            [&] { return m_Editor->GetBody().nodes.size() == before + 1; });
        m_User.TakePicture(QStringLiteral("dropped"));
    });
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

void TestPanelWindow::showsMenusAndToolTips()
{
    QString const fault = m_User.Play([&] {
        Search(kCompound);
        WaitForFirstRow(kCompound);
        m_User.MoveTo(RealUser::OnScreen([&] { return m_Editor->GetRowPoint(0); }));
        RealUser::WaitUntil(QStringLiteral("the tool tip of the row"),
                            [] { return GetToolTip().contains(kCompound); });
        m_User.TakePicture(QStringLiteral("tooltip"));

        OpenRowMenu(0);
        m_User.PointAtEntry(QStringLiteral("Compound source"));
        m_User.PointAtEntry(QStringLiteral("Shared"));
        RealUser::WaitUntil(QStringLiteral("the tool tip of the data source"), [] {
            return GetToolTip().startsWith(QLatin1String("Move compound to this data source"));
        });
        m_User.TakePicture(QStringLiteral("menu"));
        m_User.Press(QStringLiteral("Escape"));
        m_User.Press(QStringLiteral("Escape"));
        RealUser::WaitForNoDialog();
    });
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

void TestPanelWindow::scrollsWithTheWheel()
{
    QString const fault = m_User.Play([&] {
        QPoint const row = RealUser::OnScreen([&] { return m_Editor->GetRowPoint(3); });
        m_User.Click(row, 5);
        m_User.Click(row, 5);
        m_User.Click(row, 4);
        RealUser::WaitUntil(QStringLiteral("three rows further down"),
                            [&] { return m_Editor->GetScrollOffset() == 72; });
    });
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

NODEBROWSER_TEST_MAIN(TestPanelWindow)

#include "tst_panelwindow.moc"
