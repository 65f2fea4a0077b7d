#include "itemicons.h"

#include "hostapi/sourcecontrol.h"
#include "qtcompat.h"

#include <QPainter>

namespace {

/// Width of the strip at the left of an icon that carries a badge, in pixels.
int const kBadgeMargin = 7;

} // namespace

void ItemIcons::Clear()
{
    m_Resources.clear();
    m_DisplayIcons.clear();
}

QPixmap ItemIcons::GetResource(QString const& name)
{
    auto const known = m_Resources.find(name);
    if (known != m_Resources.end())
        return known->second;
    return m_Resources[name] = qtcompat::LoadPixmap(name);
}

QPixmap ItemIcons::GetDisplayIcon(QPixmap const& base, Marks const& marks)
{
    Key const key(base.cacheKey(), marks.isFactory, marks.isReadOnlySource, marks.scState,
                  marks.isStateShown);
    auto const known = m_DisplayIcons.find(key);
    if (known != m_DisplayIcons.end())
        return known->second;
    return m_DisplayIcons[key] = Compose(base, marks);
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
        QSize(size.width() + kBadgeMargin, size.height()), base);
    if (composite.isNull()) // the host supplies no images
        return composite;
    QPixmap const badge = GetResource(QLatin1String(":./res/projectbrowser/PB_Factory.png"));

    QPainter painter(&composite);
    painter.drawPixmap(kBadgeMargin, 0, base);
    painter.drawPixmap(0, size.height() - qtcompat::LogicalSize(badge).height(), badge);
    return composite;
}
