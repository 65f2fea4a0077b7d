#ifndef NODEBROWSER_TESTS_CANVASTEST_H
#define NODEBROWSER_TESTS_CANVASTEST_H

#include "loggedtest.h"

#include <canvas.h>
#include <graphedits.h>
#include <itempayload.h>
#include <libraryfolder.h>

#include <QtWidgets>

// Uids of the library's items, and a point of the canvas where there is nothing.
int const kFloat = 1, kAdd = 3, kSay = 4, kMain = 5, kOuter = 6, kLocked = 7, kLoop = 8,
          kConstant = 9, kEmpty = 10;
QPoint const kNowhere(5, 5);

/// Ports and nodes of "Main", beside an input "value" and an output "result":
///
///     one (Add)    two (Add)
///     say (Say)    gone, without an item, from which a connection leads into two
///
/// and those of other items. `#4` stands for the uid that ends with 4.
inline QByteArray MakeObjects()
{
    QByteArray text = R"([
{"uid": "#1", "kind": "type", "name": "Float"}, {"uid": "#2", "kind": "type", "name": "Text"},
{"uid": "#3", "kind": "solver", "name": "Add", "outputs": [{"name": "sum", "type": "#1"}],
 "inputs": [{"name": "a", "type": "#1"}, {"name": "b", "type": "#1"}]},
{"uid": "#4", "kind": "solver", "name": "Say", "outputs": [{"name": "said", "type": "#2"}],
 "inputs": [{"name": "text", "type": "#2"}]},
{"uid": "#5", "kind": "compound", "name": "Main", "inputs": [{"name": "value", "type": "#1"}],
 "outputs": [{"name": "result", "type": "#1"}],
 "nodes": [{"id": "one", "item": "#3", "position": [0, 0]},
           {"id": "two", "item": "#3", "position": [300, 0]},
           {"id": "say", "item": "#4", "position": [0, 200]},
           {"id": "gone", "item": "#99", "position": [300, 200]}],
 "connections": [{"from": ["gone", "lost"], "to": ["two", "b"]}]},
{"uid": "#6", "kind": "compound", "name": "Outer",
 "nodes": [{"id": "main", "item": "#5", "position": [0, 0]}]},
{"uid": "#7", "kind": "compound", "name": "Locked", "readOnly": true,
 "inputs": [{"name": "value", "type": "#1"}],
 "nodes": [{"id": "one", "item": "#3", "position": [0, 0]}],
 "connections": [{"from": ["in", "value"], "to": ["one", "a"]}]},
{"uid": "#8", "kind": "compound", "name": "Loop", "loop": true},
{"uid": "#9", "kind": "constant", "name": "Pi"}, {"uid": "#10", "kind": "compound", "name": "Empty"}
])";
    for (int const uid : {99, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1})
        text.replace('#' + QByteArray::number(uid), QByteArray::fromStdString(Uid(uid)));
    return text;
}

/// The canvas over an open library, with the events that a user makes.
class CanvasTest : public LoggedTest
{
protected:
    void SetUp() override
    {
        QApplication::clipboard()->clear();
        m_Canvas.reset();
        m_Host.reset();
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(QStringLiteral("project/all.json"), MakeObjects());
        m_Host = std::make_unique<CEmbeddedHost>();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        m_Canvas = std::make_unique<CCanvas>(*m_Host);
        m_Canvas->resize(1000, 700);
        Open(kMain);
        m_Canvas->show();
        m_Canvas->ResetZoom();
    }

    void Open(int uid)
    {
        tarno::datamodel::CompoundAccessor compound;
        compound.SetFrom(m_Host->GetLibrary().GetModel(m_Host->FindItem(Uid(uid)), nullptr));
        m_Host->SetCompoundTarget(compound);
    }

    embeddedhost::GraphBody Body() const
    {
        return m_Host->GetBody(m_Host->GetCompoundTarget().GetItemID());
    }

    /// As another part of the program would.
    void Change(std::function<void(embeddedhost::GraphBody&)> const& change)
    {
        embeddedhost::GraphBody body = Body();
        change(body);
        QVERIFY(m_Host->SetBody(m_Host->GetCompoundTarget().GetItemID(), body, "Elsewhere"));
    }

