#include "dialoguser.h"
#include "nodebrowser.h"
#include "paneltest.h"
#include "typeselector.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>

using namespace tarno::datamodel;

Q_DECLARE_METATYPE(DialogUser::Action)

class TestTypeSelector : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void offersTheTypes();
    void endsOnce_data();
    void endsOnce();
    void staysOpenBesideTheRows();
    void canBeUsedAgain();
    void opensEmptyWithoutLibrary_data();
    void opensEmptyWithoutLibrary();
    void survivesTheEndOfItsLibrary();
    void passesErrorsOfTheHost();

protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Library.reset(new TestLibrary);
        for (char const* name : {"vector", "float", "int"})
            m_Library->Add(LibType::gType, name);
        m_Library->Add(TarnoType::gSolver, "interpolate");
        m_Host->m_Proxy.m_ItemLibrary = m_Library->GetAccessor();
        m_Host->SetService("QormDBProxy", &m_Host->m_Proxy);
    }

    void TearDown() override
    {
        m_Library.reset();
        PanelTest::TearDown();
    }

    std::unique_ptr<TestLibrary> m_Library;
};

namespace {

void ClickRow(QDialog& dialog, int row, Qt::MouseButton button = Qt::LeftButton)
{
    CNodeBrowser* const browser = dialog.findChild<CNodeBrowser*>();
    QTest::mouseClick(browser, button, Qt::NoModifier, QPoint(50, 23 + row * 24 + 12));
}

} // namespace

