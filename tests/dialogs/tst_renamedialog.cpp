#include "browsertest.h"
#include "dialoguser.h"
#include "renamedialog.h"

using namespace tarno::datamodel;

class TestRenameDialog : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithTheOldName()
    {
        QCOMPARE(m_Dialog->windowTitle(), QString("Rename Blur"));
        QVERIFY(!(m_Dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
        DialogUser user([this](QDialog& dialog) {
            // Five pixels around the label, the field right of it, and the buttons in the corner.
            QLabel const& label = *m_Dialog->findChild<QLabel*>();
            dialog.resize(500, 300);
            QCoreApplication::processEvents();
            QCOMPARE(label.text(), QString("New name:"));
            QVERIFY(label.buddy() == m_Field);
            QVERIFY(label.x() == 5 && label.geometry().right() < m_Field->x());
            QCOMPARE(m_Field->geometry().topRight(), QPoint(500 - 6, 5));
            QCOMPARE(m_OkButton->parentWidget()->geometry().bottomRight(), QPoint(494, 294));

            QCOMPARE(m_Field->selectedText(), QString("Blur"));
            QCOMPARE(GetTabOrder(dialog), QString("QLineEdit OK Cancel"));
            // Names that are set are not checked, and do not become the compound's own.
            for (char const* name : {"a-b", "", "Glow", "Glo"}) {
                m_Dialog->SetOldName(name);
                QCOMPARE(m_Dialog->GetNewName(), QString(name));
                QVERIFY(m_OkButton->isEnabled());
            }
            QCOMPARE(m_Host->TakeCount("IsNameInNodeLibraryHierarchy"), 0);
            Use(dialog, "<End>w");
            CheckShown("Name already used");
            Use(dialog, "<Escape>");
        });
        QCOMPARE(m_Dialog->exec(), int(QDialog::Rejected));
        QVERIFY(user.HasClosed());
    }

    void checksWhatIsTyped()
    {
        QString const isUsed = "Name already used";
        // What is typed, what comes of it, the fault, and the questions about the last letter.
        std::tuple<QString, QString, QString, int> const rows[] = {
            {"Halo", "Halo", "", 1},
            // Its own name in another case.
            {"bLUR", "bLUR", "", 0},
            // An item, an inherited name, a letter of 8 bits, and one that has none.
            {"Glow", "Glow", isUsed, 1},
            {"Shine", "Shine", isUsed, 1},
            {"\u00E9", "\u00E9", isUsed, 1},
            {"\u03A9", "\u03A9", isUsed, 1},
            {" _x", "_x", "", 1},
            {"Glow ", "Glow ", "", 1},
            {"a-b.c", "abc", "", 1},
            {"ab\u20AC", "ab", "", 0},
            // Expressions of the newest generation have other ideas of what a word is.
            {"\u0301a\u0301", "\u0301a\u0301", "", 1},
            {"\u00BD\u00A0\u0663", "\u00BD\u00A0\u0663", "", 1}};
        for (auto const& row : rows) {
            SetUp();
            auto const& [typed, text, reason, questions] = row;
            DialogUser user([&, typed = typed, text = text, reason = reason,
                             questions = questions](QDialog& dialog) {
                Use(dialog, typed.left(typed.size() - 1));
                m_Host->TakeCount("IsNameInNodeLibraryHierarchy");
                Use(dialog, typed.right(1));
                QCOMPARE(m_Dialog->GetNewName(), text);
                QCOMPARE(m_Host->TakeCount("IsNameInNodeLibraryHierarchy"), questions);
                CheckShown(reason);
                Use(dialog, "<Escape>");
            });
            QCOMPARE(m_Dialog->exec(), int(QDialog::Rejected));
            QVERIFY(user.HasClosed());
        }
    }

    void recoversFromABadName()
    {
        DialogUser const user([this](QDialog& dialog) {
            Use(dialog, "<Backspace>");
            CheckShown("Name can't be empty");
            Use(dialog, "<Return>Glow");
            QVERIFY(dialog.isVisible());
            CheckShown("Name already used");
            Use(dialog, "s");
            CheckShown("");
            Use(dialog, "<Return>");
        });
        QCOMPARE(m_Dialog->exec(), int(QDialog::Accepted));
        QCOMPARE(m_Dialog->GetNewName(), QString("Glows"));
    }

protected:
    void SetUp() override
    {
        TestRenameDialog::TearDown();
        BrowserTest::SetUp();
        m_Compound.SetFrom(m_Library->GetAccessor(m_Library->Add(TarnoType::gCompound, "Blur")));
        m_Library->Add(TarnoType::gSolver, "Glow");
        m_Library->m_InheritedNames = {"Shine", "\xE9", "?"};
        m_Dialog.reset(new CRenameCompoundDialog(m_Library->GetAccessor(), m_Compound));
        m_Dialog->SetOldName("Blur");
        m_Field = m_Dialog->findChild<QLineEdit*>();
        m_OkButton = m_Dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    }

    void TearDown() override
    {
        m_Dialog.reset();
        m_Compound = CompoundAccessor();
        BrowserTest::TearDown();
    }

    /// Good when the reason is empty.
    void CheckShown(QString const& reason) const
    {
        bool const isBad = !reason.isEmpty();
        QPalette::ColorRole const role = m_Field->backgroundRole();
        QCOMPARE(m_Field->palette().color(role),
                 isBad ? QColor(255, 90, 90) : QApplication::palette(m_Field).color(role));
        QCOMPARE(m_Field->toolTip(), reason);
        QCOMPARE(m_OkButton->isEnabled(), !isBad);
        if (isBad)
            QCOMPARE(QToolTip::text(), reason);
        QTRY_COMPARE(QToolTip::isVisible(), isBad);
    }

    CompoundAccessor m_Compound;
    std::unique_ptr<CRenameCompoundDialog> m_Dialog;
    QLineEdit* m_Field;
    QPushButton* m_OkButton;
};

NODEBROWSER_TEST(TestRenameDialog)

#include "tst_renamedialog.moc"
