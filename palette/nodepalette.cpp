#include "nodepalette_p.h"

#include "paletteaccessible.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QMetaType>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QToolTip>

using namespace nodepalette;
using namespace tarno::datamodel;

CNodePalette::CNodePalette(eConfigType config, QWidget* parent)
    : CNodeBrowser(config)
    , m_Private(new Private)
{
    // By name: a host may declare the type itself.
    qRegisterMetaType<ItemID>("tarno::datamodel::ItemID");
    qRegisterMetaType<eActivation>();
    InstallPaletteAccessible();
    SetUpChildren();
    // Connected first, so that later listeners find the palette up to date.
    connect(this, &CNodeBrowser::SelectionChanged, this, [this] {
        RememberRows();
        m_Private->toldSelection = m_Private->selected.id;
        update();
    });
    connect(qApp, &QApplication::focusChanged, this, &CNodePalette::RememberFocus);
    m_Private->fillTimer.setInterval(0);
    connect(&m_Private->fillTimer, &QTimer::timeout, this, &CNodePalette::FillIndex);
    setParent(parent);
}

CNodePalette::~CNodePalette()
{
    // The base deletes children that are watched here, and they lose the focus.
    m_SearchEdit->removeEventFilter(this);
    disconnect(qApp, nullptr, this, nullptr);
}

void CNodePalette::SetUpChildren()
{
    // Elided names are painted over the panel's, which takes a known background.
    setAutoFillBackground(true);
    m_Private->panelHeaderHeight = m_HeaderHeight;
    m_Private->countLabel = new QLabel(m_SearchEdit);
    m_Private->notice = new CEmptyNotice(this);
    setAccessibleName(tr("Item library"));
    m_SearchEdit->setAccessibleName(tr("Search"));
    m_SearchEdit->setPlaceholderText(tr("Search"));
    m_ClearButton->setAccessibleName(tr("Clear the search"));
    m_ClearButton->setToolTip(tr("Clear the search"));
    m_ScrollBar->setAccessibleName(tr("Scroll the list"));
    if (m_TabBar)
        m_TabBar->setAccessibleName(tr("Kinds of items"));

    m_Private->countLabel->setCursor(Qt::IBeamCursor);
    ColourCount();
    connect(m_Private->notice, &CEmptyNotice::ClearChosen, this, [this] {
        m_SearchEdit->clear();
        m_SearchEdit->setFocus();
    });
    connect(m_Private->notice, &CEmptyNotice::AllChosen, this, [this] {
        m_TabBar->setCurrentIndex(eConfigAll);
        m_SearchEdit->setFocus();
    });

    // Rows are chosen while the search field has the focus, so that whatever is typed, composed by
    // an input method or not, arrives there.
    setFocusPolicy(Qt::ClickFocus);
    setFocusProxy(m_SearchEdit);
    m_SearchEdit->installEventFilter(this);
    // Enter is about the rows in the order of the palette, and activates one.
    disconnect(m_SearchEdit, SIGNAL(returnPressed()), this, SLOT(EnterPressed()));
    connect(m_SearchEdit, &QLineEdit::returnPressed, this, &CNodePalette::ConfirmRow);
    connect(m_SearchEdit, &QLineEdit::textEdited, this, [this] { m_Private->isTyped = true; });
    // The tip's row may have moved or gone.
    connect(m_SearchEdit, &QLineEdit::textChanged, this, [] { QToolTip::hideText(); });
}

void CNodePalette::SetRanking(eRanking ranking)
{
    if (ranking == m_Private->ranking)
        return;
    m_Private->ranking = ranking;
    ReorderRows();
}

CNodePalette::eRanking CNodePalette::GetRanking() const
{
    return m_Private->ranking;
}

void CNodePalette::SetRecentItems(std::vector<ItemID> const& items)
{
    if (items == m_Private->recentItems)
        return;
    m_Private->recentItems = items;
    ReorderRows();
}

/// A list that is scrolled to its top stays there; otherwise the first visible row stays visible.
void CNodePalette::ReorderRows()
{
    if (m_ScrollOffset == 0)
        m_Private->firstInSight = SPlace();
    m_VisibleListDirty = true;
    update();
}

void CNodePalette::SetDetailsSource(DetailsSource const& source)
{
    m_Private->detailsSource = source;
    m_Private->namesakeNotes.clear();
    update();
}

void CNodePalette::StartSearch(QString const& text)
{
    m_SearchEdit->setText(text);
    EnsureRows();
    ScrollTo(0);
    ChangeSelection(0);
    m_SearchEdit->setFocus(Qt::PopupFocusReason);
}

bool CNodePalette::SelectItem(ItemID const& id)
{
    int const row = FindRowOf(id);
    if (row < 0)
        return false;
    ChangeSelection(static_cast<unsigned long>(row));
    return true;
}

void CNodePalette::ItemTagsChanged(ItemLibraryAccessor& library, ItemID const& id,
                                   char const* category)
{
    CNodeBrowser::ItemTagsChanged(library, id, category);
    m_Private->index.ForgetTags();
}

#include "moc_nodepalette.cpp"
