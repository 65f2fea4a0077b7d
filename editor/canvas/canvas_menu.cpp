#include "canvas.h"

#include "graphedits.h"

#include <QContextMenuEvent>
#include <QMenu>

void CCanvas::contextMenuEvent(QContextMenuEvent* event)
{
    if (m_Compound.IsNull() || m_Gesture != eGesture::kNone)
        return;
    QPoint const point = FindMenuPoint(*event);
    QPointF const scenePoint = mapToScene(point);
    // The menu runs an event loop in which the graph may change, so its actions hold copies.
    QMenu menu;
    auto const port = m_Scene.FindPortAt(scenePoint);
    auto const node = m_Scene.FindNodeAt(scenePoint);
    auto const connection = m_Scene.FindConnectionAt(scenePoint, GetConnectionReach());
    if (port && (port->node == kInputsNode || port->node == kOutputsNode)) {
        menu.addAction(port->isOutput ? tr("Remove Input") : tr("Remove Output"), this,
                       [this, port] { RemovePort(*port); })
            ->setEnabled(CanChange());
    } else if (node && node->item.size()) {
        FillNodeMenu(menu, *node);
    } else if (!node && connection) {
        m_Scene.SelectConnection(*connection, false);
        menu.addAction(tr("Delete"), this, &CCanvas::DeleteSelection)->setEnabled(CanChange());
    } else {
        FillGraphMenu(menu, scenePoint);
    }
    menu.exec(viewport()->mapToGlobal(point));
}

QPoint CCanvas::FindMenuPoint(QContextMenuEvent const& event)
{
    std::set<std::string> const selected = m_Scene.GetSelectedNodes();
    if (event.reason() != QContextMenuEvent::Keyboard || selected.empty())
        return event.pos();
    QRectF const header(m_Scene.FindNodePosition(*selected.begin()).value_or(QPointF()),
                        QSizeF(kSmallestNodeWidth, kHeaderHeight));
    BringIntoView(header);
    return mapFromScene(header.center());
}

void CCanvas::FillNodeMenu(QMenu& menu, NodeLook const& node)
{
    if (!m_Scene.IsNodeSelected(node.id))
        m_Scene.SelectNodes({node.id});
    if (node.kind == eNodeKind::kCompound) {
        menu.addAction(tr("Open"), this, [this, node] { OpenNode(node); });
        menu.addSeparator();
    }
    bool const canChange = CanChange();
    menu.addAction(tr("Cut"), this, &CCanvas::Cut)->setEnabled(canChange);
    menu.addAction(tr("Copy"), this, &CCanvas::Copy);
    menu.addAction(tr("Duplicate"), this, &CCanvas::Duplicate)->setEnabled(canChange);
    menu.addAction(tr("Delete"), this, &CCanvas::DeleteSelection)->setEnabled(canChange);
}

void CCanvas::FillGraphMenu(QMenu& menu, QPointF const& scenePoint)
{
    // The key is shown here, and belongs to the window's menu.
    menu.addAction(tr("Add Node...") + QStringLiteral("\tTab"), this,
                   [this, scenePoint] { WantNodeAt({scenePoint}); })
        ->setEnabled(CanChange());
    menu.addSeparator();
    QAction* const paste =
        menu.addAction(tr("Paste"), this, [this, scenePoint] { PasteAt(scenePoint); });
    paste->setEnabled(CanPaste());
    menu.addAction(tr("Select All"), this, &CCanvas::SelectAll)->setEnabled(!m_Body.nodes.empty());
    menu.addSeparator();
    menu.addAction(tr("Add Input..."), this, &CCanvas::AddInput)->setEnabled(CanChange());
    menu.addAction(tr("Add Output..."), this, &CCanvas::AddOutput)->setEnabled(CanChange());
    menu.addSeparator();
    menu.addAction(tr("Fit"), this, &CCanvas::Fit);
}
