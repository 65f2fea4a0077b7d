#ifndef NODEBROWSER_ITEMICONS_H
#define NODEBROWSER_ITEMICONS_H

#include <QPixmap>

#include <map>
#include <tuple>

namespace nodebrowser {

/// The pixmaps of one item list: each resource is loaded once and each composite made once, and
/// all rows that look the same share them.
class ItemIcons
{
public:
    ItemIcons();

    /// What a display icon shows besides its base.
    struct Marks
    {
        /// Drawn with the factory badge over a strip at the left.
        bool isFactory;
        /// A factory item without state overlay.
        bool isReadOnlySource;
        int scState;
        /// States are shown at all.
        bool isStateShown;
    };

    void Clear();
    /// Null when there is no such resource. The name is a literal, and known by its address.
    QPixmap const& GetResource(char const* name);
    QPixmap const& GetDisplayIcon(QPixmap const& base, Marks const& marks);

private:
    typedef std::tuple<qint64, bool, bool, int, bool> Key;

    QPixmap Compose(QPixmap const& base, Marks const& marks);
    QPixmap AddBadge(QPixmap const& base);

    std::map<char const*, QPixmap> m_Resources;
    std::map<Key, QPixmap> m_DisplayIcons;
    /// The one that was asked for last: most rows look like the row before.
    std::map<Key, QPixmap>::const_iterator m_Last;
};

} // namespace nodebrowser

#endif
