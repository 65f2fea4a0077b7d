#include "canvastest.h"
#include "whenshown.h"

#include <nodebrowser.h>
#include <typeselector.h>

#include <QContextMenuEvent>
#include <QInputDialog>
#include <QToolTip>

namespace {

/// In the first row of the dialog's panel, which has no tabs.
QPoint const kInFirstRow(60, 34);
/// Where there is nothing.
QPoint const kNowhere(5, 5);

/// Chooses the type that the dialog lists first.
bool ChooseType(CTypeSelector& dialog)
{
    QTest::mouseClick(dialog.findChild<CNodeBrowser*>(), Qt::LeftButton, Qt::NoModifier,
                      kInFirstRow);
    // There are no rows before the first paint.
    return !dialog.isVisible();
}

} // namespace

/// Connections between nodes, and the compound's own ports.
class TestCanvasPorts : public CanvasTest
{
    Q_OBJECT

private:
    /// What the canvas shows around a point.
    QImage Look(QPoint const& point) const
    {
        return Picture().copy(QRect(point, QSize(1, 1)).adjusted(-8, -8, 8, 8));
    }

    /// In the colour of a connection of numbers.
    bool IsPaintedAt(QPoint const& point) const
    {
        return IsLike(Picture().pixelColor(point), GetTypeColor(Uid(kFloat), "Float", false));
    }

    /// It can be pressed and seen.
    bool IsWireAt(QPoint const& point) const
    {
        return IsPaintedAt(point) && Scene().FindConnectionAt(m_Canvas->mapToScene(point), 2);
    }

    bool IsWireBetween(char const* from, char const* to) const
    {
        return IsWireAt(PortOf(from) + QPoint(7, 0)) && IsWireAt(PortOf(to) - QPoint(8, 0));
    }

