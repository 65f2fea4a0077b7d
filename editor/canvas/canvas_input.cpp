// Mouse and keyboard on the canvas. Only ids are kept between events: the graph
// may change under a gesture.

#include "canvas.h"

#include <nodebrowser/textencoding.h>

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>

#include <cmath>

using namespace embeddedhost;

namespace {

/// How near to a connection a press has to be, in pixels.
double const kConnectionReach = 6;
/// The zoom of one notch of a wheel, which turns by 120.
double const kNotchZoom = 1.15;
double const kNotch = 120;

QPoint PositionOf(QWheelEvent const* event)
{
    return event->position().toPoint();
}

bool IsAdding(QMouseEvent const* event)
{
    return event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
}

QString DescribePort(PortPick const& pick)
{
    QString const name = QString::fromStdString(pick.port.name);
    QString const type = nodebrowser::ToQString(pick.port.typeName.c_str());
    return type.isEmpty() ? name : QStringLiteral("%1: %2").arg(name, type);
}

} // namespace

void CCanvas::mousePressEvent(QMouseEvent* event)
{
    if (m_Gesture != eGesture::kNone) {
        // Another button calls the gesture off.
        CancelGesture();
        return;
    }
    m_PressPoint = event->pos();
    m_PressScenePoint = mapToScene(m_PressPoint);
    bool const isLeft = event->button() == Qt::LeftButton;
    if (event->button() == Qt::MiddleButton || (isLeft && m_IsSpaceHeld))
        StartGesture(eGesture::kPan);
    else if (isLeft && !m_Compound.IsNull())
        PressLeft(event);
}

void CCanvas::PressLeft(QMouseEvent* event)
{
    m_Scene.UnmarkPort();
    // Ports first: their reach goes beyond the frame of their node, and connections end in them.
    if (auto const port = m_Scene.FindPortAt(m_PressScenePoint)) {
        StartConnection(*port);
    } else if (auto const node = m_Scene.FindNodeAt(m_PressScenePoint)) {
        PressNode(*node, IsAdding(event));
    } else if (auto const connection =
                   m_Scene.FindConnectionAt(m_PressScenePoint, GetConnectionReach())) {
        m_Scene.SelectConnection(*connection, IsAdding(event));
    } else {
        if (!IsAdding(event))
            m_Scene.clearSelection();
        m_SelectedBefore = m_Scene.GetSelectedNodes();
        StartGesture(eGesture::kRubberBand);
    }
}

void CCanvas::PressNode(NodeLook const& node, bool isAdded)
{
    // The nodes of the compound's own ports cannot be selected, and are moved alone.
    if (node.id == kInputsNode || node.id == kOutputsNode) {
        m_Scene.clearSelection();
        m_MovedFrom = {{node.id, node.position}};
        StartGesture(eGesture::kMoveNodes);
        return;
    }
    if (isAdded)
        m_Scene.ToggleNode(node.id);
    else if (!m_Scene.IsNodeSelected(node.id))
        m_Scene.SelectNodes({node.id});
    m_MovedFrom.clear();
    for (std::string const& id : m_Scene.GetSelectedNodes())
        if (auto const position = m_Scene.FindNodePosition(id))
            m_MovedFrom[id] = *position;
    // Not for a node that this press has just deselected.
    if (m_Scene.IsNodeSelected(node.id))
        StartGesture(eGesture::kMoveNodes);
}

double CCanvas::GetConnectionReach() const
{
    return kConnectionReach / transform().m11();
}

void CCanvas::StartGesture(eGesture gesture)
{
    m_Gesture = gesture;
    // Releasing the space key after a gesture must not add a node.
    m_IsSpaceUsed = true;
    if (gesture == eGesture::kPan)
        viewport()->setCursor(Qt::ClosedHandCursor);
}

void CCanvas::CancelGesture()
{
    eGesture const gesture = m_Gesture;
    m_Gesture = eGesture::kNone;
    m_RubberBand->hide();
    if (gesture == eGesture::kConnect)
        StopConnecting();
    if (gesture == eGesture::kMoveNodes)
        m_Scene.ShowNodesAt(m_MovedFrom);
    if (m_IsSpaceHeld)
        viewport()->setCursor(Qt::OpenHandCursor);
    else
        viewport()->unsetCursor();
}

void CCanvas::mouseMoveEvent(QMouseEvent* event)
{
    QPointF const scenePoint = mapToScene(event->pos());
    switch (m_Gesture) {
    case eGesture::kNone:
        ShowHover(scenePoint);
        break;
    case eGesture::kPan:
        Pan(event->pos());
        break;
    case eGesture::kMoveNodes:
        MoveNodes(scenePoint);
        break;
    case eGesture::kRubberBand:
        StretchRubberBand(event->pos());
        break;
    case eGesture::kConnect:
        DrawConnection(scenePoint);
        break;
    }
}

void CCanvas::Pan(QPoint const& viewPoint)
{
    QPoint const shift = viewPoint - m_PressPoint;
    m_PressPoint = viewPoint;
    m_IsFitted = false;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - shift.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - shift.y());
}

void CCanvas::MoveNodes(QPointF const& scenePoint)
{
    QPointF const shift = scenePoint - m_PressScenePoint;
    std::map<std::string, QPointF> positions;
    for (auto const& from : m_MovedFrom)
        positions[from.first] = SnapToGrid(from.second + shift);
    // A click with an unsteady hand leaves nodes that are off the grid alone.
    bool const isFar =
        (shift * transform().m11()).manhattanLength() >= QApplication::startDragDistance();
    m_Scene.ShowNodesAt(isFar ? positions : m_MovedFrom);
}

