#ifndef BENCHMARKS_PEERFILTER_H
#define BENCHMARKS_PEERFILTER_H

#include <QSortFilterProxyModel>

#include <set>
#include <string>
#include <vector>

class PeerModel;

/// The panel's match and rank as a stock filter: one score a row and text, computed when the row
/// is filtered and kept with the row for sorting.
class PeerFilter : public QSortFilterProxyModel
{
public:
    explicit PeerFilter(PeerModel& model);

    void SetText(QString const& text);

protected:
    bool filterAcceptsRow(int row, QModelIndex const& parent) const override;
    bool lessThan(QModelIndex const& left, QModelIndex const& right) const override;

private:
    unsigned Score(int row) const;
    bool HasTagWith(int row, std::string const& word) const;

    PeerModel& m_Model;
    std::vector<std::string> m_Words;
};

#endif
