#ifndef NODEBROWSER_TESTS_CANVASTEST_H
#define NODEBROWSER_TESTS_CANVASTEST_H

#include "libraryfolder.h"
#include "loggedtest.h"

#include <canvas.h>
#include <graphedits.h>
#include <nodelook.h>

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QTest>

#include <memory>

// Uids of the library's items.
int const kFloat = 1;
int const kText = 2;
int const kAdd = 3;
int const kSay = 4;
int const kMain = 5;
int const kOuter = 6;
int const kLocked = 7;
int const kLoop = 8;

inline QByteArray Quote(int uid)
{
    return '"' + QByteArray::fromStdString(Uid(uid)) + '"';
}

inline QByteArray Port(char const* name, int type)
{
    return QByteArray("{\"name\": \"") + name + "\", \"type\": " + Quote(type) + '}';
}

inline QByteArray Ports(QByteArray const& inputs, QByteArray const& outputs)
{
    return ", \"inputs\": [" + inputs + "], \"outputs\": [" + outputs + ']';
}

inline QByteArray Node(char const* id, int item, int x, int y)
{
    return QByteArray("{\"id\": \"") + id + "\", \"item\": " + Quote(item) + ", \"position\": ["
           + QByteArray::number(x) + ", " + QByteArray::number(y) + "]}";
}

inline QByteArray MakeMain()
{
    return Ports(Port("value", kFloat), Port("result", kFloat)) + ", \"nodes\": ["
           + Node("one", kAdd, 0, 0) + ',' + Node("two", kAdd, 300, 0) + ','
           + Node("say", kSay, 0, 200) + ',' + Node("gone", 99, 300, 200)
           + "], \"connections\": [{\"from\": [\"gone\", \"lost\"], \"to\": [\"two\", \"b\"]}]";
}

/// The canvas over an open library, with the events that a user makes.
class CanvasTest : public LoggedTest
{
protected:
    void SetUp() override
    {
        QApplication::clipboard()->clear();
        m_Folder = std::make_unique<LibraryFolder>();
        QByteArray const add =
            Ports(Port("a", kFloat) + ',' + Port("b", kFloat), Port("sum", kFloat));
        QByteArray const say = Ports(Port("text", kText), Port("said", kText));
        QByteArrayList const objects{
            Object(kFloat, "type", "Float"),
            Object(kText, "type", "Text"),
            Object(kAdd, "solver", "Add", add.constData()),
            Object(kSay, "solver", "Say", say.constData()),
            Object(kMain, "compound", "Main", MakeMain().constData()),
            Object(kOuter, "compound", "Outer",
                   (", \"nodes\": [" + Node("main", kMain, 0, 0) + ']').constData()),
            Object(kLocked, "compound", "Locked", ", \"readOnly\": true"),
            Object(kLoop, "compound", "Loop", ", \"loop\": true")};
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

    void Open(int uid)
    {
        tarno::datamodel::CompoundAccessor compound;
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

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<CCanvas> m_Canvas;
};

#endif
