#include "canvastest.h"

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

QString const kNodes = QStringLiteral("one 0,0|two 300,0|say 0,200|gone 300,200");

} // namespace

/// Nodes and the view: dropped, moved, copied, selected; zoomed, panned and left.
class TestCanvas : public CanvasTest
{
    Q_OBJECT

private:
    double Zoom() const
    {
        return m_Canvas->transform().m11();
    }

    QRectF View() const
    {
        return m_Canvas->mapToScene(m_Canvas->viewport()->rect()).boundingRect();
    }

private Q_SLOTS:
    void droppedItemsBecomeNodes()
    {
        // The header's middle comes under the mouse, on the grid.
        QVERIFY(IsDropped(kSay, ViewPoint(253, 471)));
        QCOMPARE(Nodes(), kNodes + "|say-2 180,460");
        QCOMPARE(Body().nodes.back().item, Uid(kSay));
        m_Canvas->DeleteSelection();
        QCOMPARE(Nodes(), kNodes);
        // Other actions and items are refused.
        QVERIFY(!IsDropped(kAdd, kNowhere, Qt::MoveAction));
        QVERIFY(!IsDropped(kFloat));
        m_Host->SetCompoundTarget(CompoundAccessor());
        QVERIFY(!IsDropped(kAdd));
    }

    void refusedChangesSayWhy()
    {
        m_Host->GetMessages().ClearLog();
        IsDropped(kOuter);
        Open(kOuter);
        m_Canvas->SelectAll();
        m_Canvas->Copy();
        Open(kMain);
        m_Canvas->Paste();
        Open(kLocked);
        IsDropped(kAdd);
        QStringList messages = GetMessages(*m_Host);
        for (char const* const text :
             {"\"Outer\" cannot be put into \"Main\", which it", "itself", "Locked"})
            QVERIFY2(!messages.isEmpty() && messages.takeFirst().contains(text), text);
        QVERIFY(messages.isEmpty() && !Stack().count());
    }

    /// Each kind of change once, then all of them back and forth.
    void editsAreUndoneAndRedone()
    {
        // The text of undo, and a part of the graph after it.
        typedef std::tuple<char const*, std::function<void()>, char const*> Edit;
        auto const graph = [this] {
            return Nodes() + '\n' + Wires();
        };
        Edit const edits[] = {
            {"Move Node", [&] { Drag(At("one"), At("one") + QPoint(33, 58)); },
             "one 40,60|two 300,0"},
            {"Move Node", [&] { TypeKey(Qt::Key_Left); }, "one 20,60|"},
            {"Move Node", [&] { TypeKey(Qt::Key_Up); }, "one 20,40|"},
            {"Move Node", [&] { TypeKey(Qt::Key_Right); }, "one 40,40|"},
            {"Connect", [&] { Drag(At("one.sum"), At("two.a")); }, "|one.sum>two.a"},
            {"Move Nodes",
             [&] { Drag(ViewPoint(190, -30), ViewPoint(310, 50)), TypeKey(Qt::Key_Down); },
             "one 40,60|two 300,20|say 0,200|"},
            {"Move Nodes", [&] { Drag(At("two"), At("two") + QPoint(-40, 0)); },
             "one 0,60|two 260,20|say 0,200|"},
            {"Duplicate", [&] { m_Canvas->Duplicate(); },
             "one-2 40,100|two-2 300,60\ngone.lost>two.b|one.sum>two.a|one-2.sum>two-2.a"},
            {"Cut", [&] { m_Canvas->Cut(); }, "gone 300,200\ngone.lost>two.b|one.sum>two.a"},
            {"Paste", [&] { m_Canvas->Paste(); }, "|one-2 40,100|two-2 300,60\n"},
            {"Paste", [&] { m_Canvas->Paste(); }, "|one-3 80,140|two-3 340,100\n"},
            {"Disconnect", [&] { Drag(At("two.a"), QPoint(5, 5)); }, "\ngone.lost>two.b|one-2"},
            {"Delete", [&] { Click(At("gone")), TypeKey(Qt::Key_Delete); },
             "|say 0,200|one-2 40,100|"},
        };
        QStringList states{graph()};
        for (auto const& [undoText, act, part] : edits) {
            act();
            QCOMPARE(Stack().undoText(), QString(undoText));
            QCOMPARE(Stack().count(), states.size());
            QVERIFY2(graph().contains(part), qPrintable(graph()));
            states << graph();
        }
        for (int step = states.size() - 1; step > 0; --step) {
            QCOMPARE(graph(), states[step]);
            QVERIFY(IsAsOpenedAnew());
            Stack().undo();
        }
        QCOMPARE(graph(), states.first());
        QVERIFY(!m_Host->IsModified());
        Stack().setIndex(Stack().count());
        QCOMPARE(graph(), states.last());
    }

