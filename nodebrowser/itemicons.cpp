#include "itemicons.h"

#include "hostapi/sourcecontrol.h"
#include "qtcompat.h"

#include <QPainter>

namespace nodebrowser {

ItemIcons::ItemIcons()
    : m_Last(m_DisplayIcons.end())
{}

void ItemIcons::Clear()
{
    m_Resources.clear();
    m_DisplayIcons.clear();
    m_Last = m_DisplayIcons.end();
}

QPixmap const& ItemIcons::GetResource(char const* name)
{
    auto const known = m_Resources.find(name);
    if (known != m_Resources.end())
        return known->second;
    return m_Resources[name] = qtcompat::LoadPixmap(QLatin1String(name));
}

QPixmap const& ItemIcons::GetDisplayIcon(QPixmap const& base, Marks const& marks)
{
    Key const key(base.cacheKey(), marks.isFactory, marks.isReadOnlySource, marks.scState,
                  marks.isStateShown);
    if (m_Last == m_DisplayIcons.end() || m_Last->first != key) {
        m_Last = m_DisplayIcons.find(key);
        if (m_Last == m_DisplayIcons.end())
            m_Last = m_DisplayIcons.insert(std::make_pair(key, Compose(base, marks))).first;
    }
    return m_Last->second;
}

QPixmap ItemIcons::Compose(QPixmap const& base, Marks const& marks)
{
    QPixmap icon = marks.isFactory ? AddBadge(base) : base;
    if (marks.isFactory && marks.isReadOnlySource)
        return icon;
    return ScsUtils::getAssetStateIcon(icon, static_cast<unsigned int>(marks.scState),
                                       marks.isStateShown, !marks.isFactory);
}

QPixmap ItemIcons::AddBadge(QPixmap const& base)
{
    QSize const size = qtcompat::LogicalSize(base);
    QPixmap composite = qtcompat::TransparentPixmap(
        QSize(size.width() + ScsUtils::kStateStripWidth, size.height()), base);
    if (composite.isNull()) // the host supplies no images
        return composite;
    QPixmap const& badge = GetResource(":./res/projectbrowser/PB_Factory.png");

    QPainter painter(&composite);
    painter.drawPixmap(ScsUtils::kStateStripWidth, 0, base);
    painter.drawPixmap(0, size.height() - qtcompat::LogicalSize(badge).height(), badge);
    return composite;
}

} // namespace nodebrowser
