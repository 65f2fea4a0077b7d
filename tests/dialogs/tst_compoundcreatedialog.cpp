#include "dialoguser.h"
#include "paneltest.h"
#include "tarnodialog.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using namespace tarno::datamodel;

class TestCompoundCreateDialog : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void collectsSignatures();
    void placesItsRows_data();
    void placesItsRows();
    void narrowsWideLabels();
    void listsSignaturesByName();
    void handsOutWhatWasEntered_data();
    void handsOutWhatWasEntered();
    void refusesAnEmptyName();
    void handsOutNothingOnceCancelled_data();
    void handsOutNothingOnceCancelled();
    void passesErrorsOfTheHost();

protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Library.reset(new TestLibrary);
        AddSignature("alpha", "uid-alpha");
        AddSignature("Zeta", "uid-first-zeta");
        m_Library->Add(TarnoType::gCompound, "no signature");
        AddSignature("Zeta", "uid-zeta");
    }

    void TearDown() override
    {
        m_Library.reset();
        PanelTest::TearDown();
    }

    void AddSignature(char const* name, char const* uid)
    {
        m_Library->Add(TarnoType::gCompound, name, "", uid).isAbstract = true;
    }

    std::unique_ptr<TestLibrary> m_Library;
};

void TestCompoundCreateDialog::collectsSignatures()
{
    std::map<std::string, ItemID> signatures;
    ItemID const kept = m_Library->Add(TarnoType::gSolver, "kept").id;
    signatures["kept"] = kept;
    signatures["alpha"] = kept;
    GetAllSignatures(m_Library->GetAccessor(), signatures);
    QCOMPARE(signatures.size(), std::size_t(3));
    QVERIFY(signatures["kept"] == kept);
    QCOMPARE(ItemIDUnlock::GetItemIDUID(signatures["alpha"]), "uid-alpha");
    QCOMPARE(ItemIDUnlock::GetItemIDUID(signatures["Zeta"]), "uid-zeta");
}

void TestCompoundCreateDialog::placesItsRows_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("showSignature");
    QTest::addColumn<QString>("nameLabel");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("tabOrder");

    QTest::newRow("signature") << "signature" << false << "Signature name: "
                               << "Create signature"
                               << "QLineEdit QLineEdit Ok Cancel";
    QTest::newRow("loop compound") << "loop compound" << true << "Loop compound name: "
                                   << "Create loop compound"
                                   << "QLineEdit QLineEdit QComboBox Ok Cancel";
}

void TestCompoundCreateDialog::placesItsRows()
{
    QFETCH(QString, kind);
    QFETCH(bool, showSignature);
    CTarnoCompoundCreateDialog created(m_Library->GetAccessor(), qPrintable(kind), "default",
                                       showSignature);
    QVERIFY(!created.parent());
    DialogUser user([&](QDialog& dialog) {
        QTEST(dialog.windowTitle(), "title");
        QCOMPARE(dialog.minimumSize(), QSize(370, 130));
        QCOMPARE(dialog.maximumSize(), QSize(370, 130));

        QTEST(FindAt<QLabel>(dialog, 10, 12)->text(), "nameLabel");
        QCOMPARE(FindAt<QLabel>(dialog, 10, 42)->text(), QString("Category: "));
        QCOMPARE(FindAt<QLineEdit>(dialog, 120, 10)->text(), QString("default"));
        QCOMPARE(FindAt<QLineEdit>(dialog, 120, 40)->text(), QString());
        for (QLineEdit* const field : dialog.findChildren<QLineEdit*>())
            QCOMPARE(field->size(), QSize(220, 20));
        QCOMPARE(FindAt<QLabel>(dialog, 10, 72) != nullptr, showSignature);
        QCOMPARE(FindAt<QComboBox>(dialog, 120, 70) != nullptr, showSignature);
        if (showSignature) {
            QCOMPARE(FindAt<QLabel>(dialog, 10, 72)->text(), QString("Signature: "));
            QCOMPARE(FindAt<QComboBox>(dialog, 120, 70)->size(), QSize(220, 20));
        }
        QCOMPARE(FindAt<QPushButton>(dialog, 100, 100)->text(), QString("Ok"));
        QVERIFY(FindAt<QPushButton>(dialog, 100, 100)->isDefault());
        QCOMPARE(FindAt<QPushButton>(dialog, 190, 100)->text(), QString("Cancel"));

        // No label reaches under its field, and no button out of the dialog.
        for (QLabel* const label : dialog.findChildren<QLabel*>())
            QVERIFY2(label->geometry().right() < 120 && label->size() == label->sizeHint(),
                     qPrintable(label->text()));
        for (QPushButton* const button : dialog.findChildren<QPushButton*>())
            QVERIFY2(dialog.rect().contains(button->geometry()), qPrintable(button->text()));

        QTEST(GetTabOrder(dialog).join(' '), "tabOrder");
        PressKey(dialog, Qt::Key_Escape);
    });
    created.exec();
    QVERIFY(user.HasClosed());
}

