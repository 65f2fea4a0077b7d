#ifndef EDITOR_CANVAS_CANVAS_H
#define EDITOR_CANVAS_CANVAS_H

#include "graphscene.h"
#include "nodelooks.h"

#include <datamodel.h>
#include <embeddedhost/model/graphbody.h>

#include <QGraphicsView>
#include <QPointer>
#include <QRubberBand>

#include <map>
#include <optional>
#include <set>
#include <string>

class CEmbeddedHost;
class QLabel;
class QMenu;
class QMimeData;

/// Shows the graph of the host's current compound and lets it be edited. Each change is one
/// command of the host's command manager. Without a compound it shows a hint and the name of the
/// open library.
class CCanvas : public QGraphicsView
{
    Q_OBJECT

public:
    /// Follows the host by itself, which has to outlive it.
    explicit CCanvas(CEmbeddedHost& host, QWidget* parent = nullptr);

    /// Shown while there is no compound. Both empty when no library is open.
    void SetSummary(QString const& libraryName, QString const& itemCounts);
    /// The folder of a library that is being read; empty when none is.
    void SetReading(QString const& folder);
    /// Nodes or connections.
    bool HasSelection() const;
    bool CanCopy() const;
    /// There is a compound, and it is not read-only.
    bool CanChange() const;
    bool CanPaste() const;
    /// There is one node selected, and it has outputs.
    bool CanContinue() const;
    /// Null unless one node is selected, and it is a compound.
    tarno::datamodel::ItemID FindSelectedCompound() const;
    /// The number of nodes and the zoom, in words.
    QString DescribeView() const;

public Q_SLOTS:
    void Cut();
    void Copy();
    /// Under the mouse if it is over the canvas, otherwise beside the nodes that were copied.
    void Paste();
    void Duplicate();
    void DeleteSelection();
    void SelectAll();
    void ZoomIn();
    void ZoomOut();
    void ResetZoom();
    /// Brings the whole graph into view.
    void Fit();
    /// Asks for type and name of another input or output of the compound.
    void AddInput();
    void AddOutput();
    /// Adds a node of the item in the middle of the view, where there is room. Refusals are posted
    /// on the message channel.
    void AddItem(tarno::datamodel::ItemID const& id);
    /// Sends NodeWanted for the place under the mouse if it is over the canvas, otherwise for the
    /// middle of the view.
    void WantNode();
    /// The same to the right of the only node that is selected, for a node to be connected with it.
    void WantConnectedNode();
    /// Adds a node at the place that NodeWanted was sent for, and connects it with the port there
    /// if one of its own ports fits.
    void AddWantedNode(tarno::datamodel::ItemID const& id);
    void ForgetWantedNode();

Q_SIGNALS:
    /// Sent from the event loop, once for a burst of changes.
    void SelectionChanged();
    /// The user wants to add a node at the point. The receiver passes the item to AddWantedNode. A
    /// connection that was being drawn is shown until ForgetWantedNode.
    void NodeWanted(QPoint const& globalPos);
    void NodeAdded(tarno::datamodel::ItemID const& item);
    void ZoomChanged();

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void drawBackground(QPainter* painter, QRectF const& rect) override;
    bool viewportEvent(QEvent* event) override;

    // canvas_input.cpp
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    // canvas_drop.cpp
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    // canvas_menu.cpp
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    /// The mouse gesture between press and release.
    enum class eGesture
    {
        kNone,
        kPan,
        kMoveNodes,
        kRubberBand,
        kConnect
    };

    struct WantedNode
    {
        /// In the scene.
        QPointF point;
        /// The node is to be connected with the first of them that fits.
        std::vector<PortPick> ports = {};
    };

    /// One that is not in the graph yet.
    struct NewNode
    {
        tarno::datamodel::ItemID item;
        NodeLook look;
        /// The graph with it.
        embeddedhost::GraphBody body;
    };

    struct View
    {
        double zoom;
        /// In the scene.
        QPointF center;
    };

    void CreateLabels();
    void ConnectHost();
    void AnnounceSelection();
    /// Reads the current compound from the host anew and shows it.
    void Refresh();
    void LeaveCompound();
    void EnterCompound();
    void UpdateReach();
    void UpdateHint();
    /// Within the limits.
    void ScaleTo(double zoom);
    /// The middle of the view, in the scene.
    QPointF GetCenter() const;
    /// Keeps the middle of the view.
    void SetZoom(double zoom);

    // canvas_input.cpp
    void PressLeft(QMouseEvent* event);
    void PressNode(NodeLook const& node, bool isAdded);
    void StartGesture(eGesture gesture);
    void CancelGesture();
    void Pan(QPoint const& viewPoint);
    void MoveNodes(QPointF const& scenePoint);
    /// Moves the selected nodes by an arrow key; false when there are none, or for another key.
    bool Nudge(int key);
    /// In scene units.
    double GetConnectionReach() const;
    void StretchRubberBand(QPoint const& viewPoint);
    void FinishMove(QPointF const& scenePoint);

