#include "browsertest.h"
#include "dialoguser.h"
#include "tarnodialog.h"
#include "testtable.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QScopeGuard>

using namespace tarno::datamodel;

namespace {

/// Each part of the dialog with its place, and its size if it is not the natural one.
QString Describe(QDialog& dialog)
{
    QStringList parts;
    for (QWidget* const part :
         dialog.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        QComboBox* const combo = qobject_cast<QComboBox*>(part);
        QString const text = combo ? combo->currentText() : part->property("text").toString();
        QString line = QString("%1,%2 %3").arg(part->x()).arg(part->y()).arg(text);
        if (part->size() != part->sizeHint())
            line += QString(" %1x%2").arg(part->width()).arg(part->height());
        if (part->property("default").toBool())
            line += " default";
        parts << line;
    }
    parts.sort();
    return parts.join('|');
}

} // namespace

/// What stands in the dialogs with fixed places, and what they do besides handing out what was
/// entered, which is tested with the commands.
class TestDialogs : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void placesItsRows_data()
    {
        AddColumns<QString, QString, QString, QString>("kind", "title", "parts", "tabOrder");
        QString const buttons = "100,100 Ok default|";
        AddRow("signature", "signature", "Create signature",
               "10,12 Signature name: |10,42 Category: |" + buttons
                   + "120,10 old 220x20|120,40  220x20|190,100 Cancel",
               "QLineEdit QLineEdit Ok Cancel");
        AddRow("no shortcut", "r&d", "Create r&d",
               "10,12 R&d name: |10,42 Category: |" + buttons
                   + "120,10 old 220x20|120,40  220x20|190,100 Cancel",
               "QLineEdit QLineEdit Ok Cancel");
        AddRow("loop compound", "loop compound", "Create loop compound",
               "10,12 Loop compound name: |10,42 Category: |10,72 Signature: |" + buttons
                   + "120,10 old 220x20|120,40  220x20|120,70 None 220x20|190,100 Cancel",
               "QLineEdit QLineEdit QComboBox Ok Cancel");
        AddRow("tags", "", "Edit Item Tags",
               "10,12 Name: |10,42 Tags: |" + buttons
                   + "120,10 <i>Blur</i> & \u00E9 220x20|120,40 x;y 220x20|190,100 Cancel",
               "QLineEdit Ok Cancel");
    }

    void placesItsRows()
    {
        QFETCH(QString, kind);
        std::unique_ptr<QDialog> const dialog =
            kind.isEmpty()
                ? std::unique_ptr<QDialog>(new CItemTagsEditorDialog("<i>Blur</i> & \xE9", "x;y"))
                : MakeCreateDialog(qPrintable(kind), kind == "loop compound");
        QVERIFY(!dialog->parent());
        DialogUser user([&](QDialog&) {
            QTEST(dialog->windowTitle(), "title");
            dialog->resize(500, 50);
            QCOMPARE(dialog->size(), QSize(370, 130));
            QTEST(Describe(*dialog), "parts");
            QTEST(GetTabOrder(*dialog), "tabOrder");
            // No name is taken for markup, no label reaches under its field, and no button out.
            for (QLabel* const label : dialog->findChildren<QLabel*>()) {
                bool const isNaming = label->x() == 10;
                QVERIFY(isNaming ? label->geometry().right() < 120
                                 : label->textFormat() == Qt::PlainText);
                // Each label names the field beside it.
                QVERIFY(!isNaming || label->text().contains('&')
                        || (label->buddy() && label->buddy()->y() == label->y() - 2));
            }
            QVERIFY(dialog->rect().contains(dialog->childrenRect()));
            Use(*dialog, "<Escape>");
        });
        dialog->exec();
        QVERIFY(user.HasClosed());
    }

    /// The hint belongs to no window. It is never shown, and goes with the dialog.
    void neverShowsTheHint()
    {
        QPointer<QWidget> hint;
        {
            CItemTagsEditorDialog editor("Blur", "");
            editor.show();
            QVERIFY(QTest::qWaitForWindowExposed(&editor));
            for (QWidget* const widget : QApplication::topLevelWidgets())
                if (widget->property("text") == "State machine tags: Condition, TransitionBlend")
                    hint = widget;
            QVERIFY(hint && !hint->isVisible());
        }
        QVERIFY(!hint);
    }

    /// No label reaches under its field, however large the font of the application is, nor is
    /// narrower than it must be.
    void narrowsWideLabels()
    {
        QFont const standard = QApplication::font();
        auto const restore = qScopeGuard([&] { QApplication::setFont(standard); });
        for (int const size : {9, 18, 72}) {
            QFont font = standard;
            font.setPointSize(size);
            QApplication::setFont(font);
            std::unique_ptr<QDialog> const dialog = MakeCreateDialog("loop compound", true);
            for (QLabel* const label : dialog->findChildren<QLabel*>()) {
                int const natural = QLabel(label->text()).sizeHint().width();
                int const width = label->sizeHint().width();
                QVERIFY(natural <= 110 ? width == natural : width <= 110 && width >= 95);
            }
        }
    }

    void refusesAnEmptyName()
    {
        auto const created = MakeCreateDialog("loop compound", true);
        auto const getEntered = [&] {
            return created->GetName() + created->GetCategory();
        };
        DialogUser user([&](QDialog& dialog) {
            DialogUser boxUser([](QDialog& shown) {
                QMessageBox& box = dynamic_cast<QMessageBox&>(shown);
                QCOMPARE(box.windowTitle(), QString("Invalid Name"));
                QCOMPARE(box.text(), QString("The loop compound name is invalid."));
                QCOMPARE(box.icon(), QMessageBox::Critical);
                QCOMPARE(box.standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
                QVERIFY(!box.parent());
                Use(box, "<Return>");
            });
            Use(dialog, "<Backspace><Tab>Math<Ok>");
            QVERIFY(boxUser.HasClosed() && dialog.isVisible());
            QCOMPARE(getEntered(), QString());
            dialog.findChild<QLineEdit*>()->setFocus();
            Use(dialog, "second<Ok>");
        });
        QCOMPARE(created->exec(), int(QDialog::Accepted));
        QCOMPARE(getEntered(), QString("secondMath"));
        // The message goes with its dialog, which has forgotten what it handed out.
        DialogUser other([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>()->clear();
            DialogUser boxUser([&](QDialog&) { dialog.reject(); });
            Use(dialog, "<Ok>");
            QVERIFY(boxUser.HasClosed());
        });
        QCOMPARE(created->exec(), int(QDialog::Rejected));
        QCOMPARE(getEntered(), QString());
    }

private:
    std::unique_ptr<CTarnoCompoundCreateDialog> MakeCreateDialog(char const* kind,
                                                                 bool hasSignature)
    {
        return std::make_unique<CTarnoCompoundCreateDialog>(m_Library->GetAccessor(), kind, "old",
                                                            hasSignature);
    }
};

NODEBROWSER_TEST(TestDialogs)

#include "tst_dialogs.moc"
