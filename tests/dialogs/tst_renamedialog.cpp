#include "dialoguser.h"
#include "paneltest.h"
#include "renamedialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <QValidator>

using namespace tarno::datamodel;

class TestRenameDialog : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithTheOldName();
    void checksWhatIsTyped_data();
    void checksWhatIsTyped();
    void recoversFromABadName();
    void letsTheSameCharactersInWithEveryToolkit();
    void closes_data();
    void closes();
    void passesErrorsOfTheHost();

protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Library.reset(new TestLibrary);
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
        m_Library.reset();
        PanelTest::TearDown();
    }

    /// Good when the reason is empty.
    void CheckShown(QString const& reason) const;

    std::unique_ptr<TestLibrary> m_Library;
    CompoundAccessor m_Compound;
    std::unique_ptr<CRenameCompoundDialog> m_Dialog;
    QLineEdit* m_Field;
    QPushButton* m_OkButton;
};

void TestRenameDialog::CheckShown(QString const& reason) const
{
    bool const isBad = !reason.isEmpty();
    QPalette const plain = QApplication::palette(m_Field);
    QPalette::ColorRole const role = m_Field->backgroundRole();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(m_Field->palette().color(group, role),
                 isBad ? QColor(255, 90, 90, 255) : plain.color(group, role));
    QCOMPARE(m_Field->toolTip(), reason);
    QCOMPARE(m_OkButton->isEnabled(), !isBad);
    if (isBad)
        QCOMPARE(QToolTip::text(), reason);
    QTRY_COMPARE(QToolTip::isVisible(), isBad);
}

void TestRenameDialog::startsWithTheOldName()
{
    QCOMPARE(m_Dialog->windowTitle(), QString("Rename Blur"));
    QVERIFY(!(m_Dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
    QVERIFY(!m_Dialog->parent());
    QCOMPARE(m_Dialog->findChild<QLabel*>()->text(), QString("New name:"));
    QCOMPARE(m_Field->minimumWidth(), 120);
    QCOMPARE(m_Dialog->layout()->contentsMargins(), QMargins(5, 5, 5, 5));
    m_Host->TakeCount("IsNameInNodeLibraryHierarchy");

    DialogUser user([this](QDialog& dialog) {
        QVERIFY(m_Field->hasFocus());
        QCOMPARE(m_Field->selectedText(), QString("Blur"));
        QCOMPARE(GetTabOrder(dialog).mid(1).join(' ').remove('&'), QString("OK Cancel"));
        // Names that are set are not checked, whatever they are.
        for (char const* name : {"Glow", "a-b", ""}) {
            m_Dialog->SetOldName(name);
            QCOMPARE(m_Dialog->GetNewName(), QString(name));
            QVERIFY(m_OkButton->isEnabled());
        }
        QCOMPARE(m_Host->TakeCount("IsNameInNodeLibraryHierarchy"), 0);
        // They do not become the name that is the compound's own, either.
        m_Dialog->SetOldName("Glo");
        PressKey(dialog, Qt::Key_End);
        TypeText(dialog, "w");
        QVERIFY(!m_OkButton->isEnabled());
        PressKey(dialog, Qt::Key_Escape);
    });
    m_Dialog->exec();
    QVERIFY(user.HasClosed());
}

void TestRenameDialog::checksWhatIsTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("questions");

    QString const used = "Name already used";
    QTest::newRow("free name") << "Halo"
                               << "Halo"
                               << "" << 1;
    QTest::newRow("own name in another case") << "bLUR"
                                              << "bLUR"
                                              << "" << 0;
    QTest::newRow("name of another item") << "Glow"
                                          << "Glow" << used << 1;
    QTest::newRow("name of a library below") << "Shine"
                                             << "Shine" << used << 1;
    QTest::newRow("8-bit letter") << QString(QChar(0xE9)) << QString(QChar(0xE9)) << used << 1;
    QTest::newRow("other letter") << QString(QChar(0x3A9)) << QString(QChar(0x3A9)) << used << 1;
    // A digit is a word character.
    QTest::newRow("leading digit") << "2nd"
                                   << "2nd"
                                   << "" << 1;
    QTest::newRow("leading underscore") << "_x"
                                        << "_x"
                                        << "" << 1;
    QTest::newRow("leading blank") << " x"
                                   << "x"
                                   << "" << 1;
    QTest::newRow("inner blank and digit") << "Halo 2"
                                           << "Halo 2"
                                           << "" << 1;
    QTest::newRow("trailing blank") << "Glow "
                                    << "Glow "
                                    << "" << 1;
    QTest::newRow("punctuation") << "a-b.c"
                                 << "abc"
                                 << "" << 1;
}

void TestRenameDialog::checksWhatIsTyped()
{
    QFETCH(QString, typed);
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, typed.left(typed.size() - 1));
        m_Host->TakeCount("IsNameInNodeLibraryHierarchy");
        TypeText(dialog, typed.right(1));
        QTEST(m_Dialog->GetNewName(), "text");
        QTEST(m_Host->TakeCount("IsNameInNodeLibraryHierarchy"), "questions");
        QFETCH(QString, reason);
        CheckShown(reason);
        PressKey(dialog, Qt::Key_Escape);
    });
    QCOMPARE(m_Dialog->exec(), int(QDialog::Rejected));
    QVERIFY(user.HasClosed());
}

