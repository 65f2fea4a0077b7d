#include "itemicons.h"

#include "hostapi/sourcecontrol.h"
#include "qtcompat.h"

#include <QPainter>

namespace nodebrowser {

namespace {

bool LooksAlike(QPixmap const& left, QPixmap const& right)
{
    return qtcompat::LogicalSize(left) == qtcompat::LogicalSize(right)
           && left.toImage() == right.toImage();
}

} // namespace

ItemIcons::ItemIcons()
{
    Begin();
}

void ItemIcons::Begin()
{
    m_Resources.clear();
    m_OldDisplayIcons.swap(m_DisplayIcons);
    m_DisplayIcons.clear();
    m_LastResource = m_Resources.end();
    m_LastDisplayIcon = m_DisplayIcons.end();
}

ItemIcons::SharedPixmap const& ItemIcons::GetResource(char const* name)
{
    if (m_LastResource == m_Resources.end() || m_LastResource->first != name) {
        m_LastResource = m_Resources.find(name);
        if (m_LastResource == m_Resources.end()) {
            SharedPixmap const loaded(qtcompat::LoadPixmap(QLatin1String(name)));
            m_LastResource = m_Resources.insert(std::make_pair(name, loaded)).first;
        }
    }
    return m_LastResource->second;
}

ItemIcons::SharedPixmap const& ItemIcons::GetDisplayIcon(QPixmap const& base, qint64 baseKey,
                                                         Marks const& marks)
{
    Key const key(baseKey, marks.isFactory, marks.isReadOnlySource, marks.scState,
                  marks.isStateShown);
    if (m_LastDisplayIcon == m_DisplayIcons.end() || m_LastDisplayIcon->first != key) {
        m_LastDisplayIcon = m_DisplayIcons.find(key);
        if (m_LastDisplayIcon == m_DisplayIcons.end()) {
            SharedPixmap const composed(Compose(base, marks));
            auto const old = m_OldDisplayIcons.find(key);
            bool const isOld =
                old != m_OldDisplayIcons.end() && LooksAlike(old->second.pixmap, composed.pixmap);
            m_LastDisplayIcon =
                m_DisplayIcons.insert(std::make_pair(key, isOld ? old->second : composed)).first;
        }
    }
    return m_LastDisplayIcon->second;
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
    QPixmap const badge = GetResource(":./res/projectbrowser/PB_Factory.png").pixmap;

    QPainter painter(&composite);
    painter.drawPixmap(ScsUtils::kStateStripWidth, 0, base);
    painter.drawPixmap(0, size.height() - qtcompat::LogicalSize(badge).height(), badge);
    return composite;
}

} // namespace nodebrowser
