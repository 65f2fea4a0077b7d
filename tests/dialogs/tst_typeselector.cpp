#include "browsertest.h"
#include "dialoguser.h"
#include "typeselector.h"

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
            QVERIFY(dialog.findChild<CNodeBrowser*>()->height() > 300);
            QCOMPARE(GetTabOrder(dialog), QString("QLineEdit  Cancel"));
            // Nothing but a left press on a row ends the dialog: not the panel's own button either.
            ClickRow(dialog, 0, Qt::RightButton);
            ClickRow(dialog, 3);
            Use(dialog, "vec");
            dialog.grab();
            ClickRow(dialog, 1);
            Use(dialog, "<Tab><Return>");
            QCOMPARE(dialog.findChild<QLineEdit*>()->text(), QString());
            QVERIFY(dialog.isVisible());
            Use(dialog, "<Escape>");
        });
        QCOMPARE(selector.exec(), int(QDialog::Rejected));
        QVERIFY(user.HasClosed());
    }

    void endsOnce()
    {
        // What is entered, the type that comes of it, and what is odd about the library.
        std::tuple<QString, QString, QString> const rows[] = {{"accept", "-", ""},
                                                              {"interpolate<Return>", "-", ""},
                                                              {"vec<Cancel>", "-", ""},
                                                              {"vec<close>", "-", ""},
                                                              {"click", "int", ""},
                                                              {"<Enter>", "float", ""},
                                                              {"vec<Return>", "vector", ""},
                                                              {"click<Return>", "-", "no service"},
                                                              {"click<Return>", "-", "none open"},
                                                              {"click", "-", "closed"}};
        for (auto const& [entered, chosen, library] : rows) {
            SetUp();
            if (library == "no service")
                m_Host->SetService("QormDBProxy", nullptr);
            if (library == "none open")
                m_Host->m_Proxy.m_ItemLibrary = ItemLibraryAccessor();
            CTypeSelector selector(nullptr);
            QSignalSpy finished(&selector, SIGNAL(finished(int)));
            DialogUser user([&, keys = entered, isClosed = library == "closed"](QDialog& dialog) {
                if (isClosed)
                    m_Library.reset();
                if (keys == "accept")
                    return dialog.accept();
                if (keys.startsWith("click"))
                    ClickRow(dialog, 1);
                Use(dialog, QString(keys).remove("click"));
            });
            QCOMPARE(selector.exec(), int(chosen != "-"));
            QVERIFY(user.HasClosed());
            // Whatever the keys still set going.
            QCoreApplication::processEvents();
            QCOMPARE(finished.size(), 1);
            ItemID const type = selector.GetSelectedType();
            QCOMPARE(entered + TextOf(m_Library ? m_Library->Find(type) : nullptr),
                     entered + chosen);
            // What was chosen stays until something else is.
            DialogUser again("<Escape>");
            QCOMPARE(selector.exec(), int(QDialog::Rejected));
            QVERIFY(selector.GetSelectedType() == type);
        }
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
