#include "loggedtest.h"
#include "sourcecontrol/statebits.h"

#include <sourcecontrol.h>

#include <QBitmap>
#include <QImage>

#include <algorithm>
#include <vector>

using namespace embeddedhost::StateBits;

namespace {

constexpr int kStrip = 7;

/// 20 x 20 in device-independent pixels.
QPixmap MakeIcon(qreal ratio)
{
    QPixmap icon(int(20 * ratio), int(20 * ratio));
    icon.setDevicePixelRatio(ratio);
    icon.fill(Qt::magenta);
    return icon;
}

QImage ToImage(QPixmap const& pixmap)
{
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    image.setDevicePixelRatio(1);
    return image;
}

QImage GetStrip(QPixmap const& icon)
{
    return ToImage(icon).copy(0, 0, int(kStrip * icon.devicePixelRatio()), icon.height());
}

bool IsTransparent(QImage const& image)
{
    QImage empty(image.size(), QImage::Format_ARGB32);
    empty.fill(0);
    return image == empty;
}

std::vector<unsigned> const kMarkedStates = {kModified, kAdded, kUntracked, kConflicted, kIgnored,
                                             kUnknown, kWaiting, kClean | kCheckedOut,
                                             // Checked out comes on top of another mark.
                                             kModified | kCheckedOut};

} // namespace

/// Marks of states beside the icons of items.
class TestStateIcons : public LoggedTest
{
    Q_OBJECT

private:
    static QPixmap Mark(QPixmap base, unsigned state, bool isPlain = true)
    {
        return ScsUtils::getAssetStateIcon(base, state, true, isPlain);
    }

private Q_SLOTS:
    void iconsGetAStrip()
    {
        for (qreal const ratio : {1.0, 2.0}) {
            QPixmap const plain = MakeIcon(ratio);
            for (unsigned const state : {kClean, kModified}) {
                QPixmap const icon = Mark(plain, state);
                QCOMPARE(icon.devicePixelRatio(), ratio);
                QCOMPARE(icon.size(), QSize(int(27 * ratio), int(20 * ratio)));
                QCOMPARE(ToImage(icon).copy(int(kStrip * ratio), 0, plain.width(), plain.height()),
                         ToImage(plain));
                QCOMPARE(IsTransparent(GetStrip(icon)), state == kClean);
            }
            // What has a strip keeps its size.
            QPixmap const composite = Mark(plain, kClean);
            QImage const before = ToImage(composite);
            QPixmap const marked = Mark(composite, kModified, false);
            QCOMPARE(marked.size(), composite.size());
            QVERIFY(!IsTransparent(GetStrip(marked)));
            // Neither the icon nor the badge, 9 pixels high in the lower left corner, are covered.
            QRect const icon(int(kStrip * ratio), 0, plain.width(), plain.height());
            QRect const badge(0, int(11 * ratio), int(9 * ratio), int(9 * ratio));
            for (QRect const& kept : {icon, badge})
                QCOMPARE(ToImage(marked).copy(kept), before.copy(kept));
        }
    }

    void unchangedWithoutStates()
    {
        QPixmap base = MakeIcon(1);
        for (bool const isPlain : {true, false}) {
            QCOMPARE(ScsUtils::getAssetStateIcon(base, kModified, false, isPlain).cacheKey(),
                     base.cacheKey());
            QCOMPARE(Mark(base, 0, isPlain).cacheKey(), base.cacheKey());
            QVERIFY(Mark(QPixmap(), kModified, isPlain).isNull());
        }
    }

    void marksDiffer()
    {
        std::vector<QImage> shapes;
        for (unsigned const state : kMarkedStates) {
            // Where there is something, whatever its colour.
            QImage const strip = GetStrip(Mark(MakeIcon(1), state));
            QImage const shape = strip.createAlphaMask();
            bool const isNew = std::find(shapes.begin(), shapes.end(), shape) == shapes.end();
            QVERIFY2(isNew && !IsTransparent(strip), QByteArray::number(state));
            shapes.push_back(shape);
            // Nothing of them is missing at one side: they are even, about the middle of a square.
            QRect const bounds = QRegion(QBitmap::fromImage(shape)).boundingRect();
            bool const isHigher = state == kUnknown || state == (kModified | kCheckedOut);
            QVERIFY(QRect(0, 1, 6, isHigher ? 12 : 6).contains(bounds));
            QImage const mark = shape.copy(bounds);
            bool const isEven = state != kUnknown && !(state & kCheckedOut);
            QVERIFY2(!isEven
                         || (mark.mirrored(true, false) == mark
                             && bounds.left() + bounds.right() == 5
                             && bounds.top() + bounds.bottom() == 7),
                     QByteArray::number(state));
        }
    }
};

NODEBROWSER_TEST(TestStateIcons)
#include "tst_stateicons.moc"
