// Connections that are drawn from port to port.

#include "canvas.h"

#include "graphedits.h"

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/textencoding.h>

#include <QCursor>
#include <QToolTip>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

bool IsSamePort(PortPick const& left, PortPick const& right)
{
    return left.node == right.node && left.port.name == right.port.name
           && left.isOutput == right.isOutput;
}

} // namespace

void CCanvas::StartConnection(PortPick const& port)
{
    m_PressedPort = port;
    // An input takes a single connection, so dragging from it moves the one that is there.
    if (!port.isOutput)
        TakeOffConnection({port.node, port.port.name});
    StartGesture(eGesture::kConnect);
    FadeUnsuitablePorts();
    DrawConnection(m_PressScenePoint);
}

void CCanvas::TakeOffConnection(GraphEnd const& input)
{
    for (GraphConnection const& connection : m_Body.connections) {
        auto const output = m_Scene.GetPort(connection.from, true);
        if (!(connection.to == input) || !output)
            continue;
        m_PressedPort = output;
        m_TakenOff = connection;
        m_Scene.SetConnectionVisible(connection, false);
        return;
    }
}

bool CCanvas::IsLoop() const
{
    LoopCompoundAccessor loop;
    loop.SetFrom(m_Host.GetLibrary().GetModel(m_Compound, nullptr));
    return loop.IsValid();
}

void CCanvas::FadeUnsuitablePorts()
{
    GraphBody body = m_Body;
    if (m_TakenOff)
        Disconnect(body, *m_TakenOff);
    // Loops are there to feed values back.
    m_LoopNodes = IsLoop() ? std::set<std::string>()
                           : FindFlow(body, m_PressedPort->node, !m_PressedPort->isOutput);
    m_Scene.FadePorts([this](PortPick const& port) {
        QString reason;
        return !IsSamePort(port, *m_PressedPort) && !MakeConnection(port, &reason);
    });
}

void CCanvas::FollowPressedPort()
{
    // The graph has changed: the port may have another place or type, or be gone.
    m_PressedPort =
        m_Scene.GetPort({m_PressedPort->node, m_PressedPort->port.name}, m_PressedPort->isOutput);
    if (m_PressedPort)
        FadeUnsuitablePorts();
    else
        CancelGesture();
}

void CCanvas::StopConnecting()
{
    m_PressedPort.reset();
    if (m_TakenOff)
        m_Scene.SetConnectionVisible(*m_TakenOff, true);
    m_TakenOff.reset();
    m_Scene.HidePreview();
    m_Scene.UnmarkPort();
    m_Scene.FadePorts([](PortPick const&) { return false; });
    QToolTip::hideText();
}

void CCanvas::DrawConnection(QPointF const& scenePoint)
{
    if (!m_PressedPort)
        return;
    QString reason;
    auto const end = m_Scene.FindPortAt(scenePoint);
    bool const isPressed = end && IsSamePort(*end, *m_PressedPort);
    bool const isGood = end && !isPressed && MakeConnection(*end, &reason);
    bool const isRefused = end && !isPressed && !isGood;
    if (end && !isPressed)
        m_Scene.MarkPort({end->node, end->port.name}, end->isOutput,
                         isGood ? ePortMark::kWelcome : ePortMark::kRefused);
    else
        m_Scene.UnmarkPort();
    ShowLooseConnection(*m_PressedPort, isGood ? end->position : scenePoint, isRefused);
    viewport()->setCursor(isRefused ? Qt::ForbiddenCursor : Qt::CrossCursor);
    if (isRefused)
        QToolTip::showText(QCursor::pos(), reason, viewport());
    else
        QToolTip::hideText();
}

void CCanvas::ShowLooseConnection(PortPick const& port, QPointF const& loose, bool isRefused)
{
    m_Scene.ShowPreview(
        port.isOutput ? port.position : loose, port.isOutput ? loose : port.position,
        GetTypeColor(port.port.type, port.port.typeName, m_Scene.GetColors().isDark), isRefused);
}

std::optional<GraphConnection> CCanvas::MakeConnection(PortPick const& end, QString* reason) const
{
    if (end.isOutput == m_PressedPort->isOutput) {
        *reason =
            end.isOutput ? tr("An output goes to an input.") : tr("An input takes an output.");
        return std::nullopt;
    }
    PortPick const& from = end.isOutput ? end : *m_PressedPort;
    PortPick const& to = end.isOutput ? *m_PressedPort : end;
    GraphConnection const connection{{from.node, from.port.name}, {to.node, to.port.name}};
    if (!AreTypesCompatible(from.port.type, from.port.typeName, to.port.type, to.port.typeName)) {
        *reason = tr("%1 does not go into %2.")
                      .arg(nodebrowser::ToQString(from.port.typeName.c_str()),
                           nodebrowser::ToQString(to.port.typeName.c_str()));
        return std::nullopt;
    }
    if (m_LoopNodes.count(end.node)) {
        *reason = tr("The output depends on this node already.");
        return std::nullopt;
    }
    return connection;
}

void CCanvas::FinishConnection(QPointF const& scenePoint)
{
    QString reason;
    auto const end = m_Scene.FindPortAt(scenePoint);
    auto const connection = end && m_PressedPort ? MakeConnection(*end, &reason) : std::nullopt;
    // Copies, because ending the gesture resets both.
    auto const takenOff = m_TakenOff;
    auto const pressed = m_PressedPort;
    CancelGesture();
    bool const isRefused = end && !connection;
    // Nothing changes. If a new connection was dropped on the background, an item is asked for
    // whose node it can end in.
    if (isRefused || connection == takenOff) {
        if (!end && pressed && CanChange() && !m_Scene.FindNodeAt(scenePoint))
            WantNodeAt({scenePoint, {*pressed}});
        return;
    }
    GraphBody body = m_Body;
    if (takenOff)
        Disconnect(body, *takenOff);
    if (connection)
        Connect(body, *connection);
    Commit(body, connection ? "Connect" : "Disconnect");
}

void CCanvas::ShowHover(QPointF const& scenePoint)
{
    auto const port = m_Scene.FindPortAt(scenePoint);
    if (port)
        m_Scene.MarkPort({port->node, port->port.name}, port->isOutput, ePortMark::kHovered);
    else
        m_Scene.UnmarkPort();
}
