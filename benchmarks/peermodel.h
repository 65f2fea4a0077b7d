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
    // Rows are known by their names, of which no two are equal.
    void SetTags(std::string const& name, std::string const& tags);
    void Insert(ListedItem const& item);
    void Remove(std::string const& name);

    /// In lower case, as searched words are.
    std::string const& GetSearchName(int row) const;
    std::vector<std::string> const& GetSearchTags(int row) const;
    /// What the filter keeps of a row.
    void SetScore(int row, unsigned score);
    unsigned GetScore(int row) const;

    int rowCount(QModelIndex const& parent = QModelIndex()) const override;
    QVariant data(QModelIndex const& index, int role) const override;

private:
    struct SRow
    {
        QString name;
        std::string searchName;
        std::vector<std::string> searchTags;
        QVariant icon;
        unsigned score;
    };

    SRow MakeRow(ListedItem const& item);
    /// The first row whose name is not before this one.
    int FindRow(std::string const& name) const;

    std::vector<SRow> m_Rows;
    std::map<std::string, QVariant> m_Icons;
};

#endif
