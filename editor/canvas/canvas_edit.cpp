// Changes that are made to the compound.

#include "canvas.h"

#include "graphclipboard.h"
#include "graphedits.h"

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/typeselector.h>

#include <QApplication>
#include <QClipboard>
#include <QInputDialog>

#include <algorithm>
#include <cmath>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

/// How far beside the originals copies are put.
QPointF const kPasteShift(2 * kGridPitch, 2 * kGridPitch);
/// The area around a new port that is brought into view, so that its name can be read.
QMarginsF const kPortMargins(kSmallestNodeWidth, kPortRowHeight, kSmallestNodeWidth,
                             kPortRowHeight);

/// The first multiple of kPasteShift, from 0, by which the point can be moved without meeting the
/// position of a node.
QPointF FindFreeShift(GraphBody const& body, QPointF const& point)
{
    double const count = static_cast<double>(body.nodes.size());
    std::set<int> taken;
    for (GraphNode const& node : body.nodes) {
        double const step = std::round((node.position - point).x() / kPasteShift.x());
        if (step >= 0 && step <= count && node.position == point + step * kPasteShift)
            taken.insert(static_cast<int>(step));
    }
    int step = 0;
    while (taken.count(step))
        ++step;
    return step * kPasteShift;
}

QPointF GetTopLeft(std::vector<GraphNode> const& nodes)
{
    QPointF topLeft = nodes.front().position;
    for (GraphNode const& node : nodes)
        topLeft = QPointF(std::min(topLeft.x(), node.position.x()),
                          std::min(topLeft.y(), node.position.y()));
    return topLeft;
}

} // namespace

bool CCanvas::Commit(GraphBody const& body, char const* text)
{
    QPointer<CCanvas> const guard(this);
    m_IsFresh = false;
    bool const isDone = m_Host.SetBody(m_Compound, body, text);
    // A refused change sends no notification, so the preview of it is removed here.
    if (guard && !m_IsFresh)
        Refresh();
    return isDone && guard;
}

bool CCanvas::CommitNewNodes(GraphBody const& body, std::set<std::string> const& ids,
                             char const* text)
{
    if (!Commit(body, text))
        return false;
    m_Scene.SelectNodes(ids);
    if (auto const position = m_Scene.FindNodePosition(*ids.begin()))
        BringIntoView(QRectF(*position, QSizeF(kSmallestNodeWidth, kHeaderHeight)));
    return true;
}

void CCanvas::Copy()
{
    PutOnClipboard();
}

bool CCanvas::PutOnClipboard()
{
    GraphBody const copy = CopyNodes(m_Body, m_Scene.GetSelectedNodes());
    if (copy.nodes.empty())
        return false;
    QMimeData* const data = MakeClipboardData(copy);
    if (data)
        QApplication::clipboard()->setMimeData(data);
    else
        m_Host.GetMessages().Post(
            eSeverity::kWarning,
            tr("%L1 nodes are too many for the clipboard.").arg(copy.nodes.size()));
    return data;
}

void CCanvas::Cut()
{
    // Taken before the clipboard changes: its listeners may change the selection.
    std::set<std::string> const ids = m_Scene.GetSelectedNodes();
    if (!PutOnClipboard())
        return;
    GraphBody body = m_Body;
    RemoveNodes(body, ids);
    Commit(body, "Cut");
}

void CCanvas::Duplicate()
{
    GraphBody const copy = CopyNodes(m_Body, m_Scene.GetSelectedNodes());
    if (!copy.nodes.empty())
        AddCopy(copy, GetTopLeft(copy.nodes), "Duplicate");
}

bool CCanvas::CanCopy() const
{
    return m_Scene.IsAnyNodeSelected();
}

bool CCanvas::CanChange() const
{
    return !m_Compound.IsNull() && !m_Host.GetLibrary().ItemIsReadOnly(m_Compound);
}

bool CCanvas::CanPaste() const
{
    return CanChange() && m_IsNodeCopied;
}

void CCanvas::LookAtClipboard()
{
    m_IsNodeCopied = HasClipboardNodes(QApplication::clipboard()->mimeData());
}

void CCanvas::Paste()
{
    bool const isUnderMouse = viewport()->underMouse();
    PasteAt(isUnderMouse ? std::make_optional(mapToScene(viewport()->mapFromGlobal(QCursor::pos())))
                         : std::nullopt);
}

