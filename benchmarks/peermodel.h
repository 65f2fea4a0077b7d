#ifndef BENCHMARKS_PEERMODEL_H
#define BENCHMARKS_PEERMODEL_H

#include "listeditems.h"

#include <QAbstractListModel>
#include <QVariant>

#include <map>
#include <string>
#include <vector>

/// Items by name for a stock view, everything kept in the form in which it is asked for.
class PeerModel : public QAbstractListModel
{
public:
    /// Shows the items, sorted by name, instead of those before.
    void Populate(std::vector<ListedItem> const& items);
    /// `item` is the position that the item was given at.
    void SetTags(std::size_t item, std::string const& tags);

    /// In lower case, as searched words are.
    std::string const& GetSearchName(int row) const;
    std::vector<std::string> const& GetSearchTags(int row) const;

    int rowCount(QModelIndex const& parent = QModelIndex()) const override;
    QVariant data(QModelIndex const& index, int role) const override;

private:
    struct SRow
    {
        QString name;
        std::string searchName;
        std::vector<std::string> searchTags;
        QVariant icon;
    };

    SRow MakeRow(ListedItem const& item);

    std::vector<SRow> m_Rows;
    /// By position given.
    std::vector<int> m_RowsOfItems;
    std::map<std::string, QVariant> m_Icons;
};

#endif
