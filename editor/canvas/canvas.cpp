#include "canvas.h"

#include <embeddedhost.h>

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

int const kStrongLineEvery = 5;
/// Below these zooms grid lines would lie closer than a few pixels.
double const kFaintLinesFrom = 0.5;
double const kStrongLinesFrom = 0.12;

double const kSmallestZoom = 0.05;
double const kLargestZoom = 4;
double const kZoomStep = 1.25;
/// How far beyond the nodes one can go, and around the graph that is fitted.
double const kReach = 4000;
double const kFitMargin = 30;
/// Library files may hold any number; the view can only scroll so far.
double const kFarthest = 1e6;

/// Positions of the grid lines between two coordinates, the strong ones or the others.
QVector<int> GridLines(double from, double to, bool strong)
{
    QVector<int> positions;
    int const last = static_cast<int>(std::floor(to / kGridPitch));
    for (int line = static_cast<int>(std::ceil(from / kGridPitch)); line <= last; ++line)
        if ((line % kStrongLineEvery == 0) == strong)
            positions.append(line * kGridPitch);
    return positions;
}

/// Filled rectangles are painted many times quicker than lines.
void PaintGrid(QPainter& painter, QRectF const& rect, bool strong, QColor const& color)
{
    double const pixel = 1 / painter.worldTransform().m11();
    for (int const x : GridLines(rect.left(), rect.right(), strong))
        painter.fillRect(QRectF(x, rect.top(), pixel, rect.height()), color);
    for (int const y : GridLines(rect.top(), rect.bottom(), strong))
        painter.fillRect(QRectF(rect.left(), y, rect.width(), pixel), color);
}

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
    , m_RubberBand(new QRubberBand(QRubberBand::Rectangle, viewport()))
{
    setScene(&m_Scene);
    setFrameShape(QFrame::NoFrame);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing
                   | QPainter::SmoothPixmapTransform);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The labels stay where they are while the graph is moved, which scrolling pixels does not
    // go with.
    setViewportUpdateMode(FullViewportUpdate);
    setOptimizationFlag(DontAdjustForAntialiasing);
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(NoAnchor);
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    CreateLabels();
    ConnectHost();
    Refresh();
}

void CCanvas::CreateLabels()
{
    m_NameLabel = MakeLabel(viewport());
    m_CountsLabel = MakeLabel(viewport());
    QFont font = m_NameLabel->font();
    font.setPointSizeF(1.6 * font.pointSizeF());
    m_NameLabel->setFont(font);

    QVBoxLayout* const layout = new QVBoxLayout(viewport());
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
    // Listeners may change the graph, which the scene does not expect while it selects.
    connect(&m_Scene, &QGraphicsScene::selectionChanged, this, &CCanvas::SelectionChanged,
            Qt::QueuedConnection);
}

void CCanvas::SetSummary(QString const& libraryName, QString const& itemCounts)
{
    m_LibraryName = libraryName;
    m_ItemCounts = itemCounts;
    UpdateHint();
}

bool CCanvas::HasSelection() const
{
    return !m_Scene.selectedItems().isEmpty();
}

void CCanvas::Refresh()
{
    tarno::datamodel::CompoundAccessor const compound = m_Host.GetCompoundTarget();
    tarno::datamodel::ItemID const id
        = compound.Revalidate() ? compound.GetItemID() : tarno::datamodel::ItemID();
    bool const isOther = id != m_Compound;
    if (isOther) {
        CancelGesture();
        m_Scene.Show({}, {});
    }
    m_Compound = id;
    m_Body = m_Host.GetBody(id);
    m_Looks.Forget();
    m_Scene.Show(m_Looks.Make(m_Body), m_Body.connections);
    UpdateReach();
    UpdateHint();
    if (isOther)
        Fit();
}

void CCanvas::UpdateReach()
{
    QRectF const farthest(-kFarthest, -kFarthest, 2 * kFarthest, 2 * kFarthest);
    setSceneRect(m_Scene.GetBounds().adjusted(-kReach, -kReach, kReach, kReach) & farthest);
}

void CCanvas::UpdateHint()
{
    bool const isEmpty = m_Body.nodes.empty() && m_Body.inputs.empty() && m_Body.outputs.empty();
    bool const hasCompound = !m_Compound.IsNull();
    m_NameLabel->setText(hasCompound ? QString() : m_LibraryName);
    m_CountsLabel->setText(hasCompound ? tr("Drag nodes here from the node browser.")
                                       : m_ItemCounts);
    m_NameLabel->setVisible(!hasCompound);
    m_CountsLabel->setVisible(!hasCompound || isEmpty);
}

void CCanvas::ScaleTo(double zoom)
{
    double const factor = std::clamp(zoom, kSmallestZoom, kLargestZoom) / transform().m11();
    m_IsFitted = false;
    scale(factor, factor);
}

void CCanvas::SetZoom(double zoom)
{
    QPointF const center = mapToScene(viewport()->rect().center());
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
    QRectF const bounds
        = m_Scene.GetBounds().adjusted(-kFitMargin, -kFitMargin, kFitMargin, kFitMargin);
    QSizeF const room = viewport()->size();
    // A small graph is not blown up.
    double const zoom
        = std::min({1.0, room.width() / bounds.width(), room.height() / bounds.height()});
    SetZoom(zoom);
    centerOn(bounds.center());
    m_IsFitted = true;
}

void CCanvas::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (m_IsFitted)
        Fit();
}

void CCanvas::changeEvent(QEvent* event)
{
    QGraphicsView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_Scene.SetColors(CanvasColors(palette()));
}

void CCanvas::drawBackground(QPainter* painter, QRectF const& rect)
{
    CanvasColors const& colors = m_Scene.GetColors();
    double const zoom = transform().m11();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->fillRect(rect, colors.ground);
    if (zoom >= kFaintLinesFrom)
        PaintGrid(*painter, rect, false, colors.faintLine);
    if (zoom >= kStrongLinesFrom)
        PaintGrid(*painter, rect, true, colors.strongLine);
    painter->setRenderHint(QPainter::Antialiasing);
}
