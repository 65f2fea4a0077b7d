#ifndef PALETTE_NODEPALETTE_P_H
#define PALETTE_NODEPALETTE_P_H

// Not installed: what the palette keeps, for its own files.

#include "emptynotice.h"
#include "nodepalette.h"
#include "rankindex.h"

#include <QLabel>
#include <QPointer>
#include <QTimer>

#include <exception>
#include <map>

/// An item that a row showed: its identifier, and where it stood in the item list, which is where
/// it stands unless the list was made anew since.
struct CNodePalette::SPlace
{
    tarno::datamodel::ItemID id;
    unsigned long item = kNoRow;
};

/// The panel's items for the index.
class CNodePalette::ItemSource : public nodepalette::RankIndex::Source
{
public:
    explicit ItemSource(CNodePalette const& palette);

    std::size_t GetCount() const override;
    std::string GetName(std::size_t item) const override;
    std::string GetTags(std::size_t item) const override;
    std::string GetUid(std::size_t item) const override;

private:
    CNodePalette const& m_Palette;
};

struct CNodePalette::Private
{
    eRanking ranking = ePanelRanking;
    std::vector<tarno::datamodel::ItemID> recentItems;
    DetailsSource detailsSource;

    nodepalette::CEmptyNotice* notice = nullptr;
    QLabel* countLabel = nullptr;
    /// The panel's own height of the header, which fits the tabs of few styles.
    int panelHeaderHeight = 0;
    /// Had the focus before it came to the palette.
    QPointer<QWidget> focusBefore;
    /// An input method is composing text in the search field.
    bool isComposing = false;
    /// The user typed into the search field since it got the focus.
    bool isTyped = false;

    nodepalette::RankIndex index;
    /// Asks the host about items for the index while nothing else is to do.
    QTimer fillTimer;

    /// A paint is running. EnsureRows does nothing then, even if the host calls back while it is
    /// asked about rows.
    bool isPainting = false;
    /// The paint only makes the list and shows nothing; `hostFault` is the host's exception in it.
    bool isListOnly = false;
    std::exception_ptr hostFault;

    // The rows as they were painted last.
    SPlace selected;
    SPlace firstInSight;
    /// How far the first row in sight is scrolled out of it, in pixels.
    int firstInset = 0;
    QString searchText;
    eConfigType filter = eConfigAll;
    /// The number of recent items, which are the first rows.
    std::size_t recentRows = 0;
    /// For an empty list, what the tab "All" would list.
    std::size_t rowsUnderAll = 0;
    /// Notes that tell items of one name apart, by identifier.
    std::map<tarno::datamodel::ItemID, QString> namesakeNotes;

    // The state that listeners were notified of last.
    tarno::datamodel::ItemID toldSelection;
    std::size_t toldCount = 0;
    bool isNewsScheduled = false;
};

#endif
