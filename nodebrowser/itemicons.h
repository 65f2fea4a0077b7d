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

    /// The marks that a display icon adds to its base.
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

    /// A pixmap with its cache key, which is compared for each row.
    struct SharedPixmap
    {
        explicit SharedPixmap(QPixmap const& shared = QPixmap())
            : pixmap(shared)
            , key(shared.cacheKey())
        {}

        QPixmap pixmap;
        qint64 key;
    };

    /// Another list is made: everything is loaded and composed anew.
    void Begin();
    /// A null pixmap for a missing resource. The name must be a literal: its address is the key.
    SharedPixmap const& GetResource(char const* name);
    SharedPixmap const& GetDisplayIcon(QPixmap const& base, qint64 baseKey, Marks const& marks);

private:
    typedef std::tuple<qint64, bool, bool, int, bool> Key;

    QPixmap Compose(QPixmap const& base, Marks const& marks);
    QPixmap AddBadge(QPixmap const& base);

    std::map<char const*, SharedPixmap> m_Resources;
    std::map<Key, SharedPixmap> m_DisplayIcons;
    /// The composites of the previous list. Equal ones are reused, since rows share their pixmaps.
    std::map<Key, SharedPixmap> m_OldDisplayIcons;
    /// Those that were asked for last: most rows look like the row before.
    std::map<char const*, SharedPixmap>::const_iterator m_LastResource;
    std::map<Key, SharedPixmap>::const_iterator m_LastDisplayIcon;
};

} // namespace nodebrowser

#endif
