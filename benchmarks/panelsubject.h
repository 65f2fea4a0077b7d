#ifndef BENCHMARKS_PANELSUBJECT_H
#define BENCHMARKS_PANELSUBJECT_H

#include "listeditems.h"
#include "nodebrowser.h"
#include "subject.h"

class CEmbeddedHost;

/// The panel, showing every kind of item.
class PanelSubject : public Subject
{
public:
    /// `items` are those of the host's library. Both outlive the subject.
    PanelSubject(CEmbeddedHost& host, std::vector<ListedItem> const& items);

protected:
    QWidget& GetCanvas() override;
    QScrollBar& GetScrollBar() override;
    void StartRebuild() override;
    void StartRename() override;
    void StartAdd() override;
    void StartRemove() override;
    void NotifyTags() override;

private:
    CEmbeddedHost& m_Host;
    tarno::datamodel::ItemLibraryAccessor m_Library;
    std::vector<ListedItem> const& m_Items;
    std::size_t m_NextItem;
    std::vector<ListedItem>::const_iterator m_RenamedItem;
    bool m_IsRenamed;
    CNodeBrowser m_Browser;
};

#endif
