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
struct SSourceFlags;
} // namespace nodebrowser

/// The node browser: lists, searches and manages the items of an item library.
///
/// A host makes one, calls SetCommandManager and SetItemLibrary, and listens to
/// SelectionChanged. Everything runs on the GUI thread; exceptions of the host's libraries pass
/// through. Changes of the library only set dirty flags: the next paint rebuilds.
/// Lengths are device-independent pixels. A row is a position in the list as it is shown, from 0;
/// which item stands there changes with paints, Enter and SetItemLibrary.
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
        eConfigNodes = 0,      ///< solvers, and compounds that are no signatures
        eConfigTypes = 1,      ///< types
        eConfigAll = 2,        ///< everything
        eConfigSignatures = 3, ///< compounds that are signatures
        eConfigConstants = 4   ///< global constants
    };

    /// The commands that CreateMenuCommand can add.
    enum eMenuCommand : int
    {
        eMenuNewSignature = 0,    ///< "Compound signature"
        eMenuNewCompound = 1,     ///< "Public compound"
        eMenuNewLoopCompound = 2, ///< "Public looping compound"
        eMenuSaveGraphLibrary = 3 ///< "Save graph library"
    };

    class Item;

    /// Without a parent and a library: nothing is listed. Connects to the host's revision-control
    /// properties if there is that service.
    explicit CNodeBrowser(eConfigType config);
    /// Unregisters from the library, and ends a drag, menu or dialog that is running.
    ~CNodeBrowser() override;

    /// Shows the library, which must be valid and have a table of contents; it has to outlive
    /// the browser or be replaced first. The item list is rebuilt at once; the selection stays with
    /// its row, whichever item that shows now.
    void SetItemLibrary(tarno::datamodel::ItemLibraryAccessor const& library);
    /// Where commands record their changes; not owned, has to outlive the browser. Null, as at
    /// first, leaves them unrecorded.
    void SetCommandManager(wek::fwk::ICommandManager* commandManager);
    /// Whether source-control states are shown, which they are not at first; follows the host's
    /// revision-control properties by itself when the host has that service. Switched on where
    /// ScsUtils::IsFileVersionControlActive() is false, icons of compounds stand out of line.
    void SetSourceControlEnabled(bool enabled);

    /// The selected item; null when nothing is selected. For an item that is gone and still shown,
    /// null or the identifier that it had.
    tarno::datamodel::ItemID GetSelection();
    /// True when the selected item is a type; false without a selection or a library.
    bool IsSelectionType();

    /// Adds one of the library-wide commands to a menu of the host, which is not null and owns the
    /// action; it does nothing once the browser is gone. A value that is not listed adds nothing.
    void CreateMenuCommand(eMenuCommand command, QMenu* menu);

    /// Shows source-control states if the manager says so and the library's files are under version
    /// control, and none otherwise; null shows none.
    void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* manager) override;

    // Called by the host's data model; the interfaces say what follows.
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
    /// A press selected a row, or Enter confirmed the selection, which may be none in an empty
    /// list.
    void SelectionChanged();