    void Choose(QPoint const& point, char const* text)
    {
        WhenShown const answer([text] {
            QMenu* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            for (QAction* const action : menu ? menu->actions() : QList<QAction*>())
                if (action->text() == text && action->isEnabled())
                    action->trigger();
            return menu && menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, point,
                                m_Canvas->viewport()->mapToGlobal(point));
        QApplication::sendEvent(m_Canvas->viewport(), &event);
        QVERIFY(answer.IsDone());
    }

    void AddPort(void (CCanvas::*add)(), char const* name)
    {
        WhenShown const type(OnDialog<CTypeSelector>(ChooseType));
        WhenShown const named(OnDialog<QInputDialog>([name](QInputDialog& dialog) {
            dialog.setTextValue(name);
            dialog.accept();
            return true;
        }));
        (m_Canvas.get()->*add)();
        QVERIFY(type.IsDone() && named.IsDone());
    }

private Q_SLOTS:
    void connectionsAreDrawn_data()
    {
        QTest::addColumn<QString>("wires");
        QString const first = QStringLiteral("gone.lost>two.b");
        QString const second = QStringLiteral("|one.sum>two.a");
        QString const both = first + second;
        // Each is drawn from a port to another one.
        QTest::newRow("two.sum out.result") << both + "|two.sum>out.result";
        QTest::newRow("out.result two.sum") << both + "|two.sum>out.result";
        QTest::newRow("in.value one.b") << both + "|in.value>one.b";
        // Instead of another one, and from what has no type.
        QTest::newRow("in.value two.b") << second.mid(1) + "|in.value>two.b";
        QTest::newRow("gone.lost say.text") << both + "|gone.lost>say.text";
        // Refused: other types, sides and circles.
        for (char const* const way : {"say.said one.a", "one.sum two.sum", "one.b say.text",
                                      "one.sum one.b", "two.sum one.b", "one.sum no.where"})
            QTest::newRow(way) << both;
        // Taken off an input.
        QTest::newRow("two.a no.where") << first;
        QTest::newRow("two.a two.b") << "one.sum>two.b";
        QTest::newRow("two.a say.text") << both;
        QTest::newRow("two.a two.a") << both;
    }

    void connectionsAreDrawn()
    {
        Connect("one.sum", "two.a");
        QString const wires = Wires();
        QImage const before = Picture();
        QStringList const way = QString(QTest::currentDataTag()).split(' ');
        Drag(PortOf(way[0]), PortOf(way[1]));
        MoveMouse(kNowhere);
        bool const isChanged = Wires() != wires;
        QTEST(Wires(), "wires");
        QCOMPARE(Stack().count(), isChanged ? 2 : 1);
        QCOMPARE(Cursor(), Qt::ArrowCursor);
        if (isChanged)
            Stack().undo();
        // Nothing of the loose connection is left.
        QCOMPARE(Picture(), before);
    }

    void looseConnectionsFollowTheMouse()
    {
        Connect("one.sum", "two.a");
        QImage const before = Picture();
        for (char const* const port : {"one.sum", "one.b", "two.a"}) {
            // It comes from the right of an input that is free.
            QPoint const beside(port == QByteArray("one.b") ? 3 : -3, 0);
            Press(PortOf(port));
            QCOMPARE(Cursor(), Qt::CrossCursor);
            MoveMouse(QPoint(500, 430));
            QVERIFY(IsPaintedAt(QPoint(500, 430) + beside));
            MoveMouse(QPoint(640, 560));
            QVERIFY(IsPaintedAt(QPoint(640, 560) + beside));
            QVERIFY(!IsPaintedAt(QPoint(500, 430) + beside));
            TypeKey(Qt::Key_Escape);
            QCOMPARE(Picture(), before);
            Release(QPoint(640, 560));
        }
        QCOMPARE(Stack().count(), 1);
    }

    void connectionsFollowTheirNodes()
    {
        Connect("one.sum", "two.a");
        QVERIFY(IsWireBetween("one.sum", "two.a"));
        for (char const* const node : {"one", "two"}) {
            QPoint const from = HeaderOf(node);
            QPoint const old = PortOf("one.sum") + QPoint(7, 0);
            Press(from);
            MoveMouse(from + QPoint(0, 60));
            QVERIFY(IsWireBetween("one.sum", "two.a"));
            QCOMPARE(IsWireAt(old), *node == 't');
            Release(from + QPoint(0, 60));
        }
        Stack().setIndex(1);
        m_Canvas->ZoomIn();
        QVERIFY(IsWireBetween("one.sum", "two.a"));
    }

    void connectionsLeadAroundNodes()
    {
        Connect("two.sum", "one.a");
        // Below both, whose rows are too near to go between them.
        auto const middle = [this] {
            return (PortOf("two.sum") + PortOf("one.a")) / 2;
        };
        QVERIFY(IsWireAt(middle() + QPoint(0, 70)));
        QVERIFY(IsWireAt(PortOf("two.sum") + QPoint(37, 35)));
        QVERIFY(IsWireAt(PortOf("one.a") + QPoint(-38, 35)));
        Change([](GraphBody& body) { body.nodes[1].position = QPointF(300, 300); });
        QVERIFY(IsWireAt(middle() + QPoint(-120, 0)));
    }

    void connectionsAreSelectedAndDeleted()
    {
        Connect("one.sum", "two.a");
        QPoint const middle = (PortOf("one.sum") + PortOf("two.a")) / 2;
        Click(middle + QPoint(0, 8));
        QVERIFY(!m_Canvas->HasSelection());
        Click(middle + QPoint(0, 5));
        QVERIFY(m_Canvas->HasSelection() && !m_Canvas->CanCopy());
        QCOMPARE(Picture().pixelColor(middle), Scene().GetColors().selection);
        TypeKey(Qt::Key_Backspace);
        QCOMPARE(Wires(), QStringLiteral("gone.lost>two.b"));
    }

    void refusalsSayWhy()
    {
        Press(PortOf("one.sum"));
        std::pair<QString, QString> const reasons[] = {
            {"say.text", "Float does not go into Text."},
            {"two.sum", "An output goes to an input."},
            {"one.a", "The output depends on this node already."}};
        for (auto const& reason : reasons) {
            QImage const faded = Look(PortOf(reason.first));
            MoveMouse(PortOf(reason.first));
            QCOMPARE(QToolTip::text(), reason.second);
            QCOMPARE(Cursor(), Qt::ForbiddenCursor);
            QVERIFY(Look(PortOf(reason.first)) != faded);
        }
        MoveMouse(PortOf("two.a"));
        QCOMPARE(Cursor(), Qt::CrossCursor);
        QTRY_COMPARE(QToolTip::text(), QString());
        Release(kNowhere);
    }

    void oddConnectionsDoNoHarm()
    {
        // Files made by other means may have those that share an input, or lack a node.
        Change([](GraphBody& body) {
            body.connections = {{{"one", "sum"}, {"two", "a"}}, {{"gone", "sum"}, {"two", "a"}}};
        });
        QImage const before = Picture();
        Drag(PortOf("two.a"), PortOf("two.a"));
        MoveMouse(kNowhere);
        QCOMPARE(Picture(), before);
        Change([](GraphBody& body) { RemoveNodes(body, {"gone"}); });
        QImage const without = Picture();
        Connect("gone.sum", "one.a");
        QCOMPARE(Picture(), without);
    }

    void loopsFeedValuesBack()
    {
        Open(kLoop);
        Change([](GraphBody& body) {
            body.nodes = {{"one", Uid(kAdd), QPointF(0, 0)}, {"two", Uid(kAdd), QPointF(300, 0)}};
        });
        Connect("one.sum", "two.a");
        Drag(PortOf("two.sum"), PortOf("one.a"));
        QCOMPARE(Wires(), QStringLiteral("one.sum>two.a|two.sum>one.a"));
    }

    void portsFadeAndAreMarked()
    {
        QImage const suitable = Look(PortOf("two.a"));
        QImage const unsuitable = Look(PortOf("say.text"));
        Press(PortOf("one.sum"));
        for (int step = 0; step < 2; ++step) {
            QCOMPARE(Look(PortOf("two.a")), suitable);
            QVERIFY(Look(PortOf("say.text")) != unsuitable);
            // The same after the graph was changed elsewhere.
            Change([](GraphBody& body) { body.nodes[1].position += QPointF(0, 100); });
        }
        Release(kNowhere);
        QCOMPARE(Look(PortOf("say.text")), unsuitable);
        MoveMouse(PortOf("say.text") - QPoint(11, 0));
        QVERIFY(Look(PortOf("say.text")) != unsuitable);
        MoveMouse(PortOf("say.text") - QPoint(12, 0));
        QCOMPARE(Look(PortOf("say.text")), unsuitable);
    }

    void portsAreAddedAndRemoved()
    {
        auto const ports = [this] {
            QStringList names;
            for (auto const& side : {Body().inputs, Body().outputs})
                for (GraphPort const& port : side)
                    names << QString::fromStdString(port.name);
            return Stack().undoText() + ": " + names.join(' ');
        };
        // Taken already.
        AddPort(&CCanvas::AddInput, " value ");
        QCOMPARE(ports(), QStringLiteral("Add Input: value value 2 result"));
        QCOMPARE(Body().inputs.back().type, Uid(kFloat));
        AddPort(&CCanvas::AddOutput, "more");
        QCOMPARE(ports(), QStringLiteral("Add Output: value value 2 result more"));
        Connect("in.value", "one.a");
        Choose(PortOf("in.value"), "Remove Input");
        QCOMPARE(ports(), QStringLiteral("Remove Input: value 2 result more"));
        QCOMPARE(Wires(), QStringLiteral("gone.lost>two.b"));
        Choose(PortOf("out.more"), "Remove Output");
        QCOMPARE(ports(), QStringLiteral("Remove Output: value 2 result"));
    }

    void addedPortsOutliveTheirCompound()
    {
        WhenShown const type(OnDialog<CTypeSelector>([this](CTypeSelector& dialog) {
            m_Host->CloseLibrary();
            return ChooseType(dialog) || dialog.close();
        }));
        m_Canvas->AddOutput();
        QCOMPARE(Stack().count(), 0);
    }

    void contextMenusActOnWhatIsUnderTheMouse()
    {
        Connect("one.sum", "two.a");
        Choose(HeaderOf("one"), "Copy");
        Choose(ViewPoint(220, 140), "Paste");
        QVERIFY(Nodes().endsWith(QStringLiteral("|one-2 220,140")));
        Choose(HeaderOf("one-2"), "Delete");
        Choose((PortOf("one.sum") + PortOf("two.a")) / 2, "Delete");
        QCOMPARE(Wires(), QStringLiteral("gone.lost>two.b"));
        Choose(kNowhere, "Select All");
        Choose(HeaderOf("say"), "Cut");
        QCOMPARE(Nodes(), QString());
        Open(kOuter);
        Choose(HeaderOf("main"), "Open");
        QCOMPARE(m_Host->GetCompoundTarget().GetItemID(), m_Host->FindItem(Uid(kMain)));
        QVERIFY(m_Canvas->CanPaste());
        Open(kLocked);
        QVERIFY(!m_Canvas->CanPaste());
        m_Host->GetMessages().ClearLog();
        Choose(QPoint(50, 50), "Paste");
        QVERIFY(GetMessages(*m_Host).isEmpty());
    }
};

static TestProgram::Entry<TestCanvasPorts> const kTestCanvasPorts;

#include "tst_canvasports.moc"
