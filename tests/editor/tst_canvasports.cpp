#include "canvastest.h"
#include "whenshown.h"

#include <nodebrowser.h>
#include <typeselector.h>

namespace {

/// In the first row of the dialog's panel, which has no tabs.
QPoint const kInFirstRow(60, 34);

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

    /// It can be pressed and seen, so far from the middle between two ports.
    bool IsWireAt(char const* from, char const* to, QPoint const& offset) const
    {
        QPoint const point = Between(from, to) + offset;
        return IsPaintedAt(point) && Scene().FindConnectionAt(m_Canvas->mapToScene(point), 2);
    }

    void Choose(QPoint const& point, char const* text)
    {
        WhenShown const answer([text] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
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
            return QMetaObject::invokeMethod(&dialog, "accept");
        }));
        (m_Canvas.get()->*add)();
        QVERIFY(type.IsDone() && named.IsDone());
    }

private Q_SLOTS:
    void connectionsAreDrawn()
    {
        QString const first = QStringLiteral("gone.lost>two.b");
        QString const both = first + "|one.sum>two.a";
        // From a port to another one, and the connections then.
        std::tuple<char const*, char const*, QString> const rows[] = {
            {"two.sum", "out.result", both + "|two.sum>out.result"},
            {"out.result", "two.sum", both + "|two.sum>out.result"},
            {"in.value", "one.b", both + "|in.value>one.b"},
            // Instead of another one, and from an output without a type.
            {"in.value", "two.b", "one.sum>two.a|in.value>two.b"},
            {"gone.lost", "say.text", both + "|gone.lost>say.text"},
            // Taken off an input.
            {"two.a", "no.where", first},
            {"two.a", "two.b", "one.sum>two.b"},
            // Refused: other types, sides and circles.
            {"say.said", "one.a", both},
            {"one.sum", "two.sum", both},
            {"one.b", "say.text", both},
            {"one.sum", "one.b", both},
            {"two.sum", "one.b", both},
            {"one.sum", "no.where", both},
            {"two.a", "say.text", both},
            {"two.a", "two.a", both}};
        Connect("one.sum", "two.a");
        for (auto const& [from, to, wires] : rows) {
            Drag(At(from), At(to));
            m_Canvas->ForgetWantedNode();
            QCOMPARE(Wires(), wires);
            QCOMPARE(Stack().index(), wires == both ? 1 : 2);
            QCOMPARE(Cursor(), Qt::ArrowCursor);
            // Nothing of the loose connection is left.
            QVERIFY(IsAsOpenedAnew());
            Stack().setIndex(1);
        }
    }

    void looseConnectionsFollowTheMouse()
    {
        Connect("one.sum", "two.a");
        QImage const before = Picture();
        for (char const* const port : {"one.sum", "one.b", "two.a"}) {
            // It comes from the right of an input that is free.
            QPoint const beside(port == QByteArray("one.b") ? 3 : -3, 0);
            Press(At(port));
            QCOMPARE(Cursor(), Qt::CrossCursor);
            for (QPoint const& point : {QPoint(500, 430), QPoint(640, 560)}) {
                MoveMouse(point);
                QVERIFY(IsPaintedAt(point + beside));
            }
            QVERIFY(!IsPaintedAt(QPoint(500, 430) + beside));
            TypeKey(Qt::Key_Escape);
            QCOMPARE(Picture(), before);
            Release(kNowhere);
        }
        QCOMPARE(Stack().count(), 1);
    }

    void connectionsFollowTheirNodes()
    {
        Connect("one.sum", "two.a");
        for (char const* const node : {"one", "two"}) {
            QPoint const from = At(node);
            Press(from);
            for (int const way : {60, 20}) {
                MoveMouse(from + QPoint(0, way));
                // At both of its ends.
                QVERIFY(IsWireAt("one.sum", "one.sum", {7, 0}));
                QVERIFY(IsWireAt("two.a", "two.a", {-8, 0}));
            }
            Release(from + QPoint(0, 20));
            QVERIFY(IsAsOpenedAnew());
        }
    }

    void connectionsLeadAroundNodes()
    {
        Connect("two.sum", "one.a");
        // Below both, whose rows are too near to go between them.
        QVERIFY(IsWireAt("two.sum", "one.a", {0, 70}));
        QVERIFY(IsWireAt("two.sum", "two.sum", {37, 35}));
        QVERIFY(IsWireAt("one.a", "one.a", {-38, 35}));
        Change([](GraphBody& body) { body.nodes[1].position = QPointF(300, 300); });
        QVERIFY(IsWireAt("two.sum", "one.a", {-120, 0}));
    }

    void connectionsAreSelectedAndDeleted()
    {
        Connect("one.sum", "two.a");
        QPoint const middle = Between("one.sum", "two.a");
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
        Press(At("one.sum"));
        std::pair<char const*, QString> const reasons[] = {
            {"say.text", "Float does not go into Text."},
            {"two.sum", "An output goes to an input."},
            {"one.a", "The output depends on this node already."}};
        for (auto const& [port, reason] : reasons) {
            QImage const faded = Look(At(port));
            MoveMouse(At(port));
            QCOMPARE(QToolTip::text(), reason);
            QCOMPARE(Cursor(), Qt::ForbiddenCursor);
            QVERIFY(Look(At(port)) != faded);
        }
        MoveMouse(At("two.a"));
        QCOMPARE(Cursor(), Qt::CrossCursor);
        QTRY_COMPARE(QToolTip::text(), QString());
        Release(kNowhere);
    }

    /// Files made by other means may have those that share an input, or lack a node.
    void oddConnectionsDoNoHarm()
    {
        Change([](GraphBody& body) {
            body.connections = {{{"one", "sum"}, {"two", "a"}}, {{"gone", "sum"}, {"two", "a"}}};
        });
        Drag(At("two.a"), At("two.a"));
        QVERIFY(IsAsOpenedAnew());
        Change([](GraphBody& body) { RemoveNodes(body, {"gone"}); });
        QImage const without = Picture();
        Connect("gone.sum", "one.a");
        QCOMPARE(Picture(), without);
    }

    void loopsFeedValuesBack()
    {
        GraphBody const main = Body();
        Open(kLoop);
        Change([&](GraphBody& body) { body.nodes = main.nodes; });
        Connect("one.sum", "two.a");
        Drag(At("two.sum"), At("one.a"));
        QCOMPARE(Wires(), QStringLiteral("one.sum>two.a|two.sum>one.a"));
    }

    void portsFadeAndAreMarked()
    {
        QImage const suitable = Look(At("two.a"));
        QImage const unsuitable = Look(At("say.text"));
        Press(At("one.sum"));
        for (int step = 0; step < 2; ++step) {
            QCOMPARE(Look(At("two.a")), suitable);
            QVERIFY(Look(At("say.text")) != unsuitable);
            // The same after the graph was changed elsewhere.
            Change([](GraphBody& body) { body.nodes[1].position.ry() += 100; });
        }
        Release(kNowhere);
        // Marked as far as the port can be pressed.
        for (int const distance : {12, 11, 12}) {
            MoveMouse(At("say.text") - QPoint(distance, 0));
            QCOMPARE(Look(At("say.text")) == unsuitable, distance == 12);
        }
    }

    void portsAreAddedAndRemoved()
    {
        auto const ports = [this] {
            QString text = Stack().undoText() + ':';
            for (auto const& side : {Body().inputs, Body().outputs})
                for (GraphPort const& port : side)
                    text += ' ' + QString::fromStdString(port.name);
            return text;
        };
        // Taken already.
        AddPort(&CCanvas::AddInput, " value ");
        QCOMPARE(ports(), QString("Add Input: value value 2 result"));
        QCOMPARE(Body().inputs.back().type, Uid(kFloat));
        AddPort(&CCanvas::AddOutput, "more");
        QCOMPARE(ports(), QString("Add Output: value value 2 result more"));
        Connect("in.value", "one.a");
        Choose(At("in.value"), "Remove Input");
        QCOMPARE(ports() + Wires(), QString("Remove Input: value 2 result moregone.lost>two.b"));
        Choose(At("out.more"), "Remove Output");
        QCOMPARE(ports(), QString("Remove Output: value 2 result"));
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
        Choose(At("one"), "Copy");
        Choose(ViewPoint(220, 140), "Paste");
        QVERIFY(Nodes().endsWith(QStringLiteral("|one-2 220,140")));
        Choose(At("one-2"), "Delete");
        Choose(Between("one.sum", "two.a"), "Delete");
        QCOMPARE(Wires(), QStringLiteral("gone.lost>two.b"));
        Choose(kNowhere, "Select All");
        Choose(At("say"), "Cut");
        QCOMPARE(Nodes(), QString());
        Open(kOuter);
        Choose(At("main"), "Open");
        QVERIFY(IsOpen(kMain) && m_Canvas->CanPaste());
        // Where nothing can be changed, the entry cannot be chosen.
        Open(kLocked);
        m_Host->GetMessages().ClearLog();
        Choose(QPoint(50, 50), "Paste");
        QVERIFY(GetMessages(*m_Host).isEmpty() && !m_Canvas->CanPaste());
    }
};

NODEBROWSER_TEST(TestCanvasPorts)

#include "tst_canvasports.moc"
