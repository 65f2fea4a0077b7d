#include "dialoguser.h"
#include "loggedtest.h"
#include "tarnodialog.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

class TestItemTagsEditor : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void placesItsRows();
    void neverShowsTheHint();
    void normalisesTags_data();
    void normalisesTags();
    void keepsTagsOnceCancelled_data();
    void keepsTagsOnceCancelled();
};

void TestItemTagsEditor::placesItsRows()
{
    CItemTagsEditorDialog editor("<i>Blur</i> & \xE9", "x;y");
    QVERIFY(!editor.parent());
    DialogUser user([](QDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QString("Edit Item Tags"));
        QCOMPARE(dialog.minimumSize(), QSize(370, 130));
        QCOMPARE(dialog.maximumSize(), QSize(370, 130));

        QCOMPARE(FindAt<QLabel>(dialog, 10, 12)->text(), QString("Name: "));
        QCOMPARE(FindAt<QLabel>(dialog, 10, 42)->text(), QString("Tags: "));
        QLabel const* const name = FindAt<QLabel>(dialog, 120, 10);
        QCOMPARE(name->text(), QString("<i>Blur</i> & ") + QChar(0xE9));
        QCOMPARE(name->textFormat(), Qt::PlainText);
        QCOMPARE(name->size(), QSize(220, 20));
        QCOMPARE(FindAt<QLineEdit>(dialog, 120, 40)->text(), QString("x;y"));
        QCOMPARE(FindAt<QLineEdit>(dialog, 120, 40)->size(), QSize(220, 20));
        QCOMPARE(FindAt<QPushButton>(dialog, 100, 100)->text(), QString("Ok"));
        QVERIFY(FindAt<QPushButton>(dialog, 100, 100)->isDefault());
        QCOMPARE(FindAt<QPushButton>(dialog, 190, 100)->text(), QString("Cancel"));

        QCOMPARE(GetTabOrder(dialog).join(' '), QString("QLineEdit Ok Cancel"));
        PressKey(dialog, Qt::Key_Escape);
    });
    editor.exec();
    QVERIFY(user.HasClosed());
}

/// The hint has no parent. It is there, apart from the dialog, and goes with it.
void TestItemTagsEditor::neverShowsTheHint()
{
    auto const findHint = []() -> QWidget* {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            QLabel const* const label = qobject_cast<QLabel*>(widget);
            if (label && label->text() == "State machine tags: Condition, TransitionBlend")
                return widget;
        }
        return nullptr;
    };
    {
        CItemTagsEditorDialog editor("Blur", "");
        editor.show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor));
        QVERIFY(findHint() && !findHint()->isVisible());
        QCOMPARE(findHint()->pos(), QPoint(10, 72));
    }
    QVERIFY(!findHint());
}

void TestItemTagsEditor::normalisesTags_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");

    QTest::newRow("untouched") << "x;y"
                               << ""
                               << "x;y";
    QTest::newRow("untouched, not in normal form") << "y ; x;y"
                                                   << ""
                                                   << "x;y";
    QTest::newRow("all at once") << ""
                                 << " b; a ;;a; B "
                                 << "B;a;b";
    QTest::newRow("inner blank") << ""
                                 << "my tag ;other"
                                 << "my tag;other";
    QTest::newRow("nothing but separators") << "x"
                                            << "; ;"
                                            << "";
    QTest::newRow("8-bit letters")
        << "" << QString("z;") + QChar(0xE9) << QString("z;") + QChar(0xE9);
    QTest::newRow("other letters") << "" << QString(QChar(0x3A9)) << "?";
}

void TestItemTagsEditor::normalisesTags()
{
    QFETCH(QString, given);
    QFETCH(QString, typed);
    CItemTagsEditorDialog editor("Blur", qPrintable(given));
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, typed);
        PressKey(dialog, Qt::Key_Return);
    });
    QCOMPARE(editor.exec(), int(QDialog::Accepted));
    QVERIFY(user.HasClosed());
    QTEST(QString::fromLatin1(editor.GetTags().c_str()), "expected");
}

void TestItemTagsEditor::keepsTagsOnceCancelled_data()
{
    QTest::addColumn<QString>("how");

    for (char const* how : {"Cancel", "Escape", "close"})
        QTest::newRow(how) << how;
}

void TestItemTagsEditor::keepsTagsOnceCancelled()
{
    QFETCH(QString, how);
    CItemTagsEditorDialog editor("Blur", " b;a");
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, "other");
        if (how == "Cancel")
            ClickButton(dialog, "Cancel");
        else if (how == "Escape")
            PressKey(dialog, Qt::Key_Escape);
        else
            dialog.close();
    });
    QCOMPARE(editor.exec(), int(QDialog::Rejected));
    QVERIFY(user.HasClosed());
    QCOMPARE(editor.GetTags(), std::string(" b;a"));
}

NODEBROWSER_TEST_MAIN(TestItemTagsEditor)

#include "tst_itemtagseditor.moc"