void TestTypeSelector::offersTheTypes()
{
    QWidget parent;
    CTypeSelector selector(&parent);
    QCOMPARE(selector.parentWidget(), &parent);
    QCOMPARE(selector.windowTitle(), QString("Choose Type"));
    QCOMPARE(selector.sizeHint(), QSize(275, 500));
    QVERIFY(selector.isModal());
    QCOMPARE(selector.windowFlags(), Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
    CNodeBrowser* const browser = selector.findChild<CNodeBrowser*>();
    QVERIFY(!browser->findChild<QTabBar*>());
    QCOMPARE(m_Library->m_LibraryListeners.size(), std::size_t(1));

    DialogUser user([&](QDialog& dialog) {
        QCOMPARE(GetTabOrder(dialog).join(' '), QString("QLineEdit  Cancel"));
        // A context menu would stop the test here.
        ClickRow(dialog, 0, Qt::RightButton);
        QVERIFY(dialog.isVisible());
        PressKey(dialog, Qt::Key_Escape);
    });
    selector.exec();
    QVERIFY(user.HasClosed());
}

void TestTypeSelector::endsOnce_data()
{
    QTest::addColumn<DialogUser::Action>("action");
    QTest::addColumn<QString>("chosen");

    typedef DialogUser::Action Action;
    QTest::newRow("click") << Action([](QDialog& dialog) { ClickRow(dialog, 1); }) << "int";
    QTest::newRow("Enter") << Action([](QDialog& dialog) { PressKey(dialog, Qt::Key_Return); })
                           << "float";
    QTest::newRow("Enter of the number pad")
        << Action([](QDialog& dialog) { PressKey(dialog, Qt::Key_Enter); }) << "float";
    QTest::newRow("search and Enter") << Action([](QDialog& dialog) {
        // Straight to the field, so that no paint comes in between.
        QLineEdit* const field = dialog.findChild<QLineEdit*>();
        QTest::keyClicks(field, "vec");
        QTest::keyClick(field, Qt::Key_Return);
    }) << "vector";
    QTest::newRow("search without match and Enter") << Action([](QDialog& dialog) {
        TypeText(dialog, "interpolate");
        PressKey(dialog, Qt::Key_Return);
    }) << "";
    QTest::newRow("acceptance without selection")
        << Action([](QDialog& dialog) { dialog.accept(); }) << "";
    QTest::newRow("Escape") << Action([](QDialog& dialog) {
        TypeText(dialog, "vec");
        PressKey(dialog, Qt::Key_Escape);
    }) << "";
    QTest::newRow("Cancel") << Action([](QDialog& dialog) {
        TypeText(dialog, "vec");
        ClickButton(dialog, "Cancel");
    }) << "";
    QTest::newRow("Cancel by keyboard") << Action([](QDialog& dialog) {
        PressKey(dialog, Qt::Key_Tab);
        PressKey(dialog, Qt::Key_Tab);
        PressKey(dialog, Qt::Key_Return);
    }) << "";
    QTest::newRow("close") << Action([](QDialog& dialog) { dialog.close(); }) << "";
}

void TestTypeSelector::endsOnce()
{
    QFETCH(DialogUser::Action, action);
    QFETCH(QString, chosen);
    CTypeSelector selector(nullptr);
    QVERIFY(selector.GetSelectedType().IsNull());
    QSignalSpy finished(&selector, SIGNAL(finished(int)));
    DialogUser user(action);
    bool const isChosen = !chosen.isEmpty();
    QCOMPARE(selector.exec(), int(isChosen));
    QVERIFY(user.HasClosed());
    // Whatever the keys still set going.
    QCoreApplication::processEvents();
    QCOMPARE(finished.size(), 1);
    QCOMPARE(selector.GetSelectedType().IsNull(), !isChosen);
    if (isChosen)
        QVERIFY(selector.GetSelectedType() == (*m_Library)[chosen.toStdString()].id);
}

void TestTypeSelector::staysOpenBesideTheRows()
{
    CTypeSelector selector(nullptr);
    DialogUser user([](QDialog& dialog) {
        ClickRow(dialog, 3);
        TypeText(dialog, "vec");
        QCoreApplication::processEvents();
        ClickRow(dialog, 1);
        // The clear button is a button of the panel: it ends nothing.
        PressKey(dialog, Qt::Key_Tab);
        PressKey(dialog, Qt::Key_Return);
        QCOMPARE(dialog.findChild<QLineEdit*>()->text(), QString());
        QVERIFY(dialog.isVisible());
        PressKey(dialog, Qt::Key_Escape);
    });
    QCOMPARE(selector.exec(), int(QDialog::Rejected));
    QVERIFY(user.HasClosed());
}

/// What was chosen stays until something else is.
void TestTypeSelector::canBeUsedAgain()
{
    CTypeSelector selector(nullptr);
    DialogUser first([](QDialog& dialog) { ClickRow(dialog, 2); });
    QCOMPARE(selector.exec(), int(QDialog::Accepted));
    DialogUser second([](QDialog& dialog) { PressKey(dialog, Qt::Key_Escape); });
    QCOMPARE(selector.exec(), int(QDialog::Rejected));
    QVERIFY(selector.GetSelectedType() == (*m_Library)["vector"].id);
}

void TestTypeSelector::opensEmptyWithoutLibrary_data()
{
    QTest::addColumn<QString>("what");

    for (char const* what : {"no service", "service of another type", "no library open"})
        QTest::newRow(what) << what;
}

void TestTypeSelector::opensEmptyWithoutLibrary()
{
    QFETCH(QString, what);
    if (what == "no service")
        m_Host->SetService("QormDBProxy", nullptr);
    else if (what == "service of another type")
        m_Host->SetService("QormDBProxy", &m_Host->m_RevisionControl);
    else
        m_Host->m_Proxy.m_ItemLibrary = ItemLibraryAccessor();
    CTypeSelector selector(nullptr);
    DialogUser user([](QDialog& dialog) {
        ClickRow(dialog, 0);
        QVERIFY(dialog.isVisible());
        PressKey(dialog, Qt::Key_Return);
    });
    QCOMPARE(selector.exec(), int(QDialog::Rejected));
    QVERIFY(user.HasClosed());
    QVERIFY(selector.GetSelectedType().IsNull());
}

void TestTypeSelector::survivesTheEndOfItsLibrary()
{
    CTypeSelector selector(nullptr);
    DialogUser user([this](QDialog& dialog) {
        QCoreApplication::processEvents();
        m_Library.reset();
        ClickRow(dialog, 0);
    });
    QCOMPARE(selector.exec(), int(QDialog::Rejected));
    QVERIFY(user.HasClosed());
    QVERIFY(selector.GetSelectedType().IsNull());
}

void TestTypeSelector::passesErrorsOfTheHost()
{
    m_Host->ThrowAt("GetItemName", 1);
    QVERIFY_EXCEPTION_THROWN(CTypeSelector(nullptr), HostError);
    QVERIFY(m_Library->m_LibraryListeners.empty());
}

NODEBROWSER_TEST_MAIN(TestTypeSelector)

#include "tst_typeselector.moc"
