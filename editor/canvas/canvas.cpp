#include "canvas.h"

#include "canvasaccessible.h"
#include "gridpainter.h"

#include <embeddedhost/embeddedhost.h>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

/// A frame later, coarse ones are painted again.
int const kFrameMilliseconds = 16;

double const kSmallestZoom = 0.05;
double const kLargestZoom = 4;
double const kZoomStep = 1.25;
/// How far beyond the nodes one can go, and around the graph that is fitted.
double const kReach = 4000;
double const kFitMargin = 30;

QLabel* MakeLabel(QWidget* parent)
{
    QLabel* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setWordWrap(true);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

} // namespace

CCanvas::CCanvas(CEmbeddedHost& host, QWidget* parent)
    : QGraphicsView(parent)
    , m_Host(host)
    , m_Looks(host)
    , m_Scene(CanvasColors(palette()))
    , m_RubberBand(new QRubberBand(QRubberBand::Rectangle, this))
{
    setScene(&m_Scene);
    setFrameShape(QFrame::NoFrame);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing
                   | QPainter::SmoothPixmapTransform);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportUpdateMode(SmartViewportUpdate);
    // Items set what they need and leave the hints as they were.
    setOptimizationFlag(DontSavePainterState);
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(NoAnchor);
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    InstallCanvasAccessible();
    CreateLabels();
    ConnectHost();
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &CCanvas::LookAtClipboard);
    LookAtClipboard();
    Refresh();
}

void CCanvas::CreateLabels()
{
    // Children of the viewport would be scrolled along with the graph, so the hint is beside it.
    m_Hint = new QWidget(this);
    m_Hint->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_NameLabel = MakeLabel(m_Hint);
    m_CountsLabel = MakeLabel(m_Hint);
    QFont font = m_NameLabel->font();
    font.setPointSizeF(1.6 * font.pointSizeF());
    m_NameLabel->setFont(font);

    QVBoxLayout* const layout = new QVBoxLayout(m_Hint);
    layout->addStretch();
    layout->addWidget(m_NameLabel);
    layout->addWidget(m_CountsLabel);
    layout->addStretch();
}

void CCanvas::ConnectHost()
{
    for (auto const change : {&CEmbeddedHost::LibraryChanged, &CEmbeddedHost::ContentChanged,
                              &CEmbeddedHost::CompoundTargetChanged})
        connect(&m_Host, change, this, &CCanvas::Refresh);
    connect(&m_Host.GetCommandManager().GetUndoStack(), &QUndoStack::indexChanged, this,
            &CCanvas::Refresh);
    connect(&m_Scene, &QGraphicsScene::selectionChanged, this, &CCanvas::AnnounceSelection);
}

void CCanvas::AnnounceSelection()
{
    // The scene sends a signal for each item.
    if (m_IsSelectionAnnounced)
        return;
    m_IsSelectionAnnounced = true;
    auto const announce = [this] {
        m_IsSelectionAnnounced = false;
        AnnounceSelectedNodes(*this);
        Q_EMIT SelectionChanged();
    };
    // Listeners may change the graph, which the scene does not expect while it selects.
    QMetaObject::invokeMethod(this, announce, Qt::QueuedConnection);
}

void CCanvas::SetSummary(QString const& libraryName, QString const& itemCounts)
{
    m_LibraryName = libraryName;
    m_ItemCounts = itemCounts;
    UpdateHint();
}

void CCanvas::SetReading(QString const& folder)
{
    m_ReadingFolder = folder;
    UpdateHint();
}

bool CCanvas::HasSelection() const
{
    return !m_Scene.selectedItems().isEmpty();
}

tarno::datamodel::ItemID CCanvas::FindSelectedCompound() const
{
    std::set<std::string> const ids = m_Scene.GetSelectedNodes();
    NodeLook const* const look = ids.size() == 1 ? m_Scene.FindLook(*ids.begin()) : nullptr;
    return look && look->kind == eNodeKind::kCompound ? m_Host.FindItem(look->item)
                                                      : tarno::datamodel::ItemID();
}

QString CCanvas::DescribeView() const
{
    if (m_Compound.IsNull())
        return tr("No compound is open");
    auto const count = m_Body.nodes.size();
    QStringList parts(count == 1 ? tr("1 node") : tr("%L1 nodes").arg(count));
    if (std::size_t const selected = m_Scene.GetSelectedNodes().size())
        parts << tr("%L1 selected").arg(selected);
    parts << tr("%1%").arg(qRound(100 * transform().m11()));
    return parts.join(QStringLiteral(" · "));
}

