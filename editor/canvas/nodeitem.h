#ifndef EDITOR_CANVAS_NODEITEM_H
#define EDITOR_CANVAS_NODEITEM_H

#include "nodelook.h"
#include "nodepictures.h"

#include <QFont>
#include <QGraphicsItem>
#include <QStaticText>

#include <optional>
#include <vector>

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
    enum { Type = UserType + 1 };

    /// The pictures have to outlive the item.
    CNodeItem(NodeLook const& look, QFont const& font, NodePictures& pictures);

    int type() const override;
    NodeLook const& GetLook() const;
    void SetLook(NodeLook const& look);
    /// The colours were changed.
    void UpdateColors();

    /// The port within reach of a point of the scene.
    std::optional<PortPick> FindPort(QPointF const& scenePoint) const;
    /// Where connections of the port end, in the scene; null for a port that is not there.
    std::optional<PortPick> GetPort(std::string const& name, bool isOutput) const;
    void MarkPort(std::string const& name, bool isOutput, ePortMark mark);
    void UnmarkPort();

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, QStyleOptionGraphicsItem const* option,
               QWidget* widget) override;

private:
    struct Port
    {
        PortLook look;
        bool isOutput;
        QPointF position;
        QStaticText text;
        QPointF textPosition;
        QColor color;
    };
    struct Mark
    {
        std::string name;
        bool isOutput;
        ePortMark mark;
    };

    void UpdateTexts();
    void AddPorts(std::vector<PortLook> const& looks, bool isOutput);
    PortPick MakePick(Port const& port) const;

    void PaintPlain(QPainter* painter) const;
    void PaintHeader(QPainter* painter) const;
    void PaintPorts(QPainter* painter, bool areNamesShown) const;
    void PaintMark(QPainter* painter, Port const& port) const;

    NodeLook m_Look;
    QFont const m_Font;
    QFont m_TitleFont;
    NodePictures& m_Pictures;
    QRectF m_Rect;
    QStaticText m_Title;
    QPointF m_TitlePosition;
    std::vector<Port> m_Ports;
    std::optional<Mark> m_Mark;
};

#endif
