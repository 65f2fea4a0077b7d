#include "nodebrowser_p.h"

#include "hostservices.h"
#include "qtcompat.h"

#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

/// Heights of the header's two strips, in pixels.
int const kSearchStripHeight = 23;
int const kTabStripHeight = 20;

} // namespace

QSize const CNodeBrowser::kClearButtonSize(20, 20);
char const CNodeBrowser::kAppTagsCategory[] = "ApplicationTags";

CNodeBrowser::CNodeBrowser(eConfigType config)
    : m_ScStatesStale(true)
    , m_CommandManager(nullptr)
    , m_ScrollBar(nullptr)
    , m_SearchEdit(nullptr)
    , m_ClearButton(nullptr)
    , m_TabBar(nullptr)
    , m_ConfigType(eConfigTypes)
    , m_HeaderHeight(kSearchStripHeight)
    , m_ScsTask(nullptr)
    , m_SourceControlEnabled(false)
    , m_VisibleListDirty(false)
    , m_ItemListDirty(false)
    // All ones in 32 bits, not in 64: no test tells the two apart, all compare with the rows.
    , m_SelectedIndex(kNoRow)
    , m_ContentHeight(0)
    , m_ScrollOffset(0)
    , m_BrowserConfig(config)
    , m_Private(new Private(m_TagsRegistry))
{
    CreateChildren();
    ConnectChildren();
    m_ScsTask = new ScsTask(QLatin1String("NodeBrowser"));
    try {
        ConnectRevisionControl();
    } catch (...) {
        // The destructor does not run for an object whose constructor failed.
        m_ScsTask->DeleteMe();
        throw;
    }
}

CNodeBrowser::~CNodeBrowser()
{
    // First of all, so that no notification reaches a browser that is half gone.
    Unregister();
    // The drag belongs to the browser and would go in the middle of its event loop.
    if (m_Private->isDragging)
        qtcompat::CancelDrag(this);
    delete m_ScrollBar;
    delete m_TabBar;
    delete m_SearchEdit;
    delete m_ClearButton;
    m_ScsTask->DeleteMe();
    m_ScsTask = nullptr;
}

void CNodeBrowser::CreateChildren()
{
    m_ScrollBar = new QScrollBar(Qt::Vertical, this);
    m_ScrollBar->hide();
    m_SearchEdit = new QLineEdit(this);
    m_ClearButton =
        new QPushButton(style()->standardIcon(QStyle::SP_TitleBarCloseButton), QString(), this);
    // Every configuration but the full one shows types, whatever it is called.
    if (m_BrowserConfig == eConfigNodes)
        CreateTabs();
}

void CNodeBrowser::CreateTabs()
{
    m_TabBar = new QTabBar(this);
    m_TabBar->addTab(QLatin1String("Nodes"));
    m_TabBar->addTab(QLatin1String("Types"));
    m_TabBar->addTab(QLatin1String("All"));
    m_ConfigType = eConfigNodes;
    m_TabBar->setCurrentIndex(0);
    m_HeaderHeight += kTabStripHeight;
}

void CNodeBrowser::ConnectChildren()
{
    connect(m_ScrollBar, SIGNAL(valueChanged(int)), this, SLOT(SliderValueChanged(int)));
    connect(m_SearchEdit, SIGNAL(textChanged(const QString&)), this,
            SLOT(SearchTextChange(const QString&)));
    connect(m_SearchEdit, SIGNAL(returnPressed()), this, SLOT(EnterPressed()));
    if (m_TabBar)
        connect(m_TabBar, SIGNAL(currentChanged(int)), this, SLOT(TabChanged(int)));
    connect(m_ClearButton, SIGNAL(clicked(bool)), this, SLOT(ClearButton(bool)));
}

void CNodeBrowser::ConnectRevisionControl()
{
    IRevisionControlPropertiesMgr* const manager =
        FindHostService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr");
    if (!manager)
        return;
    manager->Connect(this, m_TrackedSlots.Add());
    OnRevisionControlPropertiesChange(manager);
}

void CNodeBrowser::Unregister()
{
    if (m_ItemTOC.IsValid())
        m_ItemTOC.RemoveNotification(this, kItemTOCNotificationInterface, m_ItemTOC.GetContextID());
    if (m_ItemLibrary.IsValid())
        m_ItemLibrary.RemoveNotification(this, kItemLibraryNotificationInterface,
                                         m_ItemLibrary.GetContextID());
}

void CNodeBrowser::SetItemLibrary(ItemLibraryAccessor const& library)
{
    m_Private->isFresh = false;
    Unregister();
    m_ItemLibrary = library;
    m_ItemLibrary.AddNotification(this, kItemLibraryNotificationInterface,
                                  m_ItemLibrary.GetContextID());
    m_ItemTOC = GetTOC(m_ItemLibrary);
    m_ItemTOC.AddNotification(this, kItemTOCNotificationInterface, m_ItemTOC.GetContextID());
    m_TagsRegistry.SetItemLibrary(m_ItemLibrary);
    // The list is there at once; the next paint asks for the states.
    m_ScStatesStale = true;
    BuildAllItemList(nullptr);
    m_Private->isFresh = !m_ItemListDirty;
}

void CNodeBrowser::SetCommandManager(wek::fwk::ICommandManager* commandManager)
{
    m_CommandManager = commandManager;
}

void CNodeBrowser::SetSourceControlEnabled(bool enabled)
{
    if (enabled == m_SourceControlEnabled)
        return;
    m_SourceControlEnabled = enabled;
    m_Private->isFresh = false;
    if (enabled) {
        m_ScStatesStale = true;
        update();
    } else {
        QScopedValueRollback<bool> const use(m_Private->isListInUse);
        m_Private->isListInUse = true;
        for (Item& item : m_Private->IsRebuilding() ? m_Private->items : m_Items)
            item.setScState(ScsUtils::kNoState);
    }
}
