#ifndef EDITOR_CANVAS_NODEITEM_H
#define EDITOR_CANVAS_NODEITEM_H

#include "nodelook.h"
#include "nodepictures.h"

#include <QByteArray>
#include <QGraphicsItem>

#include <functional>
#include <optional>

/// A port as it is pointed at.
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

/// A node as it is painted. It reacts to nothing by itself.
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
    /// Where connections of the port end, in the scene; null for a port that is not there.
    std::optional<PortPick> GetPort(std::string const& name, bool isOutput) const;
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
    PortPick MakePick(std::size_t port, bool isOutput) const;
    void PaintMark(QPainter& painter) const;

    NodeLook m_Look;
    QByteArray m_Face;
    NodePictures& m_Pictures;
    std::optional<Mark> m_Mark;
};

#endif
