#include "peermodel.h"

#include "stringutils.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <QIcon>
#include <QSize>

#include <algorithm>
#include <numeric>
#include <set>
#include <strings.h>

namespace {

/// As high as the panel's rows.
QSize const kRowSize(100, 24);

/// The positions of the items by name, ignoring ASCII case.
std::vector<std::size_t> OrderByName(std::vector<ListedItem> const& items)
{
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return strcasecmp(items[a].name.c_str(), items[b].name.c_str()) < 0;
    });
    return order;
}

std::vector<std::string> SplitTags(std::string const& tags)
{
    std::set<std::string> split;
    SplitString(boost::algorithm::to_lower_copy(tags), ";", split);
    return std::vector<std::string>(split.begin(), split.end());
}

} // namespace

void PeerModel::Populate(std::vector<ListedItem> const& items)
{
    beginResetModel();
    m_Rows.clear();
    m_Rows.reserve(items.size());
    m_RowsOfItems.resize(items.size());
    for (std::size_t const item : OrderByName(items)) {
        m_RowsOfItems[item] = int(m_Rows.size());
        m_Rows.push_back(MakeRow(items[item]));
    }
    endResetModel();
}

PeerModel::SRow PeerModel::MakeRow(ListedItem const& item)
{
    QVariant& icon = m_Icons[item.icon];
    if (!icon.isValid())
        icon = QIcon(QString::fromLatin1(item.icon));
    return {QString::fromLatin1(item.name.c_str()), boost::algorithm::to_lower_copy(item.name),
            SplitTags(item.tags), icon};
}

void PeerModel::SetTags(std::size_t item, std::string const& tags)
{
    int const row = m_RowsOfItems[item];
    m_Rows[std::size_t(row)].searchTags = SplitTags(tags);
    Q_EMIT dataChanged(index(row), index(row));
}

std::string const& PeerModel::GetSearchName(int row) const
{
    return m_Rows[std::size_t(row)].searchName;
}

std::vector<std::string> const& PeerModel::GetSearchTags(int row) const
{
    return m_Rows[std::size_t(row)].searchTags;
}

int PeerModel::rowCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : int(m_Rows.size());
}

QVariant PeerModel::data(QModelIndex const& index, int role) const
{
    SRow const& row = m_Rows[std::size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return row.name;
    case Qt::DecorationRole:
        return row.icon;
    case Qt::SizeHintRole:
        return kRowSize;
    default:
        return QVariant();
    }
}
