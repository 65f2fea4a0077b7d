#include "sourcecontrol/statebits.h"
#include "testprogram.h"

#include <sourcecontrol.h>

#include <QImage>
#include <QPixmap>
#include <QTest>

#include <cmath>
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

/// As the eye sees it where the mark covers a pixel fully: 0 for black, 1 for white.
double GetLuminance(QImage const& strip)
{
    QColor colour;
    for (int at = 0; at < strip.width() * strip.height(); ++at) {
        QColor const pixel = strip.pixelColor(at % strip.width(), at / strip.width());
        colour = pixel.alpha() == 255 ? pixel : colour;
    }
    return 0.2126 * std::pow(colour.redF(), 2.2) + 0.7152 * std::pow(colour.greenF(), 2.2)
           + 0.0722 * std::pow(colour.blueF(), 2.2);
}

std::vector<unsigned> const kMarkedStates = {kModified, kAdded,   kUntracked, kConflicted,
                                             kIgnored,  kUnknown, kWaiting,   kClean | kCheckedOut};

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
            QCOMPARE(ToImage(Mark(composite, kClean, false)), before);
            QPixmap const marked = Mark(composite, kModified, false);
            QCOMPARE(marked.size(), composite.size());
            QVERIFY(!IsTransparent(GetStrip(marked)));
            // Neither the icon nor the badge, 9 pixels high in the lower left corner, are covered.
            QRect const icon(int(kStrip * ratio), 0, plain.width(), plain.height());
            QRect const badge(0, int(11 * ratio), int(9 * ratio), int(9 * ratio));
            for (QRect const& kept : {icon, badge})
                QCOMPARE(ToImage(marked).copy(kept), before.copy(kept));
            QCOMPARE(ToImage(composite), before);
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

    void marksDifferOnLightAndDark()
    {
        std::vector<QImage> shapes;
        for (unsigned const state : kMarkedStates) {
            QByteArray const name = QByteArray::number(state);
            // Where there is something, whatever its colour.
            QImage const shape = GetStrip(Mark(MakeIcon(1), state)).createAlphaMask();
            QVERIFY2(!IsTransparent(GetStrip(Mark(MakeIcon(1), state))), name);
            QVERIFY2(std::find(shapes.begin(), shapes.end(), shape) == shapes.end(), name);
            shapes.push_back(shape);
            // Against white, and against a dark grey of 0.024.
            double const mark = GetLuminance(GetStrip(Mark(MakeIcon(4), state))) + 0.05;
            QVERIFY2(1.05 / mark >= 3 && mark / 0.074 >= 3, name);
        }
        // Checked out comes on top of another mark.
        auto const getStrip = [](unsigned state) {
            return GetStrip(Mark(MakeIcon(1), state));
        };
        QVERIFY(getStrip(kModified | kCheckedOut) != getStrip(kModified));
        QVERIFY(getStrip(kModified | kCheckedOut) != getStrip(kClean | kCheckedOut));
    }
};

NODEBROWSER_TEST(TestStateIcons)
#include "tst_stateicons.moc"