    // canvas_connect.cpp
    /// From the port, or with the loose end of the connection that its input has.
    void StartConnection(PortPick const& port);
    void TakeOffConnection(embeddedhost::GraphEnd const& input);
    bool IsLoop() const;
    void FadeUnsuitablePorts();
    /// The graph was changed while a connection is being drawn.
    void FollowPressedPort();
    void StopConnecting();
    void DrawConnection(QPointF const& scenePoint);
    void ShowLooseConnection(PortPick const& port, QPointF const& loose, bool isRefused);
    void FinishConnection(QPointF const& scenePoint);
    void ShowHover(QPointF const& scenePoint);
    /// The connection from the port where the mouse was pressed to `end`; none if the ports do
    /// not fit together, with the reason in `reason`.
    std::optional<embeddedhost::GraphConnection> MakeConnection(PortPick const& end,
                                                                QString* reason) const;

    // canvas_add.cpp
    /// Posts a message and answers false when the item cannot become a node here.
    bool CheckItem(tarno::datamodel::ItemID const& id);
    NewNode MakeNode(tarno::datamodel::ItemID const& id);
    void CommitNode(NewNode node, QPointF const& topLeft);
    void WantNodeAt(WantedNode const& wanted);
    /// Adds a node with its header under the point, and inserts it into the connection there if its
    /// ports fit.
    void AddNodeAt(tarno::datamodel::ItemID const& id, QPointF const& point);
    /// Adds a node and connects it with the first of the ports that fits; its own port for that is
    /// at the point.
    void AddConnectedNode(tarno::datamodel::ItemID const& id, std::vector<PortPick> const& ports,
                          QPointF const& point);
    std::vector<PortPick> GetOutputsOfSelection() const;
    /// Leads the connection at the point through the node, where its ports fit.
    bool InsertIntoConnection(embeddedhost::GraphBody& body, NodeLook const& node,
                              QPointF const& point) const;
    /// The same for a node that is there, unless it is connected already.
    void InsertMovedNode(embeddedhost::GraphBody& body, std::string const& id,
                         QPointF const& point);
    /// The point, or the next one below it where a node of the look covers no other.
    QPointF FindRoom(NodeLook const& look, QPointF const& topLeft) const;
    /// Scrolls as little as possible.
    void BringIntoView(QRectF const& sceneRect);
    QString GetItemName(tarno::datamodel::ItemID const& id) const;
    /// Posts a message and answers false when one of the items has the current compound in it.
    bool CheckContainment(std::set<std::string> const& items);

    // canvas_drop.cpp
    /// Null if the data carries no item, or one that cannot become a node.
    tarno::datamodel::ItemID FindDraggedItem(QMimeData const* data) const;
    void AnswerDrag(QDragMoveEvent* event);

    // canvas_edit.cpp
    /// Makes the body that of the compound; false when it is refused.
    bool Commit(embeddedhost::GraphBody const& body, char const* text);
    bool CommitNewNodes(embeddedhost::GraphBody const& body, std::set<std::string> const& ids,
                        char const* text);
    /// The selected nodes; false when there are none, or too many.
    bool PutOnClipboard();
    /// Asked once for each change: it may belong to another program, which may be slow to answer.
    void LookAtClipboard();
    void PasteAt(std::optional<QPointF> const& scenePoint);
    /// Adds the nodes with their top left at the point, or beside where others are already.
    void AddCopy(embeddedhost::GraphBody const& copy, QPointF const& scenePoint, char const* text);
    void AddPortOf(bool isInput);
    void RemovePort(PortPick const& port);
    void OpenNode(NodeLook const& node);

    // canvas_menu.cpp
    /// In the viewport: under the mouse, or for the Menu key on a selected node.
    QPoint FindMenuPoint(QContextMenuEvent const& event);
    void FillNodeMenu(QMenu& menu, NodeLook const& node);
    void FillGraphMenu(QMenu& menu, QPointF const& scenePoint);

    CEmbeddedHost& m_Host;
    NodeLooks m_Looks;
    /// SelectionChanged is under way. The scene uses it until its own end.
    bool m_IsSelectionAnnounced = false;
    CGraphScene m_Scene;
    /// Lies over the viewport while there is no graph to see.
    QWidget* m_Hint = nullptr;
    QLabel* m_NameLabel = nullptr;
    QLabel* m_CountsLabel = nullptr;
    QString m_LibraryName;
    QString m_ItemCounts;
    QString m_ReadingFolder;

    tarno::datamodel::ItemID m_Compound;
    embeddedhost::GraphBody m_Body;
    /// Refresh has run since the last commit began, so the commit need not call it.
    bool m_IsFresh = false;
    /// The clipboard holds nodes.
    bool m_IsNodeCopied = false;
    /// The graph is brought into view whenever the size changes, until the user zooms or pans.
    bool m_IsFitted = true;
    /// How compounds were left, by uid; those that were fitted are fitted again.
    std::map<std::string, View> m_Views;

    eGesture m_Gesture = eGesture::kNone;
    QPoint m_PressPoint;
    QPointF m_PressScenePoint;
    /// The positions of the moved nodes at the press.
    std::map<std::string, QPointF> m_MovedFrom;
    std::set<std::string> m_SelectedBefore;
    std::optional<PortPick> m_PressedPort;
    /// The connection whose end is being moved.
    std::optional<embeddedhost::GraphConnection> m_TakenOff;
    /// Nodes that must not be connected with the pressed port, because the connection would close a
    /// cycle.
    std::set<std::string> m_LoopNodes;
    QRubberBand* m_RubberBand;
    bool m_IsSpaceHeld = false;
    /// The view was moved with it.
    bool m_IsSpaceUsed = false;
    std::optional<WantedNode> m_WantedNode;
};

#endif
