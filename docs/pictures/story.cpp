// Renders the frames of the moving picture of the documentation: docsstory LIBRARY FOLDER. A node
// is searched and added, a connection is let go over nothing and asks for its node, and two nodes
// are connected.

#include <canvas.h>
#include <mainwindow.h>
#include <quickadd.h>
#include <windowpicture.h>

#include <embeddedhost/embeddedhost.h>
#include <palette/nodepalette.h>

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

#include <cstdio>
#include <stdexcept>

using namespace tarno::datamodel;

using namespace embeddedhost;

namespace {

/// Of the window, in pixels.
QSize const kSize(860, 440);
/// In frames: how long a stop lasts, and a way of the mouse.
int const kStop = 8;
int const kSteps = 7;
/// From a port to where a connection is let go, in the scene.
QPointF const kAside(120, -30);

class Story
{
public:
    Story(CEmbeddedHost& host, QString const& folder)
        : m_Window(host)
        , m_Canvas(*m_Window.findChild<CCanvas*>())
        , m_QuickAdd(*m_Window.findChild<CQuickAdd*>())
        , m_Folder(folder)
    {
        SaveWindowPicture(m_Window, kSize, m_Folder.filePath(QStringLiteral("first.png")));
        m_Pointer = QPoint(kSize.width() / 2, kSize.height() * 3 / 4);
    }

    void Tell()
    {
        QLineEdit& search = *m_Window.findChild<QDockWidget*>()->findChild<QLineEdit*>();
        Show(kStop);
        search.setFocus();
        Type(search, QStringLiteral("noise im"));
        Enter(search);
        MoveNode("noise-image", QPoint(-170, -70));
        GraphEnd const image = {"noise-image", "image"};
        Drag(At(image, true), At(image, true) + m_Canvas.transform().map(kAside).toPoint());
        QLineEdit& popup = *m_QuickAdd.findChild<QLineEdit*>();
        Type(popup, QStringLiteral("tint"));
        Enter(popup);
        search.setFocus();
        search.clear();
        Type(search, QStringLiteral("rand col"));
        Enter(search);
        MoveNode("random-colour", QPoint(-170, 60));
        Drag(At({"random-colour", "colour"}, true), At({"tint-image", "colour"}, false));
        Show(2 * kStop);
    }

private:
    CGraphScene& Scene() const
    {
        return static_cast<CGraphScene&>(*m_Canvas.scene());
    }

    /// The port in the viewport.
    QPoint At(GraphEnd const& end, bool isOutput) const
    {
        auto const port = Scene().GetPort(end, isOutput);
        if (!port)
            throw std::runtime_error("there is no port " + end.port + " of " + end.node);
        return m_Canvas.mapFromScene(port->position);
    }

    void MoveNode(char const* id, QPoint const& way)
    {
        auto const position = Scene().FindNodePosition(id);
        if (!position)
            throw std::runtime_error(std::string("there is no node ") + id);
        QPoint const header = m_Canvas.mapFromScene(
            *position + QPointF(kSmallestNodeWidth / 2.0, kHeaderHeight / 2.0));
        Drag(header, header + way);
    }

    void Type(QLineEdit& field, QString const& text)
    {
        for (QChar const letter : text) {
            Press(field, 0, letter);
            Show(2);
        }
        Show(kStop);
    }

    void Enter(QLineEdit& field)
    {
        Press(field, Qt::Key_Return);
        Show(kStop);
    }

    static void Press(QLineEdit& field, int key, QString const& text = QString())
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&field, &press);
        QApplication::processEvents();
    }

    /// Points of the viewport.
    void Drag(QPoint const& from, QPoint const& to)
    {
        Move(from, Qt::NoButton);
        Send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        Move(to, Qt::LeftButton);
        Send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
        Show(kStop);
    }

    void Move(QPoint const& to, Qt::MouseButtons buttons)
    {
        QPoint const from = m_Canvas.viewport()->mapFrom(&m_Window, m_Pointer);
        for (int step = 1; step <= kSteps; ++step) {
            Send(QEvent::MouseMove, from + (to - from) * step / kSteps, Qt::NoButton, buttons);
            Show(1);
        }
    }

    void Send(QEvent::Type type, QPoint const& point, Qt::MouseButton button,
              Qt::MouseButtons buttons)
    {
        m_Pointer = m_Canvas.viewport()->mapTo(&m_Window, point);
        QMouseEvent event(type, point, m_Canvas.viewport()->mapToGlobal(point), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(m_Canvas.viewport(), &event);
        QApplication::processEvents();
    }

    void Show(int frames)
    {
        QApplication::processEvents();
        QPixmap picture = m_Window.grab();
        QPainter painter(&picture);
        if (m_QuickAdd.isVisible())
            painter.drawPixmap(m_Window.mapFromGlobal(m_QuickAdd.pos()), m_QuickAdd.grab());
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::white);
        painter.setBrush(Qt::black);
        painter.drawPolygon(
            QPolygon({{0, 0}, {0, 17}, {4, 13}, {7, 19}, {10, 18}, {7, 12}, {12, 12}})
                .translated(m_Pointer));
        painter.end();
        for (int frame = 0; frame < frames; ++frame) {
            QString const name =
                QStringLiteral("frame%1.png").arg(m_Frame++, 4, 10, QLatin1Char('0'));
            if (!picture.save(m_Folder.filePath(name)))
                throw std::runtime_error(name.toStdString() + " cannot be written");
        }
    }

    CMainWindow m_Window;
    CCanvas& m_Canvas;
    CQuickAdd& m_QuickAdd;
    QDir const m_Folder;
    /// In the window.
    QPoint m_Pointer;
    int m_Frame = 0;
};

void Render(QString const& library, QString const& folder)
{
    PrepareForPictures();
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    CEmbeddedHost host;
    host.SetRevisionControlEnabled(false);
    if (!host.OpenLibrary(library))
        throw std::runtime_error("the library cannot be opened");
    ItemID const id = CompoundModifierAccessor().CreateAndSetFromNewCompound(
        host.GetLibrary(), "Story", false, "", "", &host.GetCommandManager());
    CompoundAccessor compound;
    compound.SetFrom(host.GetLibrary().GetModel(id, nullptr));
    host.SetCompoundTarget(compound);
    Story(host, folder).Tell();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "docsstory: a library and a folder for the frames are needed\n");
        return 1;
    }
    try {
        Render(QApplication::arguments()[1], QApplication::arguments()[2]);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "docsstory: %s\n", error.what());
        return 1;
    }
    return 0;
}
