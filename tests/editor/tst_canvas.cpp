#include "libraryfolder.h"
#include "loggedtest.h"

#include <canvas.h>
#include <graphedits.h>
#include <nodelook.h>

#include <QApplication>
#include <QClipboard>
#include <QDataStream>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <memory>

using namespace tarno::datamodel;

namespace {

// Uids of the library's items.
int const kFloat = 1;
int const kText = 2;
int const kAdd = 3;
int const kSay = 4;
int const kMain = 5;
int const kOuter = 6;
int const kLocked = 7;

QByteArray Quote(int uid)
{
    return '"' + QByteArray::fromStdString(Uid(uid)) + '"';
}

QByteArray Port(char const* name, int type)
{
    return QByteArray("{\"name\": \"") + name + "\", \"type\": " + Quote(type) + '}';
}

QByteArray Ports(QByteArray const& inputs, QByteArray const& outputs)
{
    return ", \"inputs\": [" + inputs + "], \"outputs\": [" + outputs + ']';
}

QByteArray Node(char const* id, int item, int x, int y)
{
    return QByteArray("{\"id\": \"") + id + "\", \"item\": " + Quote(item) + ", \"position\": ["
           + QByteArray::number(x) + ", " + QByteArray::number(y) + "]}";
}

QByteArray MakeMain()
{
    return Ports(Port("value", kFloat), Port("result", kFloat)) + ", \"nodes\": ["
           + Node("one", kAdd, 0, 0) + ',' + Node("two", kAdd, 300, 0) + ','
           + Node("say", kSay, 0, 200) + ',' + Node("gone", 99, 300, 200)
           + "], \"connections\": [{\"from\": [\"gone\", \"lost\"], \"to\": [\"two\", \"b\"]}]";
}

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

/// The canvas over an open library, with the events that a user makes.
class TestCanvas : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        QApplication::clipboard()->clear();
        m_Folder = std::make_unique<LibraryFolder>();
        QByteArray const add = Ports(Port("a", kFloat) + ',' + Port("b", kFloat),
                                     Port("sum", kFloat));
        QByteArray const say = Ports(Port("text", kText), Port("said", kText));
        QByteArrayList const objects{
            Object(kFloat, "type", "Float"),
            Object(kText, "type", "Text"),
            Object(kAdd, "solver", "Add", add.constData()),
            Object(kSay, "solver", "Say", say.constData()),
            Object(kMain, "compound", "Main", MakeMain().constData()),
            Object(kOuter, "compound", "Outer",
                   (", \"nodes\": [" + Node("main", kMain, 0, 0) + ']').constData()),
            Object(kLocked, "compound", "Locked", ", \"readOnly\": true")};
        m_Folder->Write(QStringLiteral("project/all.json"), '[' + objects.join(',') + ']');
        m_Host = std::make_unique<CEmbeddedHost>();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        m_Canvas = std::make_unique<CCanvas>(*m_Host);
        m_Canvas->resize(1000, 700);
        Open(kMain);
        m_Canvas->show();
        m_Canvas->ResetZoom();
    }

    void TearDown() override
    {
        m_Canvas.reset();
        m_Host.reset();
        m_Folder.reset();
    }

private:
    void Open(int uid)
    {
        CompoundAccessor compound;
        compound.SetFrom(m_Host->GetLibrary().GetModel(m_Host->FindItem(Uid(uid)), nullptr));
        m_Host->SetCompoundTarget(compound);
    }

    GraphBody Body(int uid = kMain) const
    {
        return m_Host->GetBody(m_Host->FindItem(Uid(uid)));
    }

    QPointF PositionOf(char const* id) const
    {
        GraphBody const body = Body();
        GraphNode const* const node = FindNode(body, id);
        return node ? node->position : QPointF(-1, -1);
    }

    /// The connection into a port, as text; empty for none.
    std::string SourceOf(char const* node, char const* port) const
    {
        for (GraphConnection const& connection : Body().connections)
            if (connection.to == GraphEnd{node, port})
                return connection.from.node + '.' + connection.from.port;
        return std::string();
    }

    QUndoStack& Stack() const
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    QPoint HeaderOf(char const* id) const
    {
        return m_Canvas->mapFromScene(PositionOf(id) + QPointF(kSmallestNodeWidth / 2.0, 12));
    }

    QPoint PortOf(char const* id, std::size_t port, bool isOutput) const
    {
        return m_Canvas->mapFromScene(PositionOf(id) + GetPortPosition(NodeLook(), port, isOutput));
    }

    void Drag(QPoint const& from, QPoint const& to)
    {
        QWidget* const viewport = m_Canvas->viewport();
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
        MoveMouse((from + to) / 2);
        MoveMouse(to);
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    }

    /// Sent, since the offscreen platform has no mouse to move.
    void MoveMouse(QPoint const& point)
    {
        QMouseEvent event(QEvent::MouseMove, point, m_Canvas->viewport()->mapToGlobal(point),
                          Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Canvas->viewport(), &event);
    }

    void Click(QPoint const& point, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(m_Canvas->viewport(), Qt::LeftButton, modifiers, point);
    }

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

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<CCanvas> m_Canvas;

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

    void connectionsAreDrawnEitherWay()
    {
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        QCOMPARE(SourceOf("two", "a"), std::string("one.sum"));
        QCOMPARE(Stack().undoText(), QStringLiteral("Connect"));
        Stack().undo();
        QCOMPARE(SourceOf("two", "a"), std::string());
        Drag(PortOf("two", 0, false), PortOf("one", 0, true));
        QCOMPARE(SourceOf("two", "a"), std::string("one.sum"));
    }

    void connectionsReplaceWhatWasThere()
    {
        QCOMPARE(SourceOf("two", "b"), std::string("gone.lost"));
        Drag(PortOf("one", 0, true), PortOf("two", 1, false));
        QCOMPARE(SourceOf("two", "b"), std::string("one.sum"));
        QCOMPARE(Body().connections.size(), std::size_t(1));
    }

    void impossibleConnectionsAreNotMade()
    {
        Drag(PortOf("say", 0, true), PortOf("two", 0, false));
        Drag(PortOf("one", 0, true), PortOf("two", 0, true));
        Drag(PortOf("one", 0, true), PortOf("one", 0, false));
        Drag(PortOf("one", 0, true), QPoint(5, 5));
        QCOMPARE(Stack().count(), 0);
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        Drag(PortOf("two", 0, true), PortOf("one", 0, false));
        QCOMPARE(Stack().count(), 1);
    }

    void connectionsAreSelectedAndDeleted()
    {
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        Click((PortOf("one", 0, true) + PortOf("two", 0, false)) / 2);
        QVERIFY(m_Canvas->HasSelection());
        QTest::keyClick(m_Canvas.get(), Qt::Key_Delete);
        QCOMPARE(SourceOf("two", "a"), std::string());
        QCOMPARE(SourceOf("two", "b"), std::string("gone.lost"));
        QCOMPARE(Body().nodes.size(), std::size_t(4));
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
