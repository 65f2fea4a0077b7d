#ifndef EDITOR_CANVAS_NODELOOK_H
#define EDITOR_CANVAS_NODELOOK_H

#include <QPixmap>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <string>
#include <vector>

/// Pitch of the grid to which nodes snap, in scene units as all lengths here: pixels as long as
/// the view is not zoomed.
int const kGridPitch = 20;
/// Nodes are as wide as their texts want, in steps of the grid.
int const kSmallestNodeWidth = 160;
int const kLargestNodeWidth = 280;
int const kHeaderHeight = 28;
int const kPortRowHeight = 20;
int const kPortRadius = 5;
/// How near to a port a press has to be.
int const kPortReach = 11;

enum class eNodeKind
{
    kSolver,
    kCompound,
    kConstant,
    kInputs,  ///< stands for the compound's own inputs
    kOutputs, ///< stands for the compound's own outputs
    kMissing  ///< the library does not have the item
};

struct PortLook
{
    /// As connections name it.
    std::string name;
    /// The uid, and its name in the library; empty without a type or a name.
    std::string type;
    std::string typeName;
    bool isConnected = false;
    /// It cannot take the connection that is being drawn.
    bool isFaded = false;
};

/// All that is shown of a node.
struct NodeLook
{
    std::string id;
    /// Uid of the item; empty for the compound's own ports.
    std::string item;
    eNodeKind kind = eNodeKind::kMissing;
    QString title;
    QPixmap icon;
    std::vector<PortLook> inputs;
    std::vector<PortLook> outputs;
    QPointF position;
    int width = kSmallestNodeWidth;
};

bool operator==(NodeLook const& left, NodeLook const& right);

QPointF SnapToGrid(QPointF const& point);

// The geometry of a node whose top left is (0, 0).

QRectF GetNodeRect(NodeLook const& look);
QRectF GetHeaderRect(NodeLook const& look);
QPointF GetPortPosition(NodeLook const& look, std::size_t port, bool isOutput);

#endif