    void movesAreCalledOff()
    {
        // Off the grid, where no step leads back to.
        Change([](GraphBody& body) { body.nodes[0].position = QPointF(7, 9); });
        auto const position = [this] {
            return *Scene().FindNodePosition("one");
        };
        QPoint const from = At("one");
        for (QPoint const& way : {QPoint(6, 3), QPoint(90, 60)}) {
            Press(from);
            MoveMouse(from + QPoint(50, 50));
            QCOMPARE(position(), QPointF(60, 60));
            MoveMouse(from + way);
            if (way.x() == 90)
                TypeKey(Qt::Key_Escape);
            Release(from + way);
            QCOMPARE(position(), QPointF(7, 9));
        }
        QCOMPARE(Stack().count(), 1);
    }

    void graphsAreFittedUntilTheyAreZoomed()
    {
        m_Canvas->resize(1200, 700);
        m_Canvas->Fit();
        QCOMPARE(Zoom(), 1.0);
        m_Canvas->resize(400, 700);
        QVERIFY(Zoom() < 0.5);
        QVERIFY(View().contains(Scene().GetBounds().adjusted(-26, -26, 26, 26)));
        QVERIFY(QLineF(View().center(), Scene().GetBounds().center()).length() < 6);
        // What is under the wheel stays there.
        m_Canvas->ResetZoom();
        QPoint const point(220, 410);
        QPointF const under = m_Canvas->mapToScene(point);
        QWheelEvent turn(point, m_Canvas->viewport()->mapToGlobal(point), {}, QPoint(0, 240),
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_Canvas->viewport(), &turn);
        QVERIFY(qAbs(Zoom() - 1.15 * 1.15) < 0.001);
        QVERIFY(QLineF(under, m_Canvas->mapToScene(point)).length() < 2);
        QRectF const before = View();
        Open(kOuter);
        QCOMPARE(Zoom(), 1.0);
        Open(kMain);
        // Scroll bars stand at whole pixels.
        QVERIFY(QLineF(before.topLeft(), View().topLeft()).length() < 2 / Zoom());
        QVERIFY(qAbs(before.width() - View().width()) < 0.001);
        // A node that is lost in the distance is left out.
        Change([](GraphBody& body) { body.nodes[1].position = QPointF(5e30, -5e30); });
        m_Canvas->Fit();
        QVERIFY(View().contains(QPointF(300, 200)));
        for (double const limit : {4.0, 0.05}) {
            for (int step = 0; step < 30; ++step)
                limit > 1 ? m_Canvas->ZoomIn() : m_Canvas->ZoomOut();
            QCOMPARE(Zoom(), limit);
        }
    }

    void viewsAreMoved()
    {
        QSignalSpy wanted(m_Canvas.get(), &CCanvas::NodeWanted);
        QPoint const from(300, 300);
        for (bool const hasSpace : {false, true}) {
            QRectF const before = View();
            if (hasSpace)
                QTest::keyPress(m_Canvas.get(), Qt::Key_Space);
            QTest::mousePress(m_Canvas->viewport(), hasSpace ? Qt::LeftButton : Qt::MiddleButton,
                              {}, from);
            QCOMPARE(Cursor(), Qt::ClosedHandCursor);
            for (QPoint const& way : {QPoint(70, 20), QPoint(30, 50)})
                MoveMouse(from + way);
            QCOMPARE(View(), before.translated(-30, -50));
            Release(from);
            QCOMPARE(Cursor(), hasSpace ? Qt::OpenHandCursor : Qt::ArrowCursor);
        }
        // A key that repeats itself, and another one.
        for (int const key : {int(Qt::Key_Space), int(Qt::Key_A)}) {
            QKeyEvent event(QEvent::KeyRelease, key, {}, {}, key == Qt::Key_Space);
            QApplication::sendEvent(m_Canvas.get(), &event);
            QCOMPARE(Cursor(), Qt::OpenHandCursor);
        }
        QTest::keyRelease(m_Canvas.get(), Qt::Key_Space);
        QCOMPARE(Cursor(), Qt::ArrowCursor);
        QVERIFY(wanted.isEmpty());
        // Beyond the nodes there is an end.
        QTest::mousePress(m_Canvas->viewport(), Qt::MiddleButton, {}, from);
        MoveMouse(from + QPoint(9000, 9000));
        QCOMPARE(View().topLeft(), Scene().GetBounds().topLeft() - QPointF(4000, 4000));
    }