/// No label reaches under its field, however large the font of the application is.
void TestCompoundCreateDialog::narrowsWideLabels()
{
    QFont const standard = QApplication::font();
    QStringList wrong;
    for (int size : {9, 14, 18, 72}) {
        QFont font = standard;
        font.setPointSize(size);
        QApplication::setFont(font);
        CTarnoCompoundCreateDialog dialog(m_Library->GetAccessor(), "loop compound", "", true);
        for (QLabel* const label : dialog.findChildren<QLabel*>()) {
            int const natural = QLabel(label->text()).sizeHint().width();
            int const width = label->sizeHint().width();
            if (natural <= 110 ? width != natural : width > 110 || width < 95)
                wrong << QString("%1%2 at %3").arg(label->text()).arg(width).arg(size);
        }
    }
    QApplication::setFont(standard);
    QCOMPARE(wrong, QStringList());
}

void TestCompoundCreateDialog::listsSignaturesByName()
{
    CTarnoCompoundCreateDialog dialog(m_Library->GetAccessor(), "compound", "compound", true);
    QComboBox const* const combo = dialog.findChild<QComboBox*>();
    QStringList entries;
    for (int index = 0; index < combo->count(); ++index)
        entries << combo->itemText(index) + '=' + combo->itemData(index).toString();
    QCOMPARE(entries, QStringList() << "None="
                                    << "Zeta=uid-zeta"
                                    << "alpha=uid-alpha");
    QCOMPARE(combo->currentIndex(), 0);

    TestLibrary empty("B");
    CTarnoCompoundCreateDialog other(empty.GetAccessor(), "compound", "compound", true);
    QCOMPARE(other.findChild<QComboBox*>()->count(), 1);
}

void TestCompoundCreateDialog::handsOutWhatWasEntered_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("category");
    QTest::addColumn<int>("signatureIndex");
    QTest::addColumn<QStringList>("results");

    auto const add = [](char const* row, QString const& name, QString const& category, int index,
                        QString const& cleaned, QString const& signature) {
        QTest::newRow(row) << name << category << index
                           << (QStringList() << cleaned << category << signature);
    };
    add("default name", "", "", 0, "compound", "");
    add("blank and punctuation", "my node!", "", 0, "my_node_", "");
    add("punctuation only", "?!", "", 0, "__", "");
    add("blank", " ", "", 0, "_", "");
    add("letters of any script", QString("h") + QChar(0xE9) + QChar(0x3A9) + "2", "", 0,
        QString("h") + QChar(0xE9) + QChar(0x3A9) + "2", "");
    add("category as typed", "blur", " my / category ", 0, "blur", "");
    add("signature", "blur", "", 1, "blur", "uid-zeta");
    add("last signature", "blur", "Math", 2, "blur", "uid-alpha");
}

