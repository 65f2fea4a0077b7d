#ifndef NODEBROWSER_TESTS_CANVASTEST_H
#define NODEBROWSER_TESTS_CANVASTEST_H

#include "testprogram.h"

#include <canvas.h>
#include <embeddedhost.h>
#include <graphedits.h>
#include <libraryfolder.h>

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>

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
int const kConstant = 9;
int const kEmpty = 10;

/// Ports and nodes of "Main", beside an input "value" and an output "result":
///
///     one (Add)    two (Add)
///     say (Say)    gone, without an item, from which a connection leads into two
///
/// and those of other items. `#4` stands for the uid that ends with 4.
inline QByteArray MakeObjects()
{
    QByteArrayList const objects{
        Object(kFloat, "type", "Float"),
        Object(kText, "type", "Text"),
        Object(kAdd, "solver", "Add",
               R"(, "inputs": [{"name": "a", "type": "#1"}, {"name": "b", "type": "#1"}],
                    "outputs": [{"name": "sum", "type": "#1"}])"),
        Object(kSay, "solver", "Say",
               R"(, "inputs": [{"name": "text", "type": "#2"}],
                    "outputs": [{"name": "said", "type": "#2"}])"),
        Object(kMain, "compound", "Main",
               R"(, "inputs": [{"name": "value", "type": "#1"}],
                    "outputs": [{"name": "result", "type": "#1"}],
                    "nodes": [{"id": "one", "item": "#3", "position": [0, 0]},
                              {"id": "two", "item": "#3", "position": [300, 0]},
                              {"id": "say", "item": "#4", "position": [0, 200]},
                              {"id": "gone", "item": "#99", "position": [300, 200]}],
                    "connections": [{"from": ["gone", "lost"], "to": ["two", "b"]}])"),
        Object(kOuter, "compound", "Outer",
               R"(, "nodes": [{"id": "main", "item": "#5", "position": [0, 0]}])"),
        Object(kLocked, "compound", "Locked", ", \"readOnly\": true"),
        Object(kLoop, "compound", "Loop", ", \"loop\": true"),
        Object(kConstant, "constant", "Pi"),
        Object(kEmpty, "compound", "Empty")};
    QByteArray text = '[' + objects.join(',') + ']';
    for (int const uid : {99, 5, 4, 3, 2, 1})
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

    GraphBody Body() const
    {
        return m_Host->GetBody(m_Host->GetCompoundTarget().GetItemID());
    }

    /// As another part of the program would.
    template <class Function>
    void Change(Function const& change)
    {
        GraphBody body = Body();
        change(body);
        QVERIFY(m_Host->SetBody(m_Host->GetCompoundTarget().GetItemID(), body, "Elsewhere"));
    }

    /// "one 0,0|two 300,0"
    QString Nodes() const
    {
        QStringList texts;
        for (GraphNode const& node : Body().nodes)
            texts << QStringLiteral("%1 %2,%3")
                         .arg(QString::fromStdString(node.id))
                         .arg(node.position.x())
                         .arg(node.position.y());
        return texts.join('|');
    }

    /// "one.sum>two.a|say.said>two.b"
    QString Wires() const
    {
        QStringList texts;
        for (auto const& [from, to] : Body().connections)
            texts << QString::fromStdString(from.node + '.' + from.port + '>' + to.node + '.'
                                            + to.port);
        return texts.join('|');
    }

    QUndoStack& Stack() const
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    CGraphScene const& Scene() const
    {
        return static_cast<CGraphScene const&>(*m_Canvas->scene());
    }

    /// "one.sum"
    static GraphEnd End(QString const& text)
    {
        return {text.section('.', 0, 0).toStdString(), text.section('.', 1).toStdString()};
    }

    void Connect(char const* from, char const* to)
    {
        Change([&](GraphBody& body) { ::Connect(body, {End(from), End(to)}); });
    }

    // Points of the viewport.

    QPoint ViewPoint(double x, double y) const
    {
        return m_Canvas->mapFromScene(QPointF(x, y));
    }

    QPoint HeaderOf(char const* id) const
    {
        QPointF const topLeft = Scene().FindNodePosition(id).value_or(QPointF(-999, -999));
        return m_Canvas->mapFromScene(topLeft + QPointF(80, 12));
    }

    /// A place without anything for a port that is not there.
    QPoint PortOf(QString const& end) const
    {
        auto const input = Scene().GetPort(End(end), false);
        auto const port = input ? input : Scene().GetPort(End(end), true);
        return port ? m_Canvas->mapFromScene(port->position) : QPoint(5, 5);
    }

    void Press(QPoint const& point, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mousePress(m_Canvas->viewport(), button, modifiers, point);
    }

    /// Sent, since the offscreen platform has no mouse to move.
    void MoveMouse(QPoint const& point)
    {
        QMouseEvent event(QEvent::MouseMove, point, m_Canvas->viewport()->mapToGlobal(point),
                          Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Canvas->viewport(), &event);
    }

    void Release(QPoint const& point, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(m_Canvas->viewport(), button, Qt::NoModifier, point);
    }

    void Drag(QPoint const& from, QPoint const& to,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        Press(from, Qt::LeftButton, modifiers);
        MoveMouse((from + to) / 2);
        MoveMouse(to);
        Release(to);
    }

    void Click(QPoint const& point, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(m_Canvas->viewport(), Qt::LeftButton, modifiers, point);
    }

    void DoubleClick(QPoint const& point)
    {
        QTest::mouseDClick(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, point);
        Release(point);
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

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<CCanvas> m_Canvas;
};

#endif
