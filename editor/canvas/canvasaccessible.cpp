#include "canvasaccessible.h"

#include "canvas.h"

#include <nodebrowser/textencoding.h>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include <algorithm>
#include <utility>

using namespace embeddedhost;

namespace {

/// In a graph with more nodes, changes are not announced to screen readers one by one.
std::size_t const kMaximumToldNodes = 200;

QString NameKind(eNodeKind kind)
{
    static std::pair<eNodeKind, char const*> const words[] = {
        {eNodeKind::kSolver, QT_TRANSLATE_NOOP("CCanvas", "solver")},
        {eNodeKind::kCompound, QT_TRANSLATE_NOOP("CCanvas", "compound")},
        {eNodeKind::kConstant, QT_TRANSLATE_NOOP("CCanvas", "constant")},
        {eNodeKind::kInputs, QT_TRANSLATE_NOOP("CCanvas", "inputs of the compound")},
        {eNodeKind::kOutputs, QT_TRANSLATE_NOOP("CCanvas", "outputs of the compound")},
        {eNodeKind::kMissing, QT_TRANSLATE_NOOP("CCanvas", "missing item")},
    };
    for (auto const& [known, word] : words) {
        if (known == kind)
            return CCanvas::tr(word);
    }
    return QString();
}

/// The other ends of connections, by the names of the node's ports.
using OtherEnds = std::map<std::string, QStringList>;

OtherEnds FindOtherEnds(CGraphScene const& scene, std::string const& node, bool isOutput)
{
    OtherEnds ends;
    for (GraphConnection const& connection : scene.GetConnections()) {
        GraphEnd const& own = isOutput ? connection.from : connection.to;
        GraphEnd const& other = isOutput ? connection.to : connection.from;
        if (own.node == node)
            ends[own.port] << QStringLiteral("%1 %2").arg(QString::fromStdString(other.node),
                                                          QString::fromStdString(other.port));
    }
    return ends;
}

/// The port with its type and what it is connected with.
QString DescribePort(PortLook const& port, QStringList const& others, bool isOutput)
{
    QString text = QString::fromStdString(port.name);
    QString const type = nodebrowser::ToQString(port.typeName.c_str());
    if (!type.isEmpty())
        text += QStringLiteral(": ") + type;
    if (others.isEmpty())
        return text;
    return text + (isOutput ? CCanvas::tr(" to ") : CCanvas::tr(" from "))
           + others.join(CCanvas::tr(" and "));
}

QString DescribePorts(CGraphScene const& scene, NodeLook const& node, bool isOutput)
{
    OtherEnds ends = FindOtherEnds(scene, node.id, isOutput);
    QStringList texts;
    for (PortLook const& port : isOutput ? node.outputs : node.inputs)
        texts << DescribePort(port, ends[port.name], isOutput);
    return texts.join(QStringLiteral(", "));
}

/// The id first, by which connections name the node: titles may be there twice.
QString DescribeNode(CGraphScene const& scene, NodeLook const& node)
{
    QStringList parts(
        QStringLiteral("%1, %2").arg(QString::fromStdString(node.id), NameKind(node.kind)));
    if (!node.inputs.empty())
        parts << CCanvas::tr("inputs %1").arg(DescribePorts(scene, node, false));
    if (!node.outputs.empty())
        parts << CCanvas::tr("outputs %1").arg(DescribePorts(scene, node, true));
    return parts.join(QStringLiteral("; "));
}

CGraphScene* GetScene(CCanvas const* canvas)
{
    return canvas ? qobject_cast<CGraphScene*>(canvas->scene()) : nullptr;
}

/// One node, by its id.
class CAccessibleNode : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    CAccessibleNode(CCanvas* canvas, std::string const& id)
        : m_Object(canvas)
        , m_Id(id)
    {}

    std::string const& GetId() const
    {
        return m_Id;
    }

    bool isValid() const override
    {
        return GetLook();
    }

    QObject* object() const override
    {
        return nullptr;
    }

