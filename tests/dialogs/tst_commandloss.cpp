#include "dialoguser.h"
#include "paneltest.h"
#include "testbrowser.h"

#include <QApplication>
#include <QMenu>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using namespace tarno::datamodel;

/// What a command was opened for may be gone when its dialog is confirmed.
class TestCommandLoss : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void endsWithoutEffect_data();
    void endsWithoutEffect();
    void survivesTheEndOfThePanelBelowItsMenu();

protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Library.reset(new TestLibrary("A"));
        m_Other.reset(new TestLibrary("B"));
        m_Library->Add(TarnoType::gCompound, "Blur", "b");
        m_Library->Add(TarnoType::gSolver, "Glow");
        m_Browser.reset(new TestBrowser);
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->Paint();
        m_Browser->m_SelectedIndex = 0;
    }

    void TearDown() override
    {
        m_Browser.reset();
        m_Library.reset();
        m_Other.reset();
        PanelTest::TearDown();
    }

    void Lose(QString const& what);

    std::unique_ptr<TestLibrary> m_Library;
    std::unique_ptr<TestLibrary> m_Other;
    std::unique_ptr<TestBrowser> m_Browser;
};

void TestCommandLoss::Lose(QString const& what)
{
    if (what == "panel")
        m_Browser.reset();
    else if (what == "library")
        m_Library.reset();
    else if (what == "panel's library")
        m_Browser->SetItemLibrary(m_Other->GetAccessor());
    else
        m_Library->Remove((*m_Library)["Blur"]);
    if (m_Browser)
        m_Browser->Paint();
}

void TestCommandLoss::endsWithoutEffect_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("loss");

    for (char const* command : {"OnNewSignature", "OnNewCompound", "OnNewLoopCompound",
                                "OnRenameItem", "OnEditItemTags"}) {
        for (char const* loss : {"panel", "library", "panel's library", "item"}) {
            QString const row = QString("%1, no %2").arg(command, loss);
            // Nothing new depends on an item.
            if (!row.contains(QRegularExpression("New.*item")))
                QTest::newRow(qPrintable(row)) << command << loss;
        }
    }
}

void TestCommandLoss::endsWithoutEffect()
{
    QFETCH(QString, command);
    QFETCH(QString, loss);
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, "Hal");
        Lose(loss);
        m_Host->TakeCalls();
        TypeText(dialog, "o");
        PressKey(dialog, Qt::Key_Return);
    });
    QMetaObject::invokeMethod(m_Browser.get(), qPrintable(command));
    QVERIFY(user.HasClosed());
    QCOMPARE(m_Host->TakeCalls(), QStringList());
}

void TestCommandLoss::survivesTheEndOfThePanelBelowItsMenu()
{
    m_Browser->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_Browser.get()));
    DialogUser user([&](QDialog& dialog) {
        m_Browser.reset();
        TypeText(dialog, "Halo");
        PressKey(dialog, Qt::Key_Return);
    });
    QTimer::singleShot(0, [] {
        QMenu& menu = dynamic_cast<QMenu&>(*QApplication::activePopupWidget());
        QCOMPARE(menu.actions().first()->text(), QString("Rename Blur"));
        QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier,
                          menu.actionGeometry(menu.actions().first()).center());
    });
    QTest::mousePress(m_Browser.get(), Qt::RightButton, Qt::NoModifier, m_Browser->GetRowCenter(0));
    QVERIFY(user.HasClosed());
    QVERIFY(!m_Browser);
}

NODEBROWSER_TEST_MAIN(TestCommandLoss)

#include "tst_commandloss.moc"
