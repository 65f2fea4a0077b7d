#ifndef PALETTE_NODEPALETTE_H
#define PALETTE_NODEPALETTE_H

#include "palette_export.h"

#include <nodebrowser/nodebrowser.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// The node browser for daily use: the panel with full keyboard navigation, support for screen
/// readers, rows that are always painted in their current state, and an optional ranking of search
/// results by name; see @ref guide-palette "docs/palette.md".
///
/// It is used as the panel is; only the additions are documented here. It relies only on the
/// panel's interface for subclasses.
///
/// Rows are numbered from 0 in the order shown. Each function that takes or gives one first brings
/// the rows up to the search text and the library, as a paint would; a row that does not exist has
/// no text, no item and an empty rectangle, and operations on it do nothing. Exceptions of the host
/// pass through; the rows stay out of date then. Lengths are device-independent pixels.
class PALETTE_EXPORT CNodePalette : public CNodeBrowser
{
    Q_OBJECT

public:
    /// The order of search results.
    enum eRanking
    {
        /// As the panel has them.
        ePanelRanking,
        /// The best names first.
        eNameRanking
    };
    Q_ENUM(eRanking)

    /// How an item was activated.
    enum eActivation
    {
        eByKey,        ///< Enter, or a screen reader
        eByDoubleClick ///< the panel has opened a compound then
    };
    Q_ENUM(eActivation)

    /// Details of an item that only the host knows, as plain text. Empty ones are not shown.
    struct SItemDetails
    {
        /// Under which the host files the item.
        QString category;
        /// Names of the inputs, in their order.
        QStringList inputs;
        /// Names of the outputs, in their order.
        QStringList outputs;
        /// The source-control state, if the text of ScsUtils::GetToolTip does not contain it.
        QString state;
    };
    /// Gives the details of an item of the library; empty ones for an item that it does not know.
    typedef std::function<SItemDetails(tarno::datamodel::ItemID const&)> DetailsSource;

    /// As the panel's; the parent, which may be null, owns it.
    explicit CNodePalette(eConfigType config, QWidget* parent = nullptr);
    ~CNodePalette() override;

    /// ePanelRanking at first.
    void SetRanking(eRanking ranking);
    /// The order of search results.
    eRanking GetRanking() const;

    /// These come first, in this order, while the search text is empty. Items that are not listed
    /// are left out.
    void SetRecentItems(std::vector<tarno::datamodel::ItemID> const& items);

    /// Asked for tool tips, for screen readers, and to tell items of one name apart; it must answer
    /// at once and change nothing. An empty function, as at first, gives no details.
    void SetDetailsSource(DetailsSource const& source);

    /// For a palette that pops up: puts the text into the search field, selects the best row and
    /// takes the keyboard focus.
    void StartSearch(QString const& text = QString());
    /// Selects the row of the item and brings it into sight. False when it is not listed.
    bool SelectItem(tarno::datamodel::ItemID const& id);

    /// How many rows there are, in sight or not.
    int GetRowCount();
    /// -1 for none.
    int GetSelectedRow();
    /// The item of the row; null for none, and for one that is gone.
    tarno::datamodel::ItemID GetItemAt(int row);
    /// -1 for an item that is not listed.
    int FindRowOf(tarno::datamodel::ItemID const& id);
    /// The display name, with "*" for an item with unsaved changes.
    QString GetRowName(int row);
    /// Kind, tags, data source and state, in one line.
    QString GetRowDescription(int row);
    /// The same and more, as rich text.
    QString GetRowToolTip(int row);
    /// Where it is in the palette, in part out of sight or not.
    QRect GetRowRect(int row);
    /// Where rows are in sight, in the palette.
    QRect GetRowArea() const;
    /// The row under the point of the palette; -1 for none.
    int GetRowAt(QPoint const& point);

    /// Selects the row and brings it into sight.
    void SelectRow(int row);
    /// Selects the row and activates its item, as the Enter key does.
    void ActivateRow(int row);
    /// Selects the row and runs its context menu beside it, in an event loop after which the
    /// palette may be gone.
    void ShowRowMenu(int row);

