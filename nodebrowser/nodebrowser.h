#ifndef NODEBROWSER_NODEBROWSER_H
#define NODEBROWSER_NODEBROWSER_H

#include "hostapi/datamodel.h"
#include "hostapi/qorm.h"
#include "hostapi/sourcecontrol.h"
#include "itemtagsregistry.h"
#include "nodebrowser_export.h"

#include <QPixmap>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QWidget>

#include <cstdint>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

class QAction;
class QHelpEvent;
class QLineEdit;
class QMenu;
class QPushButton;
class QScrollBar;
class QTabBar;

namespace nodebrowser {
struct SItemKind;
}

/// The node browser: lists, searches and manages the items of an item library.
///
/// A host makes one, calls SetCommandManager and SetItemLibrary, and listens to
/// SelectionChanged. Everything runs on the GUI thread; exceptions of the host's libraries pass
/// through. Changes of the library only mark what is out of date: the next paint rebuilds.
/// Lengths are device-independent pixels.
class NODEBROWSER_EXPORT CNodeBrowser : public QWidget,
                                        public tarno::datamodel::IItemTOCNotification,
                                        public tarno::datamodel::IItemLibraryNotification,
                                        // Private, so that the meta-object does not answer for it.
                                        private IRevisionControlPropertiesMgr_Slot
{
    Q_OBJECT

public:
    /// As constructor argument: eConfigNodes is the full browser with tabs, eConfigTypes the
    /// type chooser without tabs and without context menu; any other value lacks the tabs only.
    /// As filter: the kinds of item that are shown; a value that is not listed shows nothing.
    enum eConfigType : int
    {
        eConfigNodes = 0,
        eConfigTypes = 1,
        eConfigAll = 2,
        eConfigSignatures = 3,
        eConfigConstants = 4
    };

    /// What CreateMenuCommand can add.
    enum eMenuCommand : int
    {
        eMenuNewSignature = 0,
        eMenuNewCompound = 1,
        eMenuNewLoopCompound = 2,
        eMenuSaveGraphLibrary = 3
    };

    class Item;

    explicit CNodeBrowser(eConfigType config);
    ~CNodeBrowser() override;

    /// Shows the library, which must be valid and have a table of contents; it has to outlive
    /// the browser or be replaced first. The item list is rebuilt at once.
    void SetItemLibrary(tarno::datamodel::ItemLibraryAccessor const& library);
    /// Where commands record their changes; not owned, may be null.
    void SetCommandManager(wek::fwk::ICommandManager* commandManager);
    /// Whether source-control states are shown; follows the host's revision-control
    /// properties by itself when the host has that service.
    void SetSourceControlEnabled(bool enabled);

    /// The selected item; null when nothing is selected.
    tarno::datamodel::ItemID GetSelection();
    /// True when the selected item is a type.
    bool IsSelectionType();

    /// Adds one of the library-wide commands to a menu of the host, which owns the action. A
    /// value that is not listed adds nothing.
    void CreateMenuCommand(eMenuCommand command, QMenu* menu);

    void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* manager) override;

    void ItemAdded(tarno::datamodel::ItemAccessor& item) override;
    void ItemRemoved(tarno::datamodel::ItemAccessor& item) override;

    void OnBeginChanges(tarno::datamodel::ItemLibraryAccessor& library) override;
    void OnEndChanges(tarno::datamodel::ItemLibraryAccessor& library) override;
    void LibraryInvalidated(tarno::datamodel::ItemLibraryAccessor& library) override;
    void ItemNameChanged(tarno::datamodel::ItemLibraryAccessor& library,
                         tarno::datamodel::ItemID const& id) override;
    void ItemTagsChanged(tarno::datamodel::ItemLibraryAccessor& library,
                         tarno::datamodel::ItemID const& id, char const* category) override;
    void ItemAccessStateChanged(tarno::datamodel::ItemLibraryAccessor& library,
                                tarno::datamodel::ItemID const& id, long state) override;
    void OnPreCommit(tarno::datamodel::ItemLibraryAccessor& library, bool* cancel) override;
    void OnPostCommit(tarno::datamodel::ItemLibraryAccessor& library) override;