void CCanvas::Refresh()
{
    tarno::datamodel::CompoundAccessor const compound = m_Host.GetCompoundTarget();
    tarno::datamodel::ItemID const id =
        compound.Revalidate() ? compound.GetItemID() : tarno::datamodel::ItemID();
    bool const isOther = id != m_Compound;
    if (isOther)
        LeaveCompound();
    m_Compound = id;
    m_Body = m_Host.GetBody(id);
    // Any change may concern the items behind the nodes: their names, ports or kinds.
    m_Looks.Forget();
    if (m_Scene.Show(m_Looks.Make(m_Body), m_Body.connections))
        AnnounceGraph(*this);
    UpdateReach();
    UpdateHint();
    if (m_Gesture == eGesture::kConnect)
        FollowPressedPort();
    if (isOther)
        EnterCompound();
    m_IsFresh = true;
}

void CCanvas::LeaveCompound()
{
    CancelGesture();
    ForgetWantedNode();
    std::string const uid = tarno::datamodel::ItemIDUnlock::GetItemIDUID(m_Compound);
    // A fitted view is fitted again on return, to the size that the window has then.
    if (m_IsFitted)
        m_Views.erase(uid);
    else
        m_Views[uid] = View{transform().m11(), GetCenter()};
    // Nodes of another compound are others even by the same ids.
    if (m_Scene.Show({}, {}))
        AnnounceGraph(*this);
}

void CCanvas::EnterCompound()
{
    auto const view = m_Views.find(tarno::datamodel::ItemIDUnlock::GetItemIDUID(m_Compound));
    if (view == m_Views.end()) {
        Fit();
        return;
    }
    SetZoom(view->second.zoom);
    centerOn(view->second.center);
}

void CCanvas::UpdateReach()
{
    // The view scrolls within the scene rectangle only.
    setSceneRect(m_Scene.GetBounds().adjusted(-kReach, -kReach, kReach, kReach));
}

void CCanvas::UpdateHint()
{
    bool const isEmpty = m_Body.nodes.empty() && m_Body.inputs.empty() && m_Body.outputs.empty();
    bool const hasCompound = !m_Compound.IsNull();
    bool const isReading = !m_ReadingFolder.isEmpty();
    m_NameLabel->setText(hasCompound ? QString()
                         : isReading ? QDir(m_ReadingFolder).dirName()
                                     : m_LibraryName);
    QString const next =
        hasCompound ? tr("Drag nodes here from the node browser, or press Tab.")
        : isReading ? tr("Reading the library...")
        : m_LibraryName.isEmpty()
            ? tr("Open a library to begin.")
            : tr("Double-click a compound in the node browser, or press Alt+Down on "
                 "it, to work on it. The Create menu makes a new one.");
    m_CountsLabel->setText(hasCompound || isReading || m_ItemCounts.isEmpty()
                               ? next
                               : m_ItemCounts + QStringLiteral("\n\n") + next);
    setAccessibleName(hasCompound ? tr("Graph of %1").arg(GetItemName(m_Compound)) : tr("Graph"));
    m_NameLabel->setVisible(!hasCompound);
    m_Hint->setVisible(!hasCompound || isEmpty);
}

void CCanvas::ScaleTo(double zoom)
{
    double const factor = std::clamp(zoom, kSmallestZoom, kLargestZoom) / transform().m11();
    m_IsFitted = false;
    scale(factor, factor);
    Q_EMIT ZoomChanged();
}

QPointF CCanvas::GetCenter() const
{
    return viewportTransform().inverted().map(QRectF(viewport()->rect()).center());
}

void CCanvas::SetZoom(double zoom)
{
    QPointF const center = GetCenter();
    ScaleTo(zoom);
    centerOn(center);
}

void CCanvas::ZoomIn()
{
    SetZoom(transform().m11() * kZoomStep);
}

void CCanvas::ZoomOut()
{
    SetZoom(transform().m11() / kZoomStep);
}

void CCanvas::ResetZoom()
{
    SetZoom(1);
}

void CCanvas::Fit()
{
    QRectF const bounds =
        m_Scene.GetBounds().adjusted(-kFitMargin, -kFitMargin, kFitMargin, kFitMargin);
    QSizeF const room = viewport()->size();
    // A small graph is not blown up.
    double const zoom =
        std::min({1.0, room.width() / bounds.width(), room.height() / bounds.height()});
    SetZoom(zoom);
    // The middle of a graph that is too large for the view may be empty: start at a node.
    centerOn(zoom < kSmallestZoom ? m_Scene.GetFirstNodePosition() : bounds.center());
    m_IsFitted = true;
}

void CCanvas::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    m_Hint->setGeometry(viewport()->geometry());
    if (m_IsFitted)
        Fit();
}

void CCanvas::changeEvent(QEvent* event)
{
    QGraphicsView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_Scene.SetColors(CanvasColors(palette()));
}

void CCanvas::paintEvent(QPaintEvent* event)
{
    m_Scene.GetPictures().StartFrame();
    QGraphicsView::paintEvent(event);
    if (m_Scene.GetPictures().IsFrameCoarse())
        QTimer::singleShot(kFrameMilliseconds, viewport(), qOverload<>(&QWidget::update));
}

void CCanvas::drawBackground(QPainter* painter, QRectF const& rect)
{
    PaintGrid(*painter, rect, m_Scene.GetColors());
}

#include "moc_canvas.cpp"
