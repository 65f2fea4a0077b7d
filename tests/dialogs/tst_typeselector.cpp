#include "browsertest.h"
#include "dialoguser.h"
#include "testtable.h"
#include "typeselector.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>

using namespace tarno::datamodel;

namespace {

void ClickRow(QDialog& dialog, int row, Qt::MouseButton button = Qt::LeftButton)
{
    CNodeBrowser* const browser = dialog.findChild<CNodeBrowser*>();
    QTest::mouseClick(browser, button, Qt::NoModifier, QPoint(50, 23 + row * 24 + 12));
}

} // namespace

class TestTypeSelector : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void offersTheTypes()
    {
        QWidget parent;
        CTypeSelector selector(&parent);
        QCOMPARE(selector.parentWidget(), &parent);
        QCOMPARE(selector.windowTitle(), QString("Choose Type"));
        QCOMPARE(selector.sizeHint(), QSize(275, 500));
        QCOMPARE(selector.windowFlags(),
                 Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
        DialogUser user([&](QDialog& dialog) {
            // The panel above the button, both as wide as the dialog allows.
            QRect const panel = dialog.findChild<CNodeBrowser*>()->geometry();
            QRect const button = dialog.findChildren<QPushButton*>().last()->geometry();
            QVERIFY(panel.height() > 300 && panel.bottom() < button.y());
            QVERIFY(panel.x() == button.x() && panel.width() == button.width());
            QCOMPARE(GetTabOrder(dialog), QString("QLineEdit  Cancel"));
            // Nothing but a left press on a row ends the dialog: not the panel's own button either.
            ClickRow(dialog, 0, Qt::RightButton);
            ClickRow(dialog, 3);
            Use(dialog, "vec");
            dialog.grab();
            ClickRow(dialog, 1);
            Use(dialog, "<Tab><Return>");
            QCOMPARE(dialog.findChild<QLineEdit*>()->text(), QString());
            QVERIFY(selector.isModal() && dialog.isVisible());
            Use(dialog, "<Escape>");
        });
        QCOMPARE(selector.exec(), int(QDialog::Rejected));
        QVERIFY(user.HasClosed());
    }

    void endsOnce_data()
    {
        AddColumns<QString, QString, QString>("entered", "chosen", "library");
        for (char const* entered : {"accept", "interpolate<Return>", "vec<Escape>", "vec<Cancel>",
                                    "<Tab><Tab><Return>", "vec<close>"})
            AddRow(entered, entered, "", "");
        AddRow("click", "click", "int", "");
        AddRow("Return", "<Return>", "float", "");
        AddRow("Enter", "<Enter>", "float", "");
        AddRow("search and Return", "vec<Return>", "vector", "");
        for (char const* library : {"no service", "other service", "none open"})
            AddRow(library, "click<Return>", "", library);
        AddRow("closed", "click", "", "closed");
    }

    void endsOnce()
    {
        QFETCH(QString, entered);
        QFETCH(QString, chosen);
        QFETCH(QString, library);
        if (library == "no service" || library == "other service")
            m_Host->SetService("QormDBProxy",
                               library == "no service" ? nullptr : &m_Host->m_RevisionControl);
        if (library == "none open")
            m_Host->m_Proxy.m_ItemLibrary = ItemLibraryAccessor();
        CTypeSelector selector(nullptr);
        QSignalSpy finished(&selector, SIGNAL(finished(int)));
        DialogUser user([&](QDialog& dialog) {
            if (library == "closed")
                m_Library.reset();
            if (entered == "accept")
                return dialog.accept();
            if (entered.startsWith("click"))
                ClickRow(dialog, 1);
            Use(dialog, QString(entered).remove("click"));
        });
        QCOMPARE(selector.exec(), int(!chosen.isEmpty()));
        QVERIFY(user.HasClosed());
        // Whatever the keys still set going.
        QCoreApplication::processEvents();
        QCOMPARE(finished.size(), 1);
        ItemID const type = selector.GetSelectedType();
        QCOMPARE(TextOf(m_Library ? m_Library->Find(type) : nullptr),
                 chosen.isEmpty() ? "-" : chosen);
        // What was chosen stays until something else is.
        DialogUser again("<Escape>");
        QCOMPARE(selector.exec(), int(QDialog::Rejected));
        QVERIFY(selector.GetSelectedType() == type);
    }

    void passesErrorsOfTheHost()
    {
        m_Host->ThrowAt("GetItemName", 1);
        QVERIFY_EXCEPTION_THROWN(CTypeSelector(nullptr), HostError);
        QCOMPARE(m_Host->TakeCalls().filter("RemoveNotification A").size(), 2);
    }

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        for (char const* name : {"vector", "float", "int"})
            m_Library->Add(LibType::gType, name);
        m_Library->Add(TarnoType::gSolver, "interpolate");
        m_Host->m_Proxy.m_ItemLibrary = m_Library->GetAccessor();
        m_Host->SetService("QormDBProxy", &m_Host->m_Proxy);
    }
};

NODEBROWSER_TEST(TestTypeSelector)

#include "tst_typeselector.moc"
