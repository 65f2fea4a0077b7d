#ifndef BENCHMARKS_PEERSUBJECT_H
#define BENCHMARKS_PEERSUBJECT_H

#include "peerfilter.h"
#include "peermodel.h"
#include "subject.h"

#include <QLineEdit>
#include <QListView>

/// The toolkit's own list view over a filter, with the same rows.
class PeerSubject : public Subject
{
public:
    /// `items` outlive the subject.
    explicit PeerSubject(std::vector<ListedItem> const& items);

protected:
    QWidget& GetCanvas() override;
    QScrollBar& GetScrollBar() override;
    void StartRebuild() override;
    void StartRename() override;
    void StartAdd() override;
    void StartRemove() override;
    void NotifyTags() override;

private:
    std::vector<ListedItem> const& m_Items;
    std::size_t m_NextItem;
    bool m_IsRenamed;
    PeerModel m_Model;
    PeerFilter m_Filter;
    QLineEdit m_SearchField;
    QListView m_View;
};

#endif