    /// As the panel's; the order by name notes it, too.
    void ItemTagsChanged(tarno::datamodel::ItemLibraryAccessor& library,
                         tarno::datamodel::ItemID const& id, char const* category) override;

Q_SIGNALS:
    /// The user wants the item: Enter, a double click, or the same by a screen reader. It comes
    /// after SelectionChanged(), and after the panel has opened a compound that was double-clicked.
    /// The identifier can be queued; with Qt 5, who wants it in a QVariant declares its metatype.
    void ItemActivated(tarno::datamodel::ItemID id,
                       CNodePalette::eActivation how = CNodePalette::eByKey);
    /// The Escape key was pressed without a search text to clear. The focus is back where it was
    /// before it came to the palette; a palette that popped up may close.
    void Dismissed();
    /// The rows were filtered anew, and there are more or fewer.
    void RowCountChanged(int count);

protected:
    /// @{

    /// The toolkit's; they add to the panel's what @ref guide-palette "docs/palette.md" says.
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    /// @}

private:
    struct Private;
    struct SPlace;
    class ItemSource;

    void SetUpChildren();
    void LayOut();

    // The rows.
    bool AreRowsDue() const;
    void EnsureRows();
    void MakeList();
    void PaintListOnly(QPaintEvent* event);
    void UpdateRows(QPaintEvent* event);
    void RebuildInPaint(QPaintEvent* event);
    void ArrangeRows();
    void FilterAndOrderRows();
    void ReorderRows();
    std::size_t PutRecentItemsFirst();
    void CountRowsUnderAll();
    Item const* ItemAt(unsigned long row) const;
    tarno::datamodel::ItemAccessor AccessorAt(int row);
    tarno::datamodel::ItemAccessor AccessorOfItem(unsigned long item) const;
    tarno::datamodel::ItemID IdOfItem(unsigned long item) const;
    std::string NameOfItem(unsigned long item) const;
    SPlace PlaceOfRow(unsigned long row) const;
    unsigned long FindItem(SPlace const& place) const;
    unsigned long FindRow(SPlace const& place) const;
    bool HasSelection() const;
    bool HasRowMenus() const;
    void RestoreSelection(bool isTextNew, bool isFilterNew);
    void RestoreScrolling(bool isTextNew, bool isFilterNew);
    void RememberRows();
    void ScheduleRowNews();
    void TellRowNews();
    void FillIndex();

    // Selecting.
    int RowsInSight() const;
    void ScrollTo(int offset);
    void ShowRow(unsigned long row);
    void ChangeSelection(unsigned long row);
    void TellSelection();
    void ConfirmRow();

    // Keys.
    enum class eKeyUse;
    eKeyUse FindKeyUse(QKeyEvent const& event) const;
    bool UseKey(QKeyEvent& event);
    bool IsUndoOfHost(QKeyEvent const& event) const;
    bool TakesKey(QKeyEvent const& event) const;
    void Navigate(int key);
    void RenameSelection();
    void CopySelection();
    void ShowSelectionTip();
    void TypeIntoSearch(QKeyEvent& event);
    void Escape();
    void GiveFocusBack();
    void RememberFocus(QWidget* before, QWidget* now);

    // Painting and texts.
    void PaintSelection(QPainter& painter);
    void PaintRowNotes(QPainter& painter);
    void PaintRowText(QPainter& painter, unsigned long row, QRect const& room);
    QString GetRowNote(unsigned long row, int room);
    QString TellApart(unsigned long item);
    QString GetTagNote(unsigned long row) const;
    std::set<std::string> AskTags(tarno::datamodel::ItemID const& id) const;
    SItemDetails AskDetails(tarno::datamodel::ItemID const& id) const;
    void ShowTip(QPoint const& globalPos, int row);
    void UpdateCount();
    void PlaceCount();
    void ColourCount();

    std::unique_ptr<Private> const m_Private;
};

#endif
