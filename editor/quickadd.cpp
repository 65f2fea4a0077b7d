#include "quickadd.h"

#include <palette/nodepalette.h>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

using namespace tarno::datamodel;

namespace {

/// In pixels.
QSize const kSize(300, 380);
std::size_t const kMostRecent = 8;

QPoint PositionOf(QMouseEvent const* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

/// A click chooses. There are no drags and dialogs, which would close the popup.
class CChooser final : public CNodePalette
{
public:
    explicit CChooser(QWidget* parent)
        // Without tabs and menus.
        : CNodePalette(eConfigTypes, parent)
    {
        // In one list, so that constants are found by typing, too.
        m_ConfigType = eConfigAll;
    }

protected:
    void OnRenameItem() override {}

    void mousePressEvent(QMouseEvent* event) override
    {
        m_IsPressed = event->button() == Qt::LeftButton;
        CNodePalette::mousePressEvent(event);
    }

    // The panel would make the compound the current one.
    void mouseDoubleClickEvent(QMouseEvent* event) override
    {
        mousePressEvent(event);
    }

    void mouseMoveEvent(QMouseEvent*) override {}

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        int const row = m_IsPressed ? GetRowAt(PositionOf(event)) : -1;
        m_IsPressed = false;
        if (row >= 0 && row == GetSelectedRow())
            ActivateRow(row);
    }

private:
    /// The release of the press that opened the popup chooses nothing.
    bool m_IsPressed = false;
};

} // namespace

CQuickAdd::CQuickAdd(QWidget* parent)
    : QFrame(parent, Qt::Popup)
    , m_Palette(new CChooser(this))
{
    setFrameShape(QFrame::StyledPanel);
    setAccessibleName(tr("Add a node"));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(m_Palette);
    resize(kSize);
    connect(m_Palette, &CNodePalette::ItemActivated, this, &CQuickAdd::Choose);
    connect(m_Palette, &CNodePalette::Dismissed, this, &QWidget::hide);
}

CNodePalette& CQuickAdd::GetPalette() const
{
    return *m_Palette;
}

void CQuickAdd::SetLibrary(ItemLibraryAccessor const& library)
{
    hide();
    m_Library = library;
    m_IsListed = false;
    m_Recent.clear();
}

void CQuickAdd::AddRecent(ItemID const& id)
{
    m_Recent.erase(std::remove(m_Recent.begin(), m_Recent.end(), id), m_Recent.end());
    m_Recent.insert(m_Recent.begin(), id);
    m_Recent.resize(std::min(m_Recent.size(), kMostRecent));
}

void CQuickAdd::Open(QPoint const& globalPos)
{
    if (!m_IsListed)
        m_Palette->SetItemLibrary(m_Library);
    m_IsListed = true;
    m_Palette->SetRecentItems(m_Recent);
    m_Palette->StartSearch();
    QScreen const* const found = QGuiApplication::screenAt(globalPos);
    QRect const room = (found ? found : QGuiApplication::primaryScreen())->availableGeometry();
    QPoint const last = room.bottomRight() - rect().bottomRight();
    move(std::max(room.left(), std::min(globalPos.x(), last.x())),
         std::max(room.top(), std::min(globalPos.y(), last.y())));
    show();
}

void CQuickAdd::Choose(ItemID const& id)
{
    // Before hide(), because the canvas forgets on Closed() where it wanted the node.
    Q_EMIT ItemChosen(id);
    hide();
}

void CQuickAdd::hideEvent(QHideEvent* event)
{
    QFrame::hideEvent(event);
    Q_EMIT Closed();
}

#include "moc_quickadd.cpp"