void CCanvas::StretchRubberBand(QPoint const& viewPoint)
{
    m_RubberBand->setGeometry(QRect(m_PressPoint, viewPoint).normalized());
    m_RubberBand->show();
    m_Scene.SelectNodesIn(QRectF(m_PressScenePoint, mapToScene(viewPoint)).normalized(),
                          m_SelectedBefore);
}

void CCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    eGesture const gesture = m_Gesture;
    QPointF const scenePoint = mapToScene(event->pos());
    if (gesture == eGesture::kMoveNodes)
        FinishMove(scenePoint);
    else if (gesture == eGesture::kConnect)
        FinishConnection(scenePoint);
    else
        CancelGesture();
}

void CCanvas::FinishMove(QPointF const& scenePoint)
{
    GraphBody body = m_Body;
    bool isMoved = false;
    auto const move = [&](std::string const& id, auto& position) {
        auto const from = m_MovedFrom.find(id);
        auto const shown = m_Scene.FindNodePosition(id);
        if (from == m_MovedFrom.end() || !shown || *shown == from->second)
            return;
        position = *shown;
        isMoved = true;
    };
    for (GraphNode& node : body.nodes)
        move(node.id, node.position);
    move(kInputsNode, body.inputsPosition);
    move(kOutputsNode, body.outputsPosition);
    // Before the commit: a listener to it may open another compound, which cancels a gesture.
    m_Gesture = eGesture::kNone;
    if (isMoved && m_MovedFrom.size() == 1)
        InsertMovedNode(body, m_MovedFrom.begin()->first, scenePoint);
    if (isMoved)
        Commit(body, m_MovedFrom.size() == 1 ? "Move Node" : "Move Nodes");
}

bool CCanvas::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QGraphicsView::viewportEvent(event);
    QHelpEvent const* const help = static_cast<QHelpEvent*>(event);
    QPointF const scenePoint = mapToScene(help->pos());
    QString text;
    if (auto const port = m_Scene.FindPortAt(scenePoint))
        text = DescribePort(*port);
    else if (auto const node = m_Scene.FindNodeAt(scenePoint))
        text = node->kind == eNodeKind::kMissing
                   ? tr("The library has no item %1.").arg(QString::fromStdString(node->item))
                   : node->title;
    // An empty text hides the tool tip.
    QToolTip::showText(help->globalPos(), text, viewport());
    return true;
}

void CCanvas::mouseDoubleClickEvent(QMouseEvent* event)
{
    QPointF const scenePoint = mapToScene(event->pos());
    auto const node = m_Scene.FindNodeAt(scenePoint);
    bool const isOnPort = m_Scene.FindPortAt(scenePoint).has_value();
    if (event->button() == Qt::LeftButton && node && !isOnPort
        && node->kind == eNodeKind::kCompound)
        OpenNode(*node);
    else if (event->button() == Qt::LeftButton && CanChange() && !node && !isOnPort
             && !m_Scene.FindConnectionAt(scenePoint, GetConnectionReach()))
        WantNodeAt({scenePoint});
    else
        // The toolkit sends the second of two quick presses as a double click only.
        mousePressEvent(event);
}

void CCanvas::wheelEvent(QWheelEvent* event)
{
    double const delta = event->angleDelta().y();
    event->accept();
    if (delta == 0)
        return;
    QPoint const viewPoint = PositionOf(event);
    QPointF const before = mapToScene(viewPoint);
    ScaleTo(transform().m11() * std::pow(kNotchZoom, delta / kNotch));
    // The point under the mouse stays there.
    QPointF const moved = mapFromScene(before) - viewPoint;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + qRound(moved.x()));
    verticalScrollBar()->setValue(verticalScrollBar()->value() + qRound(moved.y()));
}

void CCanvas::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        m_IsSpaceHeld = true;
        m_IsSpaceUsed = m_Gesture != eGesture::kNone;
        if (m_Gesture == eGesture::kNone)
            viewport()->setCursor(Qt::OpenHandCursor);
    } else if (event->key() == Qt::Key_Escape) {
        CancelGesture();
        m_Scene.clearSelection();
    } else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
        DeleteSelection();
    } else if (!Nudge(event->key())) {
        // The base class would scroll by the arrow keys, and hand on the others.
        QWidget::keyPressEvent(event);
    }
}

bool CCanvas::Nudge(int key)
{
    std::map<int, QPointF> const shifts{{Qt::Key_Left, {-kGridPitch, 0}},
                                        {Qt::Key_Right, {kGridPitch, 0}},
                                        {Qt::Key_Up, {0, -kGridPitch}},
                                        {Qt::Key_Down, {0, kGridPitch}}};
    auto const shift = shifts.find(key);
    std::set<std::string> const ids = m_Scene.GetSelectedNodes();
    if (shift == shifts.end() || ids.empty() || m_Gesture != eGesture::kNone)
        return false;
    GraphBody body = m_Body;
    for (GraphNode& node : body.nodes)
        if (ids.count(node.id))
            node.position += shift->second;
    Commit(body, ids.size() == 1 ? "Move Node" : "Move Nodes");
    return true;
}

void CCanvas::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space || event->isAutoRepeat()) {
        QWidget::keyReleaseEvent(event);
        return;
    }
    bool const isTapped = m_IsSpaceHeld && !m_IsSpaceUsed;
    m_IsSpaceHeld = false;
    if (m_Gesture == eGesture::kNone)
        viewport()->unsetCursor();
    if (isTapped)
        WantNode();
}

void CCanvas::focusOutEvent(QFocusEvent* event)
{
    // The key's release goes to the widget that has the focus now.
    m_IsSpaceHeld = false;
    CancelGesture();
    QGraphicsView::focusOutEvent(event);
}
