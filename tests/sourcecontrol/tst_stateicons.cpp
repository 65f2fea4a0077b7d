#include "loggedtest.h"
#include "sourcecontrol/statebits.h"

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

/// Where there is something, whatever its colour.
QImage GetShape(QImage image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qAlpha(image.pixel(x, y)) > 128 ? 0xFF000000 : 0);
    }
    return image;
}

double GetLuminance(QColor const& colour)
{
    auto const toLinear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * toLinear(colour.redF()) + 0.7152 * toLinear(colour.greenF())
           + 0.0722 * toLinear(colour.blueF());
}

double GetContrast(QColor const& a, QColor const& b)
{
    double const first = GetLuminance(a) + 0.05;
    double const second = GetLuminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/// The colour of the mark where it covers a pixel fully.
QColor GetMarkColour(QImage const& strip)
{
    QColor colour;
    int best = 0;
    for (int y = 0; y < strip.height(); ++y) {
        for (int x = 0; x < strip.width(); ++x) {
            if (qAlpha(strip.pixel(x, y)) > best) {
                best = qAlpha(strip.pixel(x, y));
                colour = QColor(strip.pixel(x, y));
            }
        }
    }
    return colour;
}

std::vector<unsigned> const kMarkedStates = {kModified, kAdded,   kUntracked, kConflicted,
                                             kIgnored,  kUnknown, kWaiting,   kClean | kCheckedOut};

} // namespace

class TestStateIcons : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void plainIconGetsAStrip_data();
    void plainIconGetsAStrip();
    void compositeKeepsItsSize_data();
    void compositeKeepsItsSize();
    void unchangedWithoutStates();
    void shapesDiffer();
    void coloursShowOnLightAndDark();
    void checkedOutComesOnTop();
};

void TestStateIcons::plainIconGetsAStrip_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("1") << 1.0;
    QTest::newRow("2") << 2.0;
}

void TestStateIcons::plainIconGetsAStrip()
{
    QFETCH(qreal, ratio);
    QPixmap base = MakeIcon(ratio);
    for (unsigned const state : {kClean, kModified}) {
        QPixmap const icon = ScsUtils::getAssetStateIcon(base, state, true, true);
        QCOMPARE(icon.devicePixelRatio(), ratio);
        QCOMPARE(icon.size(), QSize(int(27 * ratio), int(20 * ratio)));
        QCOMPARE(ToImage(icon).copy(int(kStrip * ratio), 0, base.width(), base.height()),
                 ToImage(base));
        QCOMPARE(IsTransparent(GetStrip(icon)), state == kClean);
    }
    QCOMPARE(base.width(), int(20 * ratio));
}

void TestStateIcons::compositeKeepsItsSize_data()
{
    plainIconGetsAStrip_data();
}

void TestStateIcons::compositeKeepsItsSize()
{
    QFETCH(qreal, ratio);
    QPixmap plain = MakeIcon(ratio);
    QPixmap composite = ScsUtils::getAssetStateIcon(plain, kClean, true, true);
    QImage const before = ToImage(composite);
    QCOMPARE(ToImage(ScsUtils::getAssetStateIcon(composite, kClean, true, false)), before);

    QPixmap const marked = ScsUtils::getAssetStateIcon(composite, kModified, true, false);
    QCOMPARE(marked.size(), composite.size());
    QVERIFY(!IsTransparent(GetStrip(marked)));
    // Neither the icon nor the badge, 9 pixels high in the lower left corner, are covered.
    QRect const icon(int(kStrip * ratio), 0, plain.width(), plain.height());
    QRect const badge(0, int(11 * ratio), int(9 * ratio), int(9 * ratio));
    for (QRect const& kept : {icon, badge})
        QCOMPARE(ToImage(marked).copy(kept), before.copy(kept));
    QCOMPARE(ToImage(composite), before);
}

void TestStateIcons::unchangedWithoutStates()
{
    QPixmap base = MakeIcon(1);
    QPixmap none;
    for (bool const plain : {true, false}) {
        QCOMPARE(ScsUtils::getAssetStateIcon(base, kModified, false, plain).cacheKey(),
                 base.cacheKey());
        QCOMPARE(ScsUtils::getAssetStateIcon(base, 0, true, plain).cacheKey(), base.cacheKey());
        QVERIFY(ScsUtils::getAssetStateIcon(none, kModified, true, plain).isNull());
    }
}

void TestStateIcons::shapesDiffer()
{
    QPixmap base = MakeIcon(1);
    std::vector<QImage> shapes;
    for (unsigned const state : kMarkedStates) {
        QImage const shape =
            GetShape(GetStrip(ScsUtils::getAssetStateIcon(base, state, true, true)));
        QVERIFY2(!IsTransparent(shape), qPrintable(QString::number(state)));
        QVERIFY2(std::find(shapes.begin(), shapes.end(), shape) == shapes.end(),
                 qPrintable(QString::number(state)));
        shapes.push_back(shape);
    }
}

void TestStateIcons::coloursShowOnLightAndDark()
{
    QPixmap base = MakeIcon(4);
    for (unsigned const state : kMarkedStates) {
        QColor const colour =
            GetMarkColour(GetStrip(ScsUtils::getAssetStateIcon(base, state, true, true)));
        for (QColor const& background : {QColor(Qt::white), QColor(0x2B, 0x2B, 0x2B)})
            QVERIFY2(GetContrast(colour, background) >= 3,
                     qPrintable(QStringLiteral("%1 %2").arg(state).arg(colour.name())));
    }
}

void TestStateIcons::checkedOutComesOnTop()
{
    QPixmap base = MakeIcon(1);
    auto const getStrip = [&base](unsigned state) {
        return GetStrip(ScsUtils::getAssetStateIcon(base, state, true, true));
    };
    QVERIFY(getStrip(kModified | kCheckedOut) != getStrip(kModified));
    QVERIFY(getStrip(kModified | kCheckedOut) != getStrip(kClean | kCheckedOut));
}

NODEBROWSER_TEST_MAIN(TestStateIcons)

#include "tst_stateicons.moc"
