#include "canvastest.h"

#include <itempayload.h>

using namespace tarno::datamodel;

namespace {

QString const kNodes = QStringLiteral("one 0,0|two 300,0|say 0,200|gone 300,200");

typedef std::set<std::string> Ids;

} // namespace

/// Nodes and the view: dropped, moved, copied, selected; zoomed, panned and left.
class TestCanvas : public CanvasTest
{
    Q_OBJECT

private:
    /// Whether the item is let in over the canvas and down, whatever the events say before.
    bool IsDropped(std::string const& id, QPoint const& point = kNowhere,
                   Qt::DropActions actions = Qt::CopyAction)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << QString::fromStdString(id);
        QMimeData data;
        data.setData(QString::fromLatin1(kItemMimeType), bytes);
        QDragEnterEvent enter(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QDragMoveEvent move(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QDropEvent drop(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        for (QDropEvent* const event :
             {static_cast<QDropEvent*>(&enter), static_cast<QDropEvent*>(&move), &drop}) {
            event->setAccepted(event == &enter && actions != Qt::CopyAction);
            QApplication::sendEvent(m_Canvas->viewport(), event);
            // A drag that is refused brings no more events.
            if (!event->isAccepted())
                return false;
        }
        return true;
    }

    bool IsDropped(int uid, QPoint const& point = kNowhere,
                   Qt::DropActions actions = Qt::CopyAction)
    {
        return IsDropped(m_Host->FindItem(Uid(uid)).Serialize(), point, actions);
    }

    double Zoom() const
    {
        return m_Canvas->transform().m11();
    }

    QRectF View() const
    {
        return m_Canvas->mapToScene(m_Canvas->viewport()->rect()).boundingRect();
    }

    void TurnWheel(QPoint const& point, int delta)
    {
        QWheelEvent event(point, m_Canvas->viewport()->mapToGlobal(point), {}, QPoint(0, delta),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_Canvas->viewport(), &event);
    }

    QString ToolTipAt(QPoint const& point)
    {
        QHelpEvent event(QEvent::ToolTip, point, m_Canvas->viewport()->mapToGlobal(point));
        QApplication::sendEvent(m_Canvas->viewport(), &event);
        return QToolTip::text();
    }

    QString ShownTexts() const
    {
        QStringList texts;
        for (QLabel const* const label : m_Canvas->findChildren<QLabel*>())
            if (label->isVisible())
                texts << label->text();
        return texts.join('|');
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
        QVERIFY(!IsDropped("solver:" + Uid(98)) && !IsDropped("compound:" + Uid(kAdd)));
        m_Host->SetCompoundTarget(CompoundAccessor());
        QVERIFY(!IsDropped(kAdd));
    }

    void refusedChangesSayWhy()
    {
        m_Host->GetMessages().ClearLog();
        IsDropped(kMain);
        IsDropped(kOuter);
        QApplication::clipboard()->setText(QStringLiteral("some words"));
        m_Canvas->Paste();
        Open(kOuter);
        m_Canvas->SelectAll();
        m_Canvas->Copy();
        Open(kMain);
        m_Canvas->Paste();
        Open(kLocked);
        IsDropped(kAdd);
        QStringList messages = GetMessages(*m_Host);
        for (char const* const text : {"\"Main\" cannot be put into itself.",
                                       "\"Outer\" cannot be put into \"Main\", which it",
                                       "something else", "itself", "Locked"})
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
             [&] { Click(At("one")), Click(At("two"), Qt::ShiftModifier), TypeKey(Qt::Key_Down); },
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
        for (QPoint const& way : {QPoint(6, 3), QPoint(0, 0), QPoint(90, 60)}) {
            Press(from);
            MoveMouse(from + QPoint(50, 50));
            QCOMPARE(position(), QPointF(60, 60));
            MoveMouse(from + way);
            if (way.x() == 90)
                TypeKey(Qt::Key_Escape);
            Release(from + way);
            QCOMPARE(position(), QPointF(7, 9));
            QCOMPARE(m_Canvas->HasSelection(), way.x() < 90);
        }
        QCOMPARE(Stack().count(), 1);
    }

    void nodesFarAwayAreFound()
    {
        Click(At("one"));
        m_Canvas->Copy();
        m_Canvas->centerOn(QPointF(3000, 3000));
        m_Canvas->Paste();
        QCOMPARE(Nodes(), kNodes + "|one-2 3000,3000");
        Change([](GraphBody& body) { body.nodes[1].position = QPointF(5e30, -5e30); });
        m_Canvas->Fit();
        QVERIFY(View().contains(QPointF(300, 200)));
        // A copy has nowhere to go.
        m_Canvas->SelectAll();
        m_Canvas->Duplicate();
        QCOMPARE(Body().nodes.size(), std::size_t(10));
    }

    void doubleClicksOpenCompounds()
    {
        DoubleClick(At("one"));
        Open(kOuter);
        DoubleClick(At("main.value"));
        QVERIFY(IsOpen(kOuter));
        DoubleClick(At("main"));
        QVERIFY(IsOpen(kMain));
        QCOMPARE(Stack().count(), 0);
    }

    void nodesAreSelected()
    {
        QSignalSpy changed(m_Canvas.get(), &CCanvas::SelectionChanged);
        // A rubber band adds with Shift, and takes what it touches.
        std::pair<std::function<void()>, Ids> const steps[] = {
            {[&] { Click(At("one")); }, {"one"}},
            {[&] { Click(At("say"), Qt::ControlModifier); }, {"one", "say"}},
            {[&] { Click(At("one"), Qt::ControlModifier); }, {"say"}},
            {[&] { Drag(ViewPoint(200, -30), ViewPoint(310, 10), Qt::ShiftModifier); },
             {"say", "two"}},
            {[&] { Drag(ViewPoint(230, -30), ViewPoint(290, 300)); }, {}},
            {[&] { Click(At("two")); }, {"two"}},
            {[&] { Change([](GraphBody& body) { body.nodes.erase(body.nodes.begin()); }); },
             {"two"}},
            {[&] { m_Canvas->SelectAll(); }, {"gone", "say", "two"}}};
        for (auto const& [act, selected] : steps) {
            QApplication::processEvents();
            changed.clear();
            act();
            QCOMPARE(Scene().GetSelectedNodes(), selected);
            QCOMPARE(m_Canvas->HasSelection(), !selected.empty());
        }
        QApplication::processEvents();
        // Not of each node: whoever listens may look at all of them.
        QCOMPARE(changed.count(), 1);
    }

    void viewIsZoomed()
    {
        QPoint const point(620, 410);
        QPointF const before = m_Canvas->mapToScene(point);
        // Turns of the wheel, and the zoom that comes of each.
        std::pair<int, double> const turns[] = {{240, 1.15 * 1.15}, {6000, 4.0}, {-10800, 0.05}};
        for (auto const& [delta, zoom] : turns) {
            TurnWheel(point, delta);
            QVERIFY(qAbs(Zoom() - zoom) < 0.001);
            QVERIFY(Zoom() < 1 || QLineF(before, m_Canvas->mapToScene(point)).length() < 2);
        }
        m_Canvas->ResetZoom();
        QPointF const middle = View().center();
        m_Canvas->ZoomIn();
        QCOMPARE(Zoom(), 1.25);
        m_Canvas->ZoomOut();
        m_Canvas->ZoomOut();
        QCOMPARE(Zoom(), 0.8);
        QVERIFY(QLineF(middle, View().center()).length() < 3);
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
        m_Canvas->ZoomIn();
        m_Canvas->centerOn(QPointF(200, 100));
        QRectF const before = View();
        Open(kOuter);
        QCOMPARE(Zoom(), 1.0);
        Open(kMain);
        // Scroll bars stand at whole pixels.
        QVERIFY(QLineF(before.topLeft(), View().topLeft()).length() < 2 / Zoom());
        QVERIFY(qAbs(before.width() - View().width()) < 0.001);
    }

    void viewIsPanned()
    {
        for (Qt::MouseButton const button : {Qt::MiddleButton, Qt::LeftButton}) {
            if (button == Qt::LeftButton)
                QTest::keyPress(m_Canvas.get(), Qt::Key_Space);
            QCOMPARE(Cursor(), button == Qt::LeftButton ? Qt::OpenHandCursor : Qt::ArrowCursor);
            QPointF const before = m_Canvas->mapToScene(QPoint(0, 0));
            Drag({300, 300}, {350, 280}, Qt::NoModifier, button);
            QCOMPARE(m_Canvas->mapToScene(QPoint(0, 0)), before + QPointF(-50, 20));
            QTest::keyRelease(m_Canvas.get(), Qt::Key_Space);
            QCOMPARE(Cursor(), Qt::ArrowCursor);
        }
        // The left button does what it did before.
        Drag(At("one"), At("one") + QPoint(20, 0));
        QVERIFY(Nodes().startsWith(QStringLiteral("one 20,0|")));
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

    void hintsAndToolTipsTellWhatIsThere()
    {
        m_Canvas->SetSummary(QStringLiteral("Test"), QStringLiteral("3 solvers"));
        QCOMPARE(ShownTexts(), QString());
        Open(kEmpty);
        QVERIFY(ShownTexts().startsWith(QStringLiteral("Drag nodes here")));
        m_Host->SetCompoundTarget(CompoundAccessor());
        QVERIFY(ShownTexts().startsWith(QStringLiteral("Test|3 solvers\n\nDouble-click")));
        m_Canvas->SetSummary(QString(), QString());
        QCOMPARE(ShownTexts(), QStringLiteral("|Open a library to begin."));
        Open(kMain);
        QCOMPARE(ToolTipAt(ViewPoint(230, -30)), QString());
        QCOMPARE(ToolTipAt(At("one.sum")), QStringLiteral("sum: Float"));
        QCOMPARE(ToolTipAt(At("gone.lost")), QStringLiteral("lost"));
        QCOMPARE(ToolTipAt(At("one")), QStringLiteral("Add"));
        QVERIFY(ToolTipAt(At("gone")).contains(QString::fromStdString(Uid(99))));
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
