#ifndef EDITOR_CANVAS_NODEITEM_H
#define EDITOR_CANVAS_NODEITEM_H

#include "nodelook.h"
#include "nodepictures.h"

#include <QByteArray>
#include <QGraphicsItem>

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// A port under the mouse.
struct PortPick
{
    std::string node;
    bool isOutput;
    PortLook port;
    /// In the scene.
    QPointF position;
};

enum class ePortMark
{
    kHovered,
    kWelcome, ///< a connection that is being drawn may end there
    kRefused
};

/// Paints a node. Mouse and keys are handled by the canvas.
class CNodeItem : public QGraphicsItem
{
public:
    enum
    {
        Type = UserType + 1
    };

    /// The pictures have to outlive the item.
    CNodeItem(NodeLook const& look, NodePictures& pictures);

    int type() const override;
    NodeLook const& GetLook() const;
    void SetLook(NodeLook const& look);
    void FadePorts(std::function<bool(PortPick const&)> const& isFaded);

    /// The port within reach of a point of the scene.
    std::optional<PortPick> FindPort(QPointF const& scenePoint) const;
    /// Null for a port that is not there.
    std::optional<PortPick> GetPort(std::string const& name, bool isOutput) const;
    PortLook const* FindPort(std::string const& name, bool isOutput) const;
    /// The end point of the port's connections, in the scene. The port belongs to this node.
    QPointF GetPortPoint(PortLook const& port, bool isOutput) const;
    void MarkPort(std::string const& name, bool isOutput, ePortMark mark);
    void UnmarkPort();

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, QStyleOptionGraphicsItem const* option, QWidget* widget) override;

protected:
    QVariant itemChange(GraphicsItemChange change, QVariant const& value) override;

private:
    struct Mark
    {
        std::string port;
        bool isOutput;
        ePortMark mark;
    };

    std::vector<PortLook> const& GetPorts(bool isOutput) const;
    void SortPorts(bool isOutput);
    PortPick MakePick(std::size_t port, bool isOutput) const;
    void PaintMark(QPainter& painter) const;

    NodeLook m_Look;
    /// Indexes of the look's ports, sorted by name: a fast search for nodes with very many ports.
    std::vector<std::size_t> m_SortedInputs;
    std::vector<std::size_t> m_SortedOutputs;
    QByteArray m_Face;
    NodePictures& m_Pictures;
    std::optional<Mark> m_Mark;
};

#endif