protected Q_SLOTS:
    /// Scrolls to where the scroll bar is, whatever the argument says.
    void SliderValueChanged(int value);
    /// Takes the text to search for; the next paint filters.
    void SearchTextChange(const QString& text);
    /// Selects the first row if none is selected, and sends SelectionChanged().
    void EnterPressed();
    /// Shows the kinds of item of the tab, whose index is an eConfigType; the next paint filters.
    void TabChanged(int index);
    /// @{

    /// Asks for the name and category of a new item, and for the signature that a compound is to
    /// implement; has the host make it and the editor work on it. Runs an event loop; the browser
    /// may be gone after it.
    void OnNewSignature();
    void OnNewCompound();
    void OnNewLoopCompound();
    /// @}

    /// Has the host write what has changed, and reports nothing: the host does.
    void OnSaveGraphLibrary();
    /// Empties the search field, whatever the argument says.
    void ClearButton(bool in_bChecked);

    /// @name Commands on an item
    /// Of the item that the context menu names when they were chosen there, and of the selected row
    /// otherwise. Without one, or without what they need of the host, they do nothing; the host
    /// reports what it refuses. A subclass may replace them. They may run an event loop, and the
    /// browser may be gone after it.
    /// @{

    /// Asks for a new name, and has the host rename the compound if it differs.
    virtual void OnRenameItem();
    /// Does nothing: the menu shows the entry and never lets it be chosen.
    virtual void OnDeleteItem();
    /// Has the host check out the item's database object.
    virtual void OnCheckOutItem();
    /// Has the host make the files of the item's database object writable.
    virtual void OnMakeItemWritable();
    /// Has the host show the files of the item's database object.
    virtual void OnShowItemFiles();
    /// Asks for the tags, and has the host store them if they differ from the stored text.
    virtual void OnEditItemTags();
    /// Has the host move the compound to another data source. Takes its input from the data of the
    /// action that sent the signal: the identifiers of the compound's database object and of the
    /// resource, two texts. An object that is gone raises the database's null-pointer error.
    virtual void OnDatasourceChange();
    /// @}

