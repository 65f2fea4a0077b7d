#include "canvastest.h"

#include <QDataStream>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QWheelEvent>

using namespace tarno::datamodel;

namespace {

std::unique_ptr<QMimeData> MakePayload(std::string const& serialized)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << QString::fromStdString(serialized);
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("tarno/toc.key"), bytes);
    return data;
}

} // namespace

/// Nodes: dropped, moved, copied and selected.
class TestCanvas : public CanvasTest
{
    Q_OBJECT

    bool Enters(QMimeData const* data)
    {
        QPoint const point(500, 300);
        QDragEnterEvent enter(point, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(m_Canvas->viewport(), &enter);
        QDragMoveEvent move(point, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        move.accept();
        QApplication::sendEvent(m_Canvas->viewport(), &move);
        return enter.isAccepted() && move.isAccepted();
    }

    void Drop(int uid, QPointF const& scenePoint)
    {
        auto const data = MakePayload(m_Host->FindItem(Uid(uid)).Serialize());
        QVERIFY(Enters(data.get()));
        QDropEvent drop(m_Canvas->mapFromScene(scenePoint), Qt::CopyAction, data.get(),
                        Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Canvas->viewport(), &drop);
    }

private Q_SLOTS:
    void droppedItemsBecomeNodes()
    {
        Drop(kSay, QPointF(253, 471));
        GraphBody const body = Body();
        QCOMPARE(body.nodes.size(), std::size_t(5));
        QCOMPARE(body.nodes.back().item, Uid(kSay));
        // The header's middle under the mouse, snapped.
        QCOMPARE(body.nodes.back().position, QPointF(180, 460));
        QCOMPARE(Stack().undoText(), QStringLiteral("Add Node"));
        QVERIFY(m_Canvas->HasSelection());
        Stack().undo();
        QCOMPARE(Body().nodes.size(), std::size_t(4));
        QVERIFY(!m_Canvas->HasSelection());
        QVERIFY(!m_Host->IsModified());
    }

    void foreignDragsAreRefused()
    {
        QVERIFY(Enters(MakePayload(m_Host->FindItem(Uid(kAdd)).Serialize()).get()));
        QVERIFY(!Enters(MakePayload(m_Host->FindItem(Uid(kFloat)).Serialize()).get()));
        QVERIFY(!Enters(MakePayload("solver:" + Uid(98)).get()));
        QVERIFY(!Enters(MakePayload("compound:" + Uid(kAdd)).get()));
        QMimeData text;
        text.setText(QString::fromStdString(m_Host->FindItem(Uid(kAdd)).Serialize()));
        QVERIFY(!Enters(&text));
        m_Host->SetCompoundTarget(CompoundAccessor());
        QVERIFY(!Enters(MakePayload(m_Host->FindItem(Uid(kAdd)).Serialize()).get()));
    }

    void refusedDropsSayWhy_data()
    {
        QTest::addColumn<int>("compound");
        QTest::addColumn<int>("item");
        QTest::addColumn<QString>("message");
        QTest::newRow("into itself") << kMain << kMain << "\"Main\" cannot be put into itself.";
        QTest::newRow("through its parts")
            << kMain << kOuter << "\"Outer\" cannot be put into \"Main\", which it contains.";
        QTest::newRow("read-only") << kLocked << kAdd << "Locked";
    }

    void refusedDropsSayWhy()
    {
        QFETCH(int, compound);
        QFETCH(int, item);
        QFETCH(QString, message);
        Open(compound);
        std::size_t const before = Body(compound).nodes.size();
        m_Host->GetMessages().ClearLog();
        Drop(item, QPointF(100, 100));
        QCOMPARE(Body(compound).nodes.size(), before);
        QCOMPARE(Stack().count(), 0);
        QStringList const messages = GetMessages(*m_Host);
        QCOMPARE(messages.size(), 1);
        QVERIFY2(messages.first().contains(message), qPrintable(messages.first()));
    }

    void draggedNodesMoveInStepsOfTheGrid()
    {
        Click(HeaderOf("one"));
        Click(HeaderOf("say"), Qt::ControlModifier);
        QPoint const from = HeaderOf("one");
        Drag(from, from + QPoint(33, 58));
        QCOMPARE(PositionOf("one"), QPointF(40, 60));
        QCOMPARE(PositionOf("say"), QPointF(40, 260));
        QCOMPARE(PositionOf("two"), QPointF(300, 0));
        QCOMPARE(Stack().count(), 1);
        QCOMPARE(Stack().undoText(), QStringLiteral("Move Nodes"));
        Stack().undo();
        QCOMPARE(PositionOf("say"), QPointF(0, 200));
        // On the screen too: the node can be picked up where it was.
        Drag(HeaderOf("say"), HeaderOf("say") + QPoint(0, 100));
        QCOMPARE(PositionOf("say"), QPointF(0, 300));
    }

    void clicksMoveNothing()
    {
        Drag(HeaderOf("one"), HeaderOf("one") + QPoint(2, 1));
        QCOMPARE(Stack().count(), 0);
    }

    void escapeCallsAMoveOff()
    {
        QTest::mousePress(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, HeaderOf("one"));
        MoveMouse(HeaderOf("one") + QPoint(100, 100));
        QTest::keyClick(m_Canvas.get(), Qt::Key_Escape);
        QTest::mouseRelease(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 1));
        QCOMPARE(PositionOf("one"), QPointF(0, 0));
        QCOMPARE(Stack().count(), 0);
    }

    void copiesKeepTheirConnections()
    {
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        // A rubber band around the upper two.
        QPoint const corner = m_Canvas->mapFromScene(QPointF(-30, -30));
        Drag(corner, m_Canvas->mapFromScene(QPointF(470, 100)));
        m_Canvas->Copy();
        m_Canvas->Paste();
        QCOMPARE(Body().nodes.size(), std::size_t(6));
        QCOMPARE(PositionOf("one-2"), QPointF(40, 40));
        QCOMPARE(SourceOf("two-2", "a"), std::string("one-2.sum"));
        QCOMPARE(SourceOf("two-2", "b"), std::string());
        QCOMPARE(Stack().undoText(), QStringLiteral("Paste"));
        // The copies are selected.
        m_Canvas->DeleteSelection();
        QCOMPARE(Body().nodes.size(), std::size_t(4));
        QCOMPARE(PositionOf("one"), QPointF(0, 0));
    }

    void pastedNodesAreSeen()
    {
        Click(HeaderOf("one"));
        m_Canvas->Cut();
        QVERIFY(!FindNode(Body(), "one"));
        m_Canvas->Paste();
        m_Canvas->Paste();
        QCOMPARE(PositionOf("one"), QPointF(0, 0));
        QCOMPARE(PositionOf("one-2"), QPointF(40, 40));
        // Far from where they were copied.
        m_Canvas->centerOn(QPointF(3000, 3000));
        m_Canvas->Paste();
        QVERIFY(m_Canvas->viewport()->rect().contains(HeaderOf("one-3")));
    }

    void arrowKeysMoveNodes()
    {
        QTest::keyClick(m_Canvas.get(), Qt::Key_Down);
        QCOMPARE(Stack().count(), 0);
        Click(HeaderOf("two"));
        QTest::keyClick(m_Canvas.get(), Qt::Key_Down);
        QTest::keyClick(m_Canvas.get(), Qt::Key_Left);
        QCOMPARE(PositionOf("two"), QPointF(280, 20));
        QCOMPARE(PositionOf("one"), QPointF(0, 0));
    }

    void nodesAtTheEndOfTheWorldAreFound()
    {
        GraphBody body = Body();
        body.nodes[1].position = QPointF(5e30, -5e30);
        m_Host->SetBody(m_Host->FindItem(Uid(kMain)), body, "Elsewhere");
        m_Canvas->Fit();
        QRectF const view = m_Canvas->mapToScene(m_Canvas->viewport()->rect()).boundingRect();
        QVERIFY(view.contains(PositionOf("gone")));
        // A copy has nowhere to go.
        m_Canvas->SelectAll();
        m_Canvas->Duplicate();
        QCOMPARE(Body().nodes.size(), std::size_t(8));
    }

    void pastingIntoAPartOfItselfIsRefused()
    {
        Open(kOuter);
        m_Canvas->SelectAll();
        m_Canvas->Copy();
        Open(kMain);
        m_Canvas->Paste();
        QCOMPARE(Stack().count(), 0);
        QVERIFY(GetMessages(*m_Host).last().contains(QStringLiteral("itself")));
    }

    void doubleClicksOpenCompounds()
    {
        Open(kOuter);
        QPoint const header = m_Canvas->mapFromScene(QPointF(80, 12));
        QTest::mouseDClick(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, header);
        QCOMPARE(m_Host->GetCompoundTarget().GetItemID(), m_Host->FindItem(Uid(kMain)));
        QTest::mouseRelease(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, header);
        QCOMPARE(Stack().count(), 0);
    }

    void selectionSurvivesChangesFromOutside()
    {
        QSignalSpy changed(m_Canvas.get(), &CCanvas::SelectionChanged);
        Click(HeaderOf("two"));
        QTRY_VERIFY(changed.count() > 0);
        GraphBody body = Body();
        RemoveNodes(body, {"one"});
        body.nodes.front().position += QPointF(20, 20);
        m_Host->SetBody(m_Host->FindItem(Uid(kMain)), body, "Elsewhere");
        QVERIFY(m_Canvas->HasSelection());
        m_Canvas->DeleteSelection();
        QVERIFY(!FindNode(Body(), "two"));
        QVERIFY(FindNode(Body(), "say"));
        QApplication::processEvents();
        changed.clear();
        m_Canvas->SelectAll();
        QApplication::processEvents();
        // Not of each node: whoever listens may look at all of them.
        QCOMPARE(changed.count(), 1);
    }

    void nodesWithoutItemAreKept()
    {
        Drag(HeaderOf("gone"), HeaderOf("gone") + QPoint(0, 60));
        QCOMPARE(PositionOf("gone"), QPointF(300, 260));
        QCOMPARE(SourceOf("two", "b"), std::string("gone.lost"));
        // Its port is known from the connection alone, and can be used.
        Drag(PortOf("gone", 0, true), PortOf("two", 0, false));
        QCOMPARE(SourceOf("two", "a"), std::string("gone.lost"));
    }

    void wheelZoomsAtTheMouse()
    {
        QPointF const point(620, 410);
        QPointF const before = m_Canvas->mapToScene(point.toPoint());
        for (int notch = 0; notch < 4; ++notch) {
            QWheelEvent event(point, m_Canvas->viewport()->mapToGlobal(point.toPoint()), QPoint(),
                              QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                              false);
            QApplication::sendEvent(m_Canvas->viewport(), &event);
        }
        QVERIFY(m_Canvas->transform().m11() > 1.5);
        QVERIFY(QLineF(before, m_Canvas->mapToScene(point.toPoint())).length() < 3);
    }

    void compoundsAreLeftAndFoundAlike()
    {
        m_Canvas->ZoomIn();
        m_Canvas->centerOn(QPointF(200, 100));
        QTransform const before = m_Canvas->viewportTransform();
        Open(kOuter);
        QVERIFY(m_Canvas->viewportTransform() != before);
        Open(kMain);
        QTransform const after = m_Canvas->viewportTransform();
        QCOMPARE(after.m11(), before.m11());
        // Scroll bars stand at whole pixels.
        QVERIFY(std::abs(after.dx() - before.dx()) <= 1);
        QVERIFY(std::abs(after.dy() - before.dy()) <= 1);
    }

    void middleButtonPans()
    {
        QPointF const before = m_Canvas->mapToScene(QPoint(0, 0));
        QTest::mousePress(m_Canvas->viewport(), Qt::MiddleButton, Qt::NoModifier, {300, 300});
        MoveMouse({350, 280});
        QTest::mouseRelease(m_Canvas->viewport(), Qt::MiddleButton, Qt::NoModifier, {350, 280});
        QCOMPARE(m_Canvas->mapToScene(QPoint(0, 0)), before + QPointF(-50, 20));
        QCOMPARE(Stack().count(), 0);
    }

    void gesturesOutliveTheirGraph_data()
    {
        QTest::addColumn<bool>("onPort");
        QTest::newRow("moving nodes") << false;
        QTest::newRow("drawing a connection") << true;
    }

    void gesturesOutliveTheirGraph()
    {
        QFETCH(bool, onPort);
        QPoint const from = onPort ? PortOf("one", 0, true) : HeaderOf("one");
        QTest::mousePress(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, from);
        MoveMouse(from + QPoint(50, 50));
        GraphBody body = Body();
        RemoveNodes(body, {"one"});
        m_Host->SetBody(m_Host->FindItem(Uid(kMain)), body, "Elsewhere");
        MoveMouse(from + QPoint(70, 70));
        m_Host->CloseLibrary();
        MoveMouse(from + QPoint(90, 90));
        QTest::mouseRelease(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier,
                            from + QPoint(90, 90));
        QVERIFY(!m_Canvas->HasSelection());
    }
};

NODEBROWSER_TEST_MAIN(TestCanvas)
#include "tst_canvas.moc"
