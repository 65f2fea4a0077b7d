#ifndef EDITOR_QUICKADD_H
#define EDITOR_QUICKADD_H

#include <datamodel.h>

#include <QFrame>

#include <vector>

class CNodePalette;

/// A palette that pops up for one item to be chosen, by Enter or a click. Those chosen last come
/// first.
class CQuickAdd : public QFrame
{
    Q_OBJECT

public:
    explicit CQuickAdd(QWidget* parent);

    CNodePalette& GetPalette() const;
    /// Listed from the next opening on: a large library takes its time.
    void SetLibrary(tarno::datamodel::ItemLibraryAccessor const& library);
    void AddRecent(tarno::datamodel::ItemID const& id);
    /// Opens the popup with its top left at the point of the screen, or as near to it as the popup
    /// fits on the screen.
    void Open(QPoint const& globalPos);

Q_SIGNALS:
    /// Closed() comes next.
    void ItemChosen(tarno::datamodel::ItemID id);
    void Closed();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void Choose(tarno::datamodel::ItemID const& id);

    CNodePalette* const m_Palette;
    tarno::datamodel::ItemLibraryAccessor m_Library;
    bool m_IsListed = false;
    std::vector<tarno::datamodel::ItemID> m_Recent;
};

#endif