protected:
    /// The result of GetItemIndexAt where there is no row.
    static constexpr unsigned long kNoRow = 0xFFFFFFFFUL;
    /// Pitch of the rows, in pixels.
    static constexpr int kRowHeight = 24;
    /// The size of the button beside the search field, in pixels.
    static QSize const kClearButtonSize;
    /// The category under which the library stores the tags that users edit.
    static char const kAppTagsCategory[];

    /// Selects the row and runs its context menu at the global position, in an event loop after
    /// which the browser may be gone. Does nothing more for a row without an item.
    virtual void PopContexMenu(QPoint const& globalPos, unsigned long index);

    /// @name Events of the toolkit
    /// @{

    /// Tool tips of compounds, and the wheel over the rows, which scrolls by three of them.
    bool event(QEvent* event) override;
    /// Selects the row. The right button runs its context menu, and the browser may be gone then.
    void mousePressEvent(QMouseEvent* event) override;
    /// Has the editor work on the compound of the row.
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    /// Begins to drag the selected item. The browser may be gone when the drag is over.
    void mouseMoveEvent(QMouseEvent* event) override;
    /// Makes and filters the list if that is due, and paints the rows in sight.
    void paintEvent(QPaintEvent* event) override;
    /// Places the children.
    void resizeEvent(QResizeEvent* event) override;
    /// @}

    /// Makes the item list anew, sorted by name, and tags it. Appends the database objects whose
    /// source-control state is wanted to the list, unless that is null. An exception of the host
    /// leaves the items made so far.
    void BuildAllItemList(std::list<qorm::QormHandle<qorm::IDbObject>>* stateRequests);
    /// Filters and ranks the item list into the visible rows, and sizes the scroll bar. Without a
    /// library there are none, and the scroll bar stays as it is.
    void UpdateVisibleItems();
    /// Whether the item is to be shown. `score`, which is not null and only set then, says how well
    /// it matches: smaller is better.
    bool CompareToFilter(tarno::datamodel::ItemAccessor& item, unsigned long* score) const;
    /// Range, page step and visibility of the scroll bar from the height of all rows.
    void UpdateScrollbar();
    /// Row under the point of the widget, kNoRow right of the widget or in the header. The row may
    /// be past the last one.
    unsigned long GetItemIndexAt(QPoint const& point) const;

    /// The next paint asks for the source-control states of the items, and makes the list anew
    /// unless it has just been made.
    bool m_ScStatesStale;
    /// Where commands record their changes; not owned, may be null.
    wek::fwk::ICommandManager* m_CommandManager;
    /// The library shown; invalid at first.
    tarno::datamodel::ItemLibraryAccessor m_ItemLibrary;
    /// Its table of contents.
    tarno::datamodel::ItemTOCAccessor m_ItemTOC;
    /// @{

    /// A child, which the browser destroys; the tab bar is null but in the full browser.
    QScrollBar* m_ScrollBar;
    QLineEdit* m_SearchEdit;
    QPushButton* m_ClearButton;
    QTabBar* m_TabBar;
    /// @}

    /// The kinds of item that are shown.
    eConfigType m_ConfigType;
    /// Height of the area above the rows, in pixels: 43 with tabs, otherwise 23.
    int m_HeaderHeight;
    /// Asks for source-control states; freed with ScsTask::DeleteMe().
    ScsTask* m_ScsTask;
    /// Source-control states are shown.
    bool m_SourceControlEnabled;
    /// The text of the search field, as typed.
    QString m_SearchText;
    /// The same in lower case.
    QString m_SearchTextLower;
    /// The next paint filters the list.
    bool m_VisibleListDirty;
    /// The next paint makes the list anew.
    bool m_ItemListDirty;
    /// Where the left button was pressed on a row, in the widget: a drag begins away from it.
    QPoint m_PressPos;
    /// Position in m_VisibleItems; anything not below its size means that nothing is selected.
    unsigned long m_SelectedIndex;
    /// The height of all rows, in pixels.
    int m_ContentHeight;
    /// How far the rows are scrolled up, in pixels.
    int m_ScrollOffset;
    /// Positions in m_Items of the rows, in the order shown.
    std::vector<unsigned long> m_VisibleItems;
    /// All items of the library that may be shown, by name.
    std::vector<Item> m_Items;
    /// The tags of these items.
    ItemTagsRegistry m_TagsRegistry;
    /// The configuration passed to the constructor.
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
                      qorm::IRevisionControlUIHelper* helper,
                      std::vector<nodebrowser::SSourceFlags>& asked);
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
    /// The rectangle of the whole row, in sight or not.
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
    /// Asks the host for kind, icon and flags. The browser is not owned and outlives the item. Only
    /// compounds keep the state given. Raises the database's null-pointer error for an item whose
    /// database object has no data source.
    Item(CNodeBrowser* browser, tarno::datamodel::ItemAccessor& item, int scState,
         tarno::datamodel::ItemID const& extraID);
    /// @{

    /// Moves only.
    Item(Item&& other) = default;
    Item& operator=(Item&& other) = default;
    /// @}

    /// The icon proper, without badge and state.
    void setIcon(QPixmap const& icon);
    /// Source-control bits; the same ones again do nothing.
    void setScState(int state);
    /// Recomposes the display icon and schedules a repaint of the browser.
    void UpdateIcon();
    /// Null for an invalid item; for one that is gone, null or the identifier that it had.
    tarno::datamodel::ItemID GetItemID() const;

    /// The browser whose list holds the item.
    CNodeBrowser* m_Browser;
    /// The item itself, which may be gone.
    tarno::datamodel::ItemAccessor m_Accessor;
    /// The icon proper; null when the program lacks the image.
    QPixmap m_Icon;
    /// The icon as it is painted, with badge and state.
    QPixmap m_DisplayIcon;
    /// Source-control bits; see ScsUtils.
    int m_ScState;
    /// A compound from a data source that can be written: it takes part in source control.
    bool m_HasScState;
    /// Lives with one of the application's components, or is a locked type asset: drawn with the
    /// factory badge.
    bool m_IsFactory;
    /// From a data source that is read-only, or a locked type asset.
    bool m_IsReadOnlySource;
    /// Carried along; nothing reads it.
    tarno::datamodel::ItemID m_ExtraID;

private:
    friend class CNodeBrowser;

    /// Without icons and flags.
    Item(CNodeBrowser* browser, tarno::datamodel::ItemAccessor& item,
         tarno::datamodel::ItemID const& extraID);
    nodebrowser::SItemKind const& Describe(tarno::datamodel::ItemID const& id, int scState,
                                           qorm::IRevisionControlUIHelper* helper,
                                           std::vector<nodebrowser::SSourceFlags>& asked);
    void ReadSourceFlags(tarno::datamodel::ItemID const& id, qorm::IRevisionControlUIHelper* helper,
                         std::vector<nodebrowser::SSourceFlags>& asked);
    void ReadTypeAssetFlags(qorm::QormHandle<qorm::IDbObject> const& object);
    void ComposeIcon(qint64 iconKey);
};

#endif
