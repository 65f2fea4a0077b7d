#ifndef BENCHMARKS_PANELSUBJECT_H
#define BENCHMARKS_PANELSUBJECT_H

#include "listeditems.h"
#include "nodebrowser.h"
#include "subject.h"

/// The panel, showing every kind of item.
class PanelSubject : public Subject
{
public:
    /// `items` are those of the library and outlive the subject.
    PanelSubject(tarno::datamodel::ItemLibraryAccessor const& library,
                 std::vector<ListedItem> const& items);

protected:
    QWidget& GetCanvas() override;
    QScrollBar& GetScrollBar() override;
    void StartRebuild() override;
    void NotifyTags() override;

private:
    tarno::datamodel::ItemLibraryAccessor m_Library;
    std::vector<ListedItem> const& m_Items;
    std::size_t m_NextItem;
    CNodeBrowser m_Browser;
};

#endif
