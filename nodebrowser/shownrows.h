#ifndef NODEBROWSER_SHOWNROWS_H
#define NODEBROWSER_SHOWNROWS_H

#include <QPixmap>
#include <QString>

#include <map>

/// What a row looks like, wherever it stands.
struct RowLook
{
    QString text;
    /// Null for none.
    QPixmap icon;
    /// In pixels from the left edge of the row.
    int iconLeft;
    bool isHighlighted;
};

inline bool operator==(RowLook const& left, RowLook const& right)
{
    return left.icon.cacheKey() == right.icon.cacheKey() && left.iconLeft == right.iconLeft
           && left.isHighlighted == right.isHighlighted && left.text == right.text;
}

/// The looks of the rows on the screen, by row position. A row that still looks the same when
/// the list is scrolled is moved instead of painted.
typedef std::map<int, RowLook> ShownRows;

#endif