void TestRenameDialog::recoversFromABadName()
{
    DialogUser user([this](QDialog& dialog) {
        PressKey(dialog, Qt::Key_Backspace);
        CheckShown("Name can't be empty");
        PressKey(dialog, Qt::Key_Return);
        QVERIFY(dialog.isVisible());
        TypeText(dialog, "Glow");
        CheckShown("Name already used");
        TypeText(dialog, "s");
        CheckShown("");
        PressKey(dialog, Qt::Key_Return);
    });
    QCOMPARE(m_Dialog->exec(), int(QDialog::Accepted));
    QVERIFY(user.HasClosed());
    QCOMPARE(m_Dialog->GetNewName(), QString("Glows"));
    // It asks; the command renames.
    QVERIFY(m_Host->TakeCalls().isEmpty());
}

/// Expressions of the newest generation have other ideas of what a word is.
void TestRenameDialog::letsTheSameCharactersInWithEveryToolkit()
{
    auto const accepts = [this](QString text) {
        int position = 0;
        return m_Field->validator()->validate(text, position) == QValidator::Acceptable;
    };
    for (int code = 0; code < 0x10000; ++code) {
        QChar const character(static_cast<ushort>(code));
        bool const isWord = character.isLetterOrNumber() || character.isMark() || character == '_';
        QString const name = QString::number(code, 16);
        QVERIFY2(accepts(QString(character)) == isWord, qPrintable("first " + name));
        QVERIFY2(accepts(QString("a") + character) == (isWord || character.isSpace()),
                 qPrintable("second " + name));
    }
    QVERIFY(!accepts(QString()));
}

void TestRenameDialog::closes_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("result");

    QTest::newRow("Enter") << "" << int(Qt::Key_Enter) << 1;
    QTest::newRow("Escape") << "" << int(Qt::Key_Escape) << 0;
    QTest::newRow("OK") << "OK" << 0 << 1;
    QTest::newRow("Cancel") << "Cancel" << 0 << 0;
}

void TestRenameDialog::closes()
{
    QFETCH(QString, button);
    QFETCH(int, key);
    DialogUser user([&](QDialog& dialog) {
        if (button.isEmpty())
            PressKey(dialog, Qt::Key(key));
        else
            ClickButton(dialog, qPrintable(button));
    });
    QTEST(m_Dialog->exec(), "result");
    QVERIFY(user.HasClosed());
}

void TestRenameDialog::passesErrorsOfTheHost()
{
    m_Host->ThrowAt("GetItemName", 1);
    QVERIFY_EXCEPTION_THROWN(CRenameCompoundDialog(m_Library->GetAccessor(), m_Compound),
                             HostError);
    m_Host->ThrowAt("IsNameInNodeLibraryHierarchy", 1);
    QVERIFY_EXCEPTION_THROWN(
        QMetaObject::invokeMethod(m_Dialog.get(), "OnNameChanged", Q_ARG(QString, "Halo")),
        HostError);
}

NODEBROWSER_TEST_MAIN(TestRenameDialog)

#include "tst_renamedialog.moc"