void CCanvas::PasteAt(std::optional<QPointF> const& scenePoint)
{
    QString reason;
    GraphBody const copy = ReadClipboardData(QApplication::clipboard()->mimeData(), &reason);
    if (m_Compound.IsNull())
        return;
    if (copy.nodes.empty()) {
        m_Host.GetMessages().Post(eSeverity::kWarning,
                                  tr("No nodes can be pasted from the clipboard: %1.").arg(reason));
        return;
    }
    std::set<std::string> items;
    for (GraphNode const& node : copy.nodes)
        items.insert(node.item);
    if (!CheckContainment(items))
        return;
    QRectF const view = mapToScene(viewport()->rect()).boundingRect();
    QPointF const topLeft = GetTopLeft(copy.nodes);
    AddCopy(copy,
            scenePoint               ? *scenePoint
            : view.contains(topLeft) ? topLeft
                                     : view.center(),
            "Paste");
}

void CCanvas::AddCopy(GraphBody const& copy, QPointF const& scenePoint, char const* text)
{
    QPointF offset = SnapToGrid(scenePoint - GetTopLeft(copy.nodes));
    // Nodes right on top of others would not be seen.
    offset += FindFreeShift(m_Body, copy.nodes.front().position + offset);
    GraphBody body = m_Body;
    std::set<std::string> const ids = PasteNodes(body, copy, offset);
    CommitNewNodes(body, ids, text);
}

void CCanvas::DeleteSelection()
{
    if (!HasSelection())
        return;
    GraphBody body = m_Body;
    DisconnectAll(body, m_Scene.GetSelectedConnections());
    RemoveNodes(body, m_Scene.GetSelectedNodes());
    Commit(body, "Delete");
}

void CCanvas::SelectAll()
{
    std::set<std::string> ids;
    for (GraphNode const& node : m_Body.nodes)
        ids.insert(node.id);
    m_Scene.SelectNodes(ids);
}

void CCanvas::AddInput()
{
    AddPortOf(true);
}

void CCanvas::AddOutput()
{
    AddPortOf(false);
}

void CCanvas::AddPortOf(bool isInput)
{
    ItemID const compound = m_Compound;
    if (compound.IsNull())
        return;
    // Anything may happen while the dialogs are open.
    QPointer<CCanvas> const guard(this);
    QPointer<CTypeSelector> const selector(new CTypeSelector(this));
    bool const isChosen = selector->exec() == QDialog::Accepted;
    ItemID const type = selector && isChosen ? selector->GetSelectedType() : ItemID();
    delete selector;
    if (!guard || type.IsNull())
        return;
    bool isNamed = false;
    QString const name =
        QInputDialog::getText(this, isInput ? tr("Add Input") : tr("Add Output"),
                              (isInput ? tr("Name of the input of type \"%1\":")
                                       : tr("Name of the output of type \"%1\":"))
                                  .arg(GetItemName(type)),
                              QLineEdit::Normal, isInput ? tr("input") : tr("output"), &isNamed)
            .trimmed();
    if (!guard || !isNamed || name.isEmpty() || compound != m_Compound)
        return;
    GraphBody body = m_Body;
    AddPort(isInput ? body.inputs : body.outputs, name.toStdString(),
            ItemIDUnlock::GetItemIDUID(type));
    if (!Commit(body, isInput ? "Add Input" : "Add Output"))
        return;
    // Within, the compound's inputs are outputs of their node.
    auto const port = m_Scene.GetPort(
        {isInput ? kInputsNode : kOutputsNode, (isInput ? body.inputs : body.outputs).back().name},
        isInput);
    if (port)
        BringIntoView(QRectF(port->position, QSizeF()).marginsAdded(kPortMargins));
}

void CCanvas::RemovePort(PortPick const& port)
{
    GraphBody body = m_Body;
    // Within, the compound's inputs are outputs of their node.
    if (port.isOutput)
        RemoveInput(body, port.port.name);
    else
        RemoveOutput(body, port.port.name);
    Commit(body, port.isOutput ? "Remove Input" : "Remove Output");
}

void CCanvas::OpenNode(NodeLook const& node)
{
    CompoundAccessor compound;
    compound.SetFrom(m_Host.GetLibrary().GetModel(m_Host.FindItem(node.item), nullptr));
    if (compound.IsValid())
        m_Host.SetCompoundTarget(compound);
}