    /// "one 0,0|two 300,0"
    QString Nodes() const
    {
        QStringList texts;
        for (auto const& [id, item, position] : Body().nodes)
            texts << QString("%1 %2,%3").arg(id.c_str()).arg(position.x()).arg(position.y());
        return texts.join('|');
    }

    /// "one.sum>two.a|say.said>two.b"
    QString Wires() const
    {
        std::string text;
        for (auto const& [from, to] : Body().connections)
            text += '|' + from.node + '.' + from.port + '>' + to.node + '.' + to.port;
        return QString::fromStdString(text).mid(1);
    }

    QUndoStack& Stack() const
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    CGraphScene& Scene() const
    {
        return static_cast<CGraphScene&>(*m_Canvas->scene());
    }

    /// "one.sum"
    static embeddedhost::GraphEnd End(QString const& text)
    {
        return {text.section('.', 0, 0).toStdString(), text.section('.', 1).toStdString()};
    }

    void Connect(char const* from, char const* to)
    {
        Change([&](embeddedhost::GraphBody& body) { ::Connect(body, {End(from), End(to)}); });
    }

    // Points of the viewport.

    QPoint ViewPoint(double x, double y) const
    {
        return m_Canvas->mapFromScene(QPointF(x, y));
    }

    /// The header of a node, or the port "one.sum"; kNowhere without such a node.
    QPoint At(QString const& place) const
    {
        embeddedhost::GraphEnd const end = End(place);
        auto const input = Scene().GetPort(end, false);
        auto const port = input ? input : Scene().GetPort(end, true);
        auto const node = Scene().FindNodePosition(end.node);
        if (!port && !node)
            return kNowhere;
        return m_Canvas->mapFromScene(port ? port->position : *node + QPointF(80, 12));
    }

    QPoint Between(char const* from, char const* to) const
    {
        return (At(from) + At(to)) / 2;
    }

    void Press(QPoint const& point)
    {
        QTest::mousePress(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, point);
    }

    /// Sent, since the offscreen platform has no mouse to move.
    void MoveMouse(QPoint const& point)
    {
        QMouseEvent event(QEvent::MouseMove, point, m_Canvas->viewport()->mapToGlobal(point),
                          Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Canvas->viewport(), &event);
    }

    void Release(QPoint const& point)
    {
        QTest::mouseRelease(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, point);
    }

    void Drag(QPoint const& from, QPoint const& to)
    {
        Press(from);
        MoveMouse((from + to) / 2);
        MoveMouse(to);
        Release(to);
    }

    void Click(QPoint const& point)
    {
        QTest::mouseClick(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, point);
    }

    void DoubleClick(QPoint const& point)
    {
        QTest::mouseDClick(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, point);
        Release(point);
    }

    /// Whether the item is let in over the canvas and down, whatever the events say before.
    bool IsDropped(int uid, QPoint const& point = kNowhere,
                   Qt::DropActions actions = Qt::CopyAction)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << QString::fromStdString(m_Host->FindItem(Uid(uid)).Serialize());
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

    void TypeKey(Qt::Key key)
    {
        QTest::keyClick(m_Canvas.get(), key);
    }

    Qt::CursorShape Cursor() const
    {
        return m_Canvas->viewport()->cursor().shape();
    }

    QImage Picture() const
    {
        return m_Canvas->viewport()->grab().toImage();
    }

    /// The same, or with a little of something else mixed in by smooth edges.
    static bool IsLike(QColor const& color, QColor const& other)
    {
        return qAbs(color.red() - other.red()) + qAbs(color.green() - other.green())
                   + qAbs(color.blue() - other.blue())
               < 130;
    }

    /// With nothing selected the canvas shows what it does when the compound is opened again.
    bool IsAsOpenedAnew()
    {
        Scene().clearSelection();
        MoveMouse(kNowhere);
        QImage const shown = Picture();
        auto const compound = m_Host->GetCompoundTarget();
        Open(kEmpty);
        m_Host->SetCompoundTarget(compound);
        QImage const anew = Picture();
        if (anew == shown)
            return true;
        for (int x = 0; x < anew.width(); ++x)
            for (int y = 0; y < anew.height(); ++y)
                if (!IsLike(shown.pixelColor(x, y), anew.pixelColor(x, y)))
                    return false;
        return true;
    }

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<CCanvas> m_Canvas;
};

#endif