    void placesAreExplained()
    {
        std::pair<char const*, QString> const rows[] = {
            {"one", "Add"},
            {"gone", "The library has no item " + QString::fromStdString(Uid(99)) + '.'},
            {"say.text", "text: Text"},
            {"gone.lost", "lost"}};
        for (auto const& [place, text] : rows) {
            QHelpEvent event(QEvent::ToolTip, At(place), QPoint(100, 100));
            QApplication::sendEvent(m_Canvas->viewport(), &event);
            QCOMPARE(QToolTip::text(), text);
        }
    }

    void gesturesOutliveTheirGraph()
    {
        for (QPoint const& from : {At("one"), At("two.sum")}) {
            Press(from);
            MoveMouse(from + QPoint(50, 50));
            Change([](GraphBody& body) { body.nodes.erase(body.nodes.begin()); });
            MoveMouse(from + QPoint(70, 70));
            Release(from + QPoint(70, 70));
        }
        Press(At("gone"));
        m_Host->CloseLibrary();
        MoveMouse(QPoint(400, 400));
        Release(QPoint(400, 400));
        QVERIFY(!m_Canvas->HasSelection());
    }

    void graphsStayWhole()
    {
        QRandomGenerator random(20261);
        // Ports and headers are small; chance alone would seldom find them.
        QStringList const places{"one", "two", "one.sum", "one.a", "two.a", "gone.lost"};
        auto const somewhere = [&] {
            return random.bounded(7) ? At(places[random.bounded(6)])
                                     : QPoint(random.bounded(1000), random.bounded(700));
        };
        Qt::Key const keys[] = {Qt::Key_Delete, Qt::Key_Escape, Qt::Key_Left, Qt::Key_Space};
        std::function<void()> const acts[] = {
            [&] { Press(somewhere()); },
            [&] { MoveMouse(somewhere()); },
            [&] { Release(somewhere()); },
            [&] { DoubleClick(somewhere()); },
            [&] { TypeKey(keys[random.bounded(4)]); },
            [&] { random.bounded(2) ? m_Canvas->Copy() : m_Canvas->Cut(); },
            [&] { random.bounded(2) ? m_Canvas->Paste() : m_Canvas->Duplicate(); },
            [&] { random.bounded(2) ? m_Canvas->ZoomIn() : m_Canvas->Fit(); },
            [&] { random.bounded(2) ? Stack().undo() : Stack().redo(); },
            [&] { Open(random.bounded(2) ? kMain : kLoop); },
            [&] { Change([](GraphBody& body) { RemoveNodes(body, {"one"}); }); },
            [] {
                QApplication::processEvents();
            }};
        for (int count = 0; count < 2000; ++count) {
            acts[random.bounded(int(std::size(acts)))]();
            GraphBody const body = Body();
            std::set<std::string> ids{kInputsNode, kOutputsNode};
            for (GraphNode const& node : body.nodes)
                QVERIFY2(ids.insert(node.id).second, node.id.c_str());
            std::set<GraphEnd> fed;
            for (auto const& [from, to] : body.connections)
                QVERIFY(ids.count(from.node) && ids.count(to.node) && fed.insert(to).second);
            if (body.nodes.size() > 60)
                Stack().setIndex(0);
        }
    }
};

NODEBROWSER_TEST(TestCanvas)

#include "tst_canvas.moc"