    QWindow* window() const override
    {
        QAccessibleInterface* const list = parent();
        return list ? list->window() : nullptr;
    }

    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(GetCanvas());
    }

    QAccessibleInterface* child(int) const override
    {
        return nullptr;
    }

    QAccessibleInterface* childAt(int, int) const override
    {
        return nullptr;
    }

    int childCount() const override
    {
        return 0;
    }

    int indexOfChild(QAccessibleInterface const*) const override
    {
        return -1;
    }

    QString text(QAccessible::Text text) const override
    {
        NodeLook const* const look = GetLook();
        if (look && text == QAccessible::Name)
            return look->title;
        if (look && text == QAccessible::Description)
            return DescribeNode(*GetScene(GetCanvas()), *look);
        return QString();
    }

    void setText(QAccessible::Text, QString const&) override {}

    QRect rect() const override;

    QAccessible::Role role() const override
    {
        return QAccessible::ListItem;
    }

    QAccessible::State state() const override;

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override
    {
        return {pressAction()};
    }

    QString localizedActionName(QString const& name) const override
    {
        return name == pressAction() ? CCanvas::tr("Select")
                                     : QAccessibleActionInterface::localizedActionName(name);
    }

    void doAction(QString const& name) override;

    QStringList keyBindingsForAction(QString const&) const override
    {
        return {};
    }

private:
    CCanvas* GetCanvas() const
    {
        return qobject_cast<CCanvas*>(m_Object.data());
    }

    /// Null for a node that is gone.
    NodeLook const* GetLook() const
    {
        CGraphScene const* const scene = GetScene(GetCanvas());
        return scene ? scene->FindLook(m_Id) : nullptr;
    }

    // Not of the canvas's own type while it is being destroyed.
    QPointer<QObject> const m_Object;
    std::string const m_Id;
};

QRect CAccessibleNode::rect() const
{
    CCanvas const* const canvas = GetCanvas();
    NodeLook const* const look = GetLook();
    if (!canvas || !look)
        return QRect();
    QPointF const position = GetScene(canvas)->FindNodePosition(m_Id).value_or(QPointF());
    QRect const rect = canvas->mapFromScene(GetNodeRect(*look).translated(position)).boundingRect();
    return QRect(canvas->viewport()->mapToGlobal(rect.topLeft()), rect.size());
}

QAccessible::State CAccessibleNode::state() const
{
    QAccessible::State state;
    CCanvas const* const canvas = GetCanvas();
    NodeLook const* const look = GetLook();
    if (!canvas || !look) {
        state.invalid = true;
        return state;
    }
    CGraphScene const& scene = *GetScene(canvas);
    state.selectable = look->kind != eNodeKind::kInputs && look->kind != eNodeKind::kOutputs;
    state.focusable = state.selectable;
    state.selected = scene.IsNodeSelected(m_Id);
    state.focused = state.selected && canvas->hasFocus() && scene.selectedItems().size() == 1;
    state.invisible = !canvas->isVisible();
    QRect const view(canvas->viewport()->mapToGlobal(QPoint()), canvas->viewport()->size());
    state.offscreen = !view.intersects(rect());
    return state;
}

void CAccessibleNode::doAction(QString const& name)
{
    CGraphScene* const scene = GetScene(GetCanvas());
    if (scene && name == pressAction())
        scene->SelectNodes({m_Id});
}

/// The canvas: its nodes come first, then its child widgets.
class CAccessibleCanvas : public QAccessibleWidget
{
public:
    explicit CAccessibleCanvas(CCanvas* canvas)
        : QAccessibleWidget(canvas, QAccessible::List)
    {}

    ~CAccessibleCanvas() override
    {
        // The object is no longer a CCanvas at this point, so all nodes count as gone.
        ForgetGoneNodes();
    }

    int childCount() const override
    {
        return static_cast<int>(GetIds().size()) + QAccessibleWidget::childCount();
    }

    QAccessibleInterface* child(int index) const override
    {
        int const nodeCount = static_cast<int>(GetIds().size());
        if (index >= nodeCount)
            return QAccessibleWidget::child(index - nodeCount);
        return index < 0 ? nullptr : GetNode(m_Ids[static_cast<std::size_t>(index)]);
    }

    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(QAccessibleInterface const* child) const override;

    /// -1 for none.
    int FindNode(std::string const& id) const
    {
        // Ids come in their order.
        std::vector<std::string> const& ids = GetIds();
        auto const found = std::lower_bound(ids.begin(), ids.end(), id);
        return found != ids.end() && *found == id ? static_cast<int>(found - ids.begin()) : -1;
    }

    /// Readers keep the nodes that stay, with what they know of them.
    void ForgetGoneNodes();
    /// Tells readers of nodes that they know by other names.
    void TellNewNames();

private:
    CCanvas* GetCanvas() const
    {
        return qobject_cast<CCanvas*>(object());
    }

    std::vector<std::string> const& GetIds() const
    {
        CGraphScene const* const scene = GetScene(GetCanvas());
        if (m_Ids.empty() && scene)
            m_Ids = scene->GetNodeIds();
        return m_Ids;
    }

