#include "browsertest.h"
#include "dialoguser.h"
#include "tarnodialog.h"
#include "testtable.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>

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
            QCOMPARE(dialog->minimumSize(), QSize(370, 130));
            QCOMPARE(dialog->maximumSize(), QSize(370, 130));
            QTEST(Describe(*dialog), "parts");
            QTEST(GetTabOrder(*dialog), "tabOrder");
            // No name is taken for markup, no label reaches under its field, and no button out.
            for (QWidget* const part : dialog->findChildren<QWidget*>()) {
                QLabel const* const label = qobject_cast<QLabel*>(part);
                QVERIFY(!label || label->x() > 10 || label->geometry().right() < 120);
                QVERIFY(!label || label->x() == 10 || label->textFormat() == Qt::PlainText);
                // Each label names the field beside it.
                bool const isNaming = label && label->x() == 10 && !label->text().contains('&');
                QVERIFY(!isNaming || (label->buddy() && label->buddy()->y() == label->y() - 2));
                QVERIFY(part->parent() != dialog.get()
                        || dialog->rect().contains(part->geometry()));
            }
            Use(*dialog, "<Escape>");
        });
        dialog->exec();
        QVERIFY(user.HasClosed());
    }

    /// The hint has no parent. It is there, apart from the dialog, and goes with it.
    void neverShowsTheHint()
    {
        auto const findHint = []() -> QWidget* {
            for (QWidget* const widget : QApplication::topLevelWidgets()) {
                if (widget->property("text") == "State machine tags: Condition, TransitionBlend")
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
    /// No label reaches under its field, however large the font of the application is.
    void narrowsWideLabels()
    {
        QFont const standard = QApplication::font();
        QStringList wrong;
        for (int size : {9, 14, 18, 72}) {
            QFont font = standard;
            font.setPointSize(size);
            QApplication::setFont(font);
            std::unique_ptr<QDialog> const dialog = MakeCreateDialog("loop compound", true);
            for (QLabel* const label : dialog->findChildren<QLabel*>()) {
                int const natural = QLabel(label->text()).sizeHint().width();
                int const width = label->sizeHint().width();
                if (natural <= 110 ? width != natural : width > 110 || width < 95)
                    wrong << QString("%1%2 at %3").arg(label->text()).arg(width).arg(size);
            }
        }
        QApplication::setFont(standard);
        QCOMPARE(wrong, QStringList());
    }
    void listsSignaturesByName()
    {
        for (char const* uid : {"uid-alpha", "uid-Zeta-1", "uid-Zeta-2"})
            m_Library
                ->Add(TarnoType::gCompound, QString(uid).section('-', 1, 1).toStdString(), "", uid)
                .isAbstract = true;
        ItemID const other = m_Library->Add(TarnoType::gCompound, "no signature").id;
        std::unique_ptr<QDialog> const dialog = MakeCreateDialog("compound", true);
        QComboBox const& combo = *dialog->findChild<QComboBox*>();
        QStringList entries;
        for (int index = 0; index < combo.count(); ++index)
            entries << combo.itemText(index) + '=' + combo.itemData(index).toString();
        QCOMPARE(entries, (QStringList{"None=", "Zeta=uid-Zeta-2", "alpha=uid-alpha"}));
        // What is in the map before stays there, unless a signature has the name.
        std::map<std::string, ItemID> signatures = {{"kept", other}, {"alpha", other}};
        GetAllSignatures(m_Library->GetAccessor(), signatures);
        QCOMPARE(signatures.size(), std::size_t(3));
        QVERIFY(signatures["kept"] == other && !(signatures["alpha"] == other));
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