void TestCompoundCreateDialog::handsOutWhatWasEntered()
{
    QFETCH(QString, name);
    QFETCH(QString, category);
    QFETCH(int, signatureIndex);
    CTarnoCompoundCreateDialog created(m_Library->GetAccessor(), "compound", "compound", true);
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, name);
        PressKey(dialog, Qt::Key_Tab);
        TypeText(dialog, category);
        PressKey(dialog, Qt::Key_Tab);
        for (int step = 0; step < signatureIndex; ++step)
            PressKey(dialog, Qt::Key_Down);
        PressKey(dialog, Qt::Key_Return);
    });
    QCOMPARE(created.exec(), int(QDialog::Accepted));
    QVERIFY(user.HasClosed());
    QTEST(QStringList() << created.GetName() << created.GetCategory() << created.GetSignature(),
          "results");
}

void TestCompoundCreateDialog::refusesAnEmptyName()
{
    CTarnoCompoundCreateDialog created(m_Library->GetAccessor(), "loop compound", "old", true);
    DialogUser user([&](QDialog& dialog) {
        PressKey(dialog, Qt::Key_Backspace);
        DialogUser boxUser([](QDialog& shown) {
            QMessageBox& box = dynamic_cast<QMessageBox&>(shown);
            QCOMPARE(box.windowTitle(), QString("Invalid Name"));
            QCOMPARE(box.text(), QString("The loop compound name is invalid."));
            QCOMPARE(box.icon(), QMessageBox::Critical);
            QCOMPARE(box.standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
            QVERIFY(!box.parent());
            PressKey(box, Qt::Key_Return);
        });
        ClickButton(dialog, "Ok");
        QVERIFY(boxUser.HasClosed());
        QVERIFY(dialog.isVisible());
        QVERIFY(created.GetName().isEmpty() && created.GetCategory().isEmpty());

        dialog.findChild<QLineEdit*>()->setFocus();
        TypeText(dialog, "second");
        ClickButton(dialog, "Ok");
    });
    QCOMPARE(created.exec(), int(QDialog::Accepted));
    QVERIFY(user.HasClosed());
    QCOMPARE(created.GetName(), QString("second"));

    // The message goes with its dialog.
    DialogUser other([](QDialog& dialog) {
        dialog.findChild<QLineEdit*>()->clear();
        DialogUser boxUser([&](QDialog&) { dialog.reject(); });
        ClickButton(dialog, "Ok");
        QVERIFY(boxUser.HasClosed());
    });
    QCOMPARE(created.exec(), int(QDialog::Rejected));
}

void TestCompoundCreateDialog::handsOutNothingOnceCancelled_data()
{
    QTest::addColumn<QString>("how");

    for (char const* how : {"Cancel", "Escape", "close"})
        QTest::newRow(how) << how;
}

void TestCompoundCreateDialog::handsOutNothingOnceCancelled()
{
    QFETCH(QString, how);
    CTarnoCompoundCreateDialog created(m_Library->GetAccessor(), "compound", "compound", true);
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, "blur");
        PressKey(dialog, Qt::Key_Tab);
        TypeText(dialog, "Math");
        if (how == "Cancel")
            ClickButton(dialog, "Cancel");
        else if (how == "Escape")
            PressKey(dialog, Qt::Key_Escape);
        else
            dialog.close();
    });
    QCOMPARE(created.exec(), int(QDialog::Rejected));
    QVERIFY(user.HasClosed());
    QCOMPARE(created.GetName() + created.GetCategory() + created.GetSignature(), QString());
}

void TestCompoundCreateDialog::passesErrorsOfTheHost()
{
    m_Host->ThrowAt("GetName", 2);
    QVERIFY_EXCEPTION_THROWN(
        CTarnoCompoundCreateDialog(m_Library->GetAccessor(), "compound", "compound", true),
        HostError);
}

NODEBROWSER_TEST_MAIN(TestCompoundCreateDialog)

#include "tst_compoundcreatedialog.moc"
