#include "canvastest.h"

#include <trailbar.h>

#include <QLabel>
#include <QToolButton>

using namespace tarno::datamodel;

/// The way through compounds, above the canvas.
class TestTrailBar : public CanvasTest
{
    Q_OBJECT

private:
    static QStringList GetShown(CTrailBar const& bar)
    {
        // Layouts show what is put into them from the event loop.
        QApplication::processEvents();
        QStringList texts;
        for (QToolButton const* const button : bar.findChildren<QToolButton*>())
            if (button->isVisible())
                texts << button->text();
        for (QLabel const* const label : bar.findChildren<QLabel*>())
            if (label->isVisible() && label->text() != QStringLiteral("\u203a"))
                texts << label->text();
        texts.sort();
        return texts;
    }

private Q_SLOTS:
    void leadsBackFromNodes()
    {
        Open(kOuter);
        CTrailBar bar(*m_Host);
        bar.show();
        QVERIFY(!bar.CanGoUp());
        // A node of it, then one that is none.
        Open(kMain);
        QCOMPARE(GetShown(bar), QStringList({"Main", "Outer"}));
        bar.findChild<QToolButton*>()->click();
        QCOMPARE(m_Host->GetCompoundTarget().GetItemID(), m_Host->FindItem(Uid(kOuter)));
        QCOMPARE(GetShown(bar), QStringList({"Outer"}));
        Open(kMain);
        bar.GoUp();
        QCOMPARE(GetShown(bar), QStringList({"Outer"}));
        Open(kLoop);
        QCOMPARE(GetShown(bar), QStringList({"Loop"}));
        QVERIFY(!bar.CanGoUp());
    }

    void marksWhatCannotBeChanged()
    {
        CTrailBar bar(*m_Host);
        Open(kLocked);
        QCOMPARE(GetShown(bar), QStringList({"Locked", "Read only"}));
        m_Host->CloseLibrary();
        QVERIFY(bar.isHidden());
        bar.GoUp();
    }
};

NODEBROWSER_TEST_MAIN(TestTrailBar)
#include "tst_trailbar.moc"