    QAccessibleInterface* GetNode(std::string const& id) const
    {
        auto const known = m_Nodes.find(id);
        if (known != m_Nodes.end())
            return QAccessible::accessibleInterface(known->second.id);
        auto* const made = new CAccessibleNode(GetCanvas(), id);
        m_Nodes[id] = {QAccessible::registerAccessibleInterface(made),
                       made->text(QAccessible::Name)};
        return made;
    }

    /// A node that readers have asked for.
    struct KnownNode
    {
        QAccessible::Id id;
        /// The name that readers were given last.
        QString name;
    };

    mutable std::vector<std::string> m_Ids;
    mutable std::map<std::string, KnownNode> m_Nodes;
};

void CAccessibleCanvas::ForgetGoneNodes()
{
    m_Ids.clear();
    std::vector<QAccessible::Id> gone;
    for (auto node = m_Nodes.begin(); node != m_Nodes.end();) {
        if (FindNode(node->first) >= 0) {
            ++node;
            continue;
        }
        gone.push_back(node->second.id);
        node = m_Nodes.erase(node);
    }
    for (QAccessible::Id const id : gone)
        QAccessible::deleteAccessibleInterface(id);
}

void CAccessibleCanvas::TellNewNames()
{
    std::vector<QAccessible::Id> renamed;
    for (auto& [id, node] : m_Nodes) {
        NodeLook const* const look = GetScene(GetCanvas())->FindLook(id);
        if (look && std::exchange(node.name, look->title) != look->title)
            renamed.push_back(node.id);
    }
    // Whoever listens may ask for other nodes.
    for (QAccessible::Id const id : renamed) {
        QAccessibleInterface* const node = QAccessible::accessibleInterface(id);
        if (!node)
            continue;
        QAccessibleEvent event(node, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

QAccessibleInterface* CAccessibleCanvas::childAt(int x, int y) const
{
    CCanvas const* const canvas = GetCanvas();
    if (!canvas)
        return nullptr;
    QPoint const point = canvas->viewport()->mapFromGlobal(QPoint(x, y));
    auto const node = GetScene(canvas)->FindNodeAt(canvas->mapToScene(point));
    if (node)
        return GetNode(node->id);
    // The base class would ask for each node.
    for (int index = 0; index < QAccessibleWidget::childCount(); ++index) {
        QAccessibleInterface* const widget = QAccessibleWidget::child(index);
        if (widget && widget->isValid() && widget->rect().contains(x, y))
            return widget;
    }
    return nullptr;
}

int CAccessibleCanvas::indexOfChild(QAccessibleInterface const* child) const
{
    if (auto const* const node = dynamic_cast<CAccessibleNode const*>(child))
        return FindNode(node->GetId());
    int const index = QAccessibleWidget::indexOfChild(child);
    return index < 0 ? index : index + static_cast<int>(GetIds().size());
}

QAccessibleInterface* MakeAccessible(QString const&, QObject* object)
{
    auto* const canvas = qobject_cast<CCanvas*>(object);
    return canvas ? new CAccessibleCanvas(canvas) : nullptr;
}

CAccessibleCanvas* FindAccessible(CCanvas& canvas)
{
    return dynamic_cast<CAccessibleCanvas*>(QAccessible::queryAccessibleInterface(&canvas));
}

} // namespace

void InstallCanvasAccessible()
{
    // A factory that is installed already is not installed again.
    QAccessible::installFactory(MakeAccessible);
}

void AnnounceGraph(CCanvas& canvas)
{
    CAccessibleCanvas* const list = FindAccessible(canvas);
    // Readers come and go: the next one must not find nodes of a graph that changed in between.
    if (list)
        list->ForgetGoneNodes();
    if (!list || !QAccessible::isActive())
        return;
    // The bus announces each child itself if children are reported as changed.
    bool const areMany = GetScene(&canvas)->GetNodeIds().size() > kMaximumToldNodes;
    QAccessibleEvent event(&canvas,
                           areMany ? QAccessible::VisibleDataChanged : QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
    list->TellNewNames();
}

void AnnounceSelectedNodes(CCanvas& canvas)
{
    CAccessibleCanvas* const list = QAccessible::isActive() ? FindAccessible(canvas) : nullptr;
    std::set<std::string> const ids =
        list ? GetScene(&canvas)->GetSelectedNodes() : std::set<std::string>();
    if (ids.size() != 1)
        return;
    for (QAccessible::Event const type : {QAccessible::Selection, QAccessible::Focus}) {
        if (type == QAccessible::Focus && !canvas.hasFocus())
            continue;
        QAccessibleEvent event(&canvas, type);
        event.setChild(list->FindNode(*ids.begin()));
        QAccessible::updateAccessibility(&event);
    }
}
