#include "browsertest.h"
#include "dialoguser.h"
#include "tarnodialog.h"

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
    void placesItsRows()
    {
        QString const buttons = "100,100 Ok default|";
        // Kind, title, parts and order of the fields.
        std::tuple<QByteArray, QString, QString, QString> const rows[] = {
            {"signature", "Create signature",
             "10,12 Signature name: |10,42 Category: |" + buttons
                 + "120,10 old 220x20|120,40  220x20|190,100 Cancel",
             "QLineEdit QLineEdit Ok Cancel"},
            {"loop compound", "Create loop compound",
             "10,12 Loop compound name: |10,42 Category: |10,72 Signature: |" + buttons
                 + "120,10 old 220x20|120,40  220x20|120,70 None 220x20|190,100 Cancel",
             "QLineEdit QLineEdit QComboBox Ok Cancel"},
            {"", "Edit Item Tags",
             "10,12 Name: |10,42 Tags: |" + buttons
                 + "120,10 <i>Blur</i> & \u00E9 220x20|120,40 x;y 220x20|190,100 Cancel",
             "QLineEdit Ok Cancel"}};
        for (auto const& [kind, title, parts, tabOrder] : rows) {
            std::unique_ptr<QDialog> dialog;
            if (kind.isEmpty())
                dialog.reset(new CItemTagsEditorDialog("<i>Blur</i> & \xE9", "x;y"));
            else
                dialog = MakeCreateDialog(kind);
            dialog->show();
            QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
            dialog->resize(500, 50);
            QCOMPARE(dialog->size(), QSize(370, 130));
            QCOMPARE(dialog->windowTitle() + '|' + Describe(*dialog), title + '|' + parts);
            QCOMPARE(GetTabOrder(*dialog), tabOrder);
            // No name is taken for markup, and no label reaches under its field, which screen
            // readers call by the label.
            for (QLabel* const label : dialog->findChildren<QLabel*>()) {
                QVERIFY(label->x() == 10 ? label->geometry().right() < 120
                                         : label->textFormat() == Qt::PlainText);
                QWidget* const field = dialog->childAt(130, label->geometry().center().y());
                if (!qobject_cast<QLabel*>(field))
                    QCOMPARE(label->buddy(), field);
            }
        }
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

    void refusesAnEmptyName()
    {
        auto const created = MakeCreateDialog("loop compound");
        DialogUser user([&](QDialog& dialog) {
            DialogUser boxUser([](QDialog& shown) {
                QMessageBox& box = dynamic_cast<QMessageBox&>(shown);
                QCOMPARE(box.windowTitle() + '|' + box.text(),
                         QString("Invalid Name|The loop compound name is invalid."));
                Use(box, "<Return>");
            });
            Use(dialog, "<Backspace><Tab>Math<Ok>");
            QVERIFY(boxUser.HasClosed() && dialog.isVisible());
            dialog.findChild<QLineEdit*>()->setFocus();
            Use(dialog, "second<Ok>");
        });
        QCOMPARE(created->exec(), int(QDialog::Accepted));
        QCOMPARE(created->GetName() + created->GetCategory(), QString("secondMath"));
        // The message goes with its dialog, which has forgotten what it handed out.
        DialogUser other([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>()->clear();
            DialogUser boxUser([&](QDialog&) { dialog.reject(); });
            Use(dialog, "<Ok>");
            QVERIFY(boxUser.HasClosed());
        });
        QCOMPARE(created->exec(), int(QDialog::Rejected));
        QCOMPARE(created->GetName() + created->GetCategory(), QString());
    }

private:
    std::unique_ptr<CTarnoCompoundCreateDialog> MakeCreateDialog(QByteArray const& kind)
    {
        return std::make_unique<CTarnoCompoundCreateDialog>(m_Library->GetAccessor(), kind, "old",
                                                            kind == "loop compound");
    }
};

NODEBROWSER_TEST(TestDialogs)

#include "tst_dialogs.moc"
