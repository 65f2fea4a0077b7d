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

/// Orders by name, ignoring ASCII case.
bool IsBefore(ListedItem const* left, ListedItem const* right)
{
    return strcasecmp(left->name.c_str(), right->name.c_str()) < 0;
}

std::vector<ListedItem const*> OrderByName(std::vector<ListedItem> const& items)
{
    std::vector<ListedItem const*> order(items.size());
    std::iota(order.begin(), order.end(), items.data());
    std::sort(order.begin(), order.end(), IsBefore);
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
    for (ListedItem const* const item : OrderByName(items))
        m_Rows.push_back(MakeRow(*item));
    endResetModel();
}

PeerModel::SRow PeerModel::MakeRow(ListedItem const& item)
{
    QVariant& icon = m_Icons[item.icon];
    if (!icon.isValid())
        icon = QIcon(QString::fromLatin1(item.icon));
    return {QString::fromLatin1(item.name.c_str()), boost::algorithm::to_lower_copy(item.name),
            SplitTags(item.tags), icon, 0};
}

int PeerModel::FindRow(std::string const& name) const
{
    auto const row = std::lower_bound(
        m_Rows.begin(), m_Rows.end(), boost::algorithm::to_lower_copy(name),
        [](SRow const& left, std::string const& right) { return left.searchName < right; });
    return int(row - m_Rows.begin());
}

void PeerModel::SetTags(std::string const& name, std::string const& tags)
{
    int const row = FindRow(name);
    m_Rows[std::size_t(row)].searchTags = SplitTags(tags);
    Q_EMIT dataChanged(index(row), index(row));
}

void PeerModel::Insert(ListedItem const& item)
{
    int const row = FindRow(item.name);
    beginInsertRows(QModelIndex(), row, row);
    m_Rows.insert(m_Rows.begin() + row, MakeRow(item));
    endInsertRows();
}

void PeerModel::Remove(std::string const& name)
{
    int const row = FindRow(name);
    beginRemoveRows(QModelIndex(), row, row);
    m_Rows.erase(m_Rows.begin() + row);
    endRemoveRows();
}

std::string const& PeerModel::GetSearchName(int row) const
{
    return m_Rows[std::size_t(row)].searchName;
}

std::vector<std::string> const& PeerModel::GetSearchTags(int row) const
{
    return m_Rows[std::size_t(row)].searchTags;
}

void PeerModel::SetScore(int row, unsigned score)
{
    m_Rows[std::size_t(row)].score = score;
}

unsigned PeerModel::GetScore(int row) const
{
    return m_Rows[std::size_t(row)].score;
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