Q_SIGNALS:
    /// A press selected a row, or Enter confirmed the selection.
    void SelectionChanged();

protected Q_SLOTS:
    void SliderValueChanged(int value);
    void SearchTextChange(const QString& text);
    void EnterPressed();
    void TabChanged(int index);
    void OnNewSignature();
    void OnNewCompound();
    void OnNewLoopCompound();
    void OnSaveGraphLibrary();
    void ClearButton(bool in_bChecked);

    // Commands on the selected row; a subclass may replace them.
    virtual void OnRenameItem();
    virtual void OnDeleteItem();
    virtual void OnCheckOutItem();
    virtual void OnMakeItemWritable();
    virtual void OnShowItemFiles();
    virtual void OnEditItemTags();
    /// Takes its input from the data of the action that sent the signal.
    virtual void OnDatasourceChange();

protected:
    /// What GetItemIndexAt answers where there is no row.
    static constexpr unsigned long kNoRow = 0xFFFFFFFFUL;
    /// Pitch of the rows, in pixels.
    static constexpr int kRowHeight = 24;
    static QSize const kClearButtonSize;
    /// The category under which the library stores the tags that users edit.
    static char const kAppTagsCategory[];

    /// Selects the row and runs its context menu at the global position.
    virtual void PopContexMenu(QPoint const& globalPos, unsigned long index);

    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    /// Makes the item list anew, sorted by name, and tags it. Appends the database objects whose
    /// source-control state is wanted to the list, if there is one.
    void BuildAllItemList(std::list<qorm::QormHandle<qorm::IDbObject>>* stateRequests);
    /// Filters and ranks the item list into the visible rows.
    void UpdateVisibleItems();
    /// Whether the item is to be shown, and how well it matches: smaller is better.
    bool CompareToFilter(tarno::datamodel::ItemAccessor& item, unsigned long* score) const;
    /// Range, page step and visibility of the scroll bar from the height of all rows.
    void UpdateScrollbar();
    /// Row under the point, 0xFFFFFFFF right of the widget or in the header. The row may be past
    /// the last one.
    unsigned long GetItemIndexAt(QPoint const& point) const;

    bool m_ScStatesStale;
    wek::fwk::ICommandManager* m_CommandManager;
    tarno::datamodel::ItemLibraryAccessor m_ItemLibrary;
    tarno::datamodel::ItemTOCAccessor m_ItemTOC;
    QScrollBar* m_ScrollBar;
    QLineEdit* m_SearchEdit;
    QPushButton* m_ClearButton;
    QTabBar* m_TabBar;
    eConfigType m_ConfigType;
    int m_HeaderHeight;
    ScsTask* m_ScsTask;
    bool m_SourceControlEnabled;
    QString m_SearchText;
    QString m_SearchTextLower;
    bool m_VisibleListDirty;
    bool m_ItemListDirty;
    QPoint m_PressPos;
    /// Position in m_VisibleItems; anything not below its size means that nothing is selected.
    unsigned long m_SelectedIndex;
    int m_ContentHeight;
    int m_ScrollOffset;
    /// Positions in m_Items of the rows, in the order shown.
    std::vector<unsigned long> m_VisibleItems;
    std::vector<Item> m_Items;
    ItemTagsRegistry m_TagsRegistry;
    eConfigType m_BrowserConfig;

