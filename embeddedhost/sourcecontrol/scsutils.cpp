#include "objects/objectdatabase.h"

#include <sourcecontrol.h>

#include <QPainter>

namespace ScsUtils {

namespace {

/// Width of the strip for state marks, in device-independent pixels.
constexpr int kStateStripWidth = 7;

QPixmap WithStateStrip(QPixmap const& base)
{
    qreal const ratio = base.devicePixelRatio();
    QPixmap wide(base.width() + qRound(kStateStripWidth * ratio), base.height());
    wide.setDevicePixelRatio(ratio);
    wide.fill(Qt::transparent);
    QPainter painter(&wide);
    painter.drawPixmap(kStateStripWidth, 0, base);
    return wide;
}

} // namespace

bool IsFileVersionControlActive()
{
    return false;
}

QPixmap getAssetStateIcon(QPixmap& base, unsigned int state, bool active, bool plain)
{
    // A row with a state begins 7 pixels further left than one without: the strip keeps the
    // base icons of all rows in one column.
    bool const needsStrip = active && state != 0 && plain && !base.isNull();
    return needsStrip ? WithStateStrip(base) : base;
}

QString GetToolTip(qorm::QormHandle<qorm::IDbObject> object, QString const& icon)
{
    auto const instance = object.GetInstance();
    auto const* const database = embeddedhost::CObjectDatabase::From(instance);
    if (!database)
        return QString();
    QString const name = QString::fromLatin1(database->GetName(object.GetCacheIndex()));
    return QStringLiteral("<p style='white-space:pre'><img src=\"%1\"> <b>%2</b></p>")
        .arg(icon.toHtmlEscaped(), name.toHtmlEscaped());
}

} // namespace ScsUtils