private:
    typedef std::list<qorm::QormHandle<qorm::IDbObject>> StateRequests;

    // nodebrowser.cpp
    void CreateChildren();
    void CreateTabs();
    void ConnectChildren();
    void ConnectRevisionControl();
    void Unregister();

    // nodebrowser_items.cpp
    void BeginCollecting();
    void CollectItems(StateRequests* stateRequests);
    Item& CollectItem(tarno::datamodel::ItemAccessor& accessor,
                      qorm::IRevisionControlUIHelper* helper);
    void CollectNames();
    void TakeItems(std::vector<std::uint32_t> places);
    bool CanRequestStates() const;
    void RequestStates(StateRequests& stateRequests);
    void RequestState(Item& item, qorm::IRevisionControlUIHelper* helper,
                      StateRequests& stateRequests);
    /// The item of a row, null for a row that does not exist or whose item is gone since a
    /// rebuild broke off.
    Item const* ItemAtRow(unsigned long row) const;
    /// A copy, which outlives the list; invalid where ItemAtRow is null.
    tarno::datamodel::ItemAccessor AccessorAtRow(unsigned long row) const;
    /// Null for an invalid accessor, of which the host is not asked.
    static tarno::datamodel::ItemID AskItemID(tarno::datamodel::ItemAccessor const& item);

    // nodebrowser_filter.cpp
    std::set<std::string> GetSearchWords() const;
    std::vector<unsigned long> MatchItems();
    std::vector<unsigned long> MatchList();

    // nodebrowser_input.cpp
    void ShowRowToolTip(QHelpEvent* event);
    /// False when the wheel is not over the rows.
    bool ScrollByWheel(QWheelEvent* event);

    // nodebrowser_menu.cpp
    QAction* AddMenuEntry(QMenu* menu, QString const& text, char const* slot);
    class ContextMenu;
    struct SMenuFacts;
    void FillContextMenu(QMenu& menu, SMenuFacts const& facts);
    void AddSourceMenu(QMenu& menu, SMenuFacts const& facts);
    /// The context menu of which an entry sent the signal that called the running slot.
    ContextMenu* ChosenMenu() const;
    /// The item that the menu names, wherever it stands now; invalid when it is gone, or its
    /// library is not the one shown any more.
    tarno::datamodel::ItemAccessor FindMenuItem(ContextMenu const& menu) const;

    // nodebrowser_commands.cpp
    struct SNewItem;
    bool AskForNewItem(char const* kind, char const* defaultName, bool showSignature,
                       SNewItem& item);
    bool IsShown(tarno::datamodel::ItemLibraryAccessor const& library) const;
    class MenuCommand;
    class ItemCommand;

    // nodebrowser_notify.cpp
    void MarkItemListDirty();
    Item* FindItem(tarno::datamodel::ItemID const& id);

    // nodebrowser_view.cpp
    void ConsumeDirtyFlags();
    void RebuildItemList();
    /// The widget below its header.
    QRect GetRowArea() const;
    /// Of the whole row, in sight or not.
    QRect GetRowRect(int row) const;
    void PaintRows(QPainter& painter);
    void PaintRow(QPainter& painter, int row, Item const& item);

    // nodebrowser_p.h
    struct Private;
    std::unique_ptr<Private> const m_Private;
};

/// One item of the list, kept by value; lives until the next rebuild.
class CNodeBrowser::Item
{
public:
    /// Only compounds keep the state given. Raises the database's null-pointer error for an
    /// item whose database object has no data source.
    Item(CNodeBrowser* browser, tarno::datamodel::ItemAccessor& item, int scState,
         tarno::datamodel::ItemID const& extraID);
    Item(Item&& other) = default;
    Item& operator=(Item&& other) = default;

    void setIcon(QPixmap const& icon);
    void setScState(int state);
    /// Recomposes the display icon and schedules a repaint of the browser.
    void UpdateIcon();
    tarno::datamodel::ItemID GetItemID() const;

    CNodeBrowser* m_Browser;
    tarno::datamodel::ItemAccessor m_Accessor;
    QPixmap m_Icon;
    QPixmap m_DisplayIcon;
    int m_ScState;
    /// A compound from a data source that can be written: it takes part in source control.
    bool m_HasScState;
    /// Lives with one of the application's components: drawn with the factory badge.
    bool m_IsFactory;
    bool m_IsReadOnlySource;
    /// Carried along; nothing reads it.
    tarno::datamodel::ItemID m_ExtraID;

private:
    friend class CNodeBrowser;

    /// Without icons and flags.
    Item(CNodeBrowser* browser, tarno::datamodel::ItemAccessor& item,
         tarno::datamodel::ItemID const& extraID);
    nodebrowser::SItemKind const& Describe(tarno::datamodel::ItemID const& id, int scState,
                                           qorm::IRevisionControlUIHelper* helper);
    void ReadSourceFlags(tarno::datamodel::ItemID const& id,
                         qorm::IRevisionControlUIHelper* helper);
    void ReadTypeAssetFlags(qorm::QormHandle<qorm::IDbObject> const& object);
    void ComposeIcon();
};

#endif
