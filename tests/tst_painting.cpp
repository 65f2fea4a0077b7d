#include "browsertest.h"

#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTest>

#include <functional>

using namespace tarno::datamodel;

/// Everything is told in device-independent pixels, so that the tests run at any scale.
class TestPainting : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void highlightsSelectedRow();
    void placesIcons_data();
    void placesIcons();
    void clipsRowsUnderTheHeader();
    void scrollsWithTheBar();
    void marksModifiedItems();
    void paintsNothingElse();
    void asksOnlyAboutRowsInSight_data();
    void asksOnlyAboutRowsInSight();
    void rebuildsOnceForManyChanges();
    void drawsSharpIcons();
    void scrollsAsPaintedAnew_data();
    void scrollsAsPaintedAnew();

private:
    /// Gives every row a red icon instead of its own.
    void MakeIconsRed(QSize const& size)
    {
        QPixmap icon(size);
        icon.fill(Qt::red);
        for (CNodeBrowser::Item& item : m_Browser->m_Items)
            item.m_DisplayIcon = icon;
    }
};

namespace {

QColor ColorAt(QImage const& image, int x, int y)
{
    int const scale = qRound(image.devicePixelRatio());
    return QColor(image.pixel(x * scale, y * scale));
}

QImage Cut(QImage const& image, QRect const& rect)
{
    int const scale = qRound(image.devicePixelRatio());
    return image.copy(QRect(rect.topLeft() * scale, rect.size() * scale));
}

/// The smallest rectangle around what has the color.
QRect BoundsOf(QImage const& image, QColor const& color)
{
    QRect bounds;
    int const scale = qRound(image.devicePixelRatio());
    for (int y = 0; y < image.height() / scale; ++y) {
        for (int x = 0; x < image.width() / scale; ++x) {
            if (ColorAt(image, x, y) == color)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

} // namespace

void TestPainting::highlightsSelectedRow()
{
    MakeTypeChooser(10, QSize(200, 300));
    // The panel's own palette has no say.
    QPalette palette;
    palette.setColor(QPalette::Highlight, Qt::magenta);
    m_Browser->setPalette(palette);
    m_Browser->m_SelectedIndex = 2;
    QColor const highlight =
        m_Browser->style()->standardPalette().color(QPalette::Active, QPalette::Highlight);
    // Each row overlaps the next one by a pixel.
    QCOMPARE(BoundsOf(m_Browser->Paint(), highlight), QRect(0, 23 + 48, 200, 25));

    m_Browser->m_SelectedIndex = 10;
    QCOMPARE(BoundsOf(m_Browser->Paint(), highlight), QRect());
}

void TestPainting::placesIcons_data()
{
    QTest::addColumn<bool>("isFactory");
    QTest::addColumn<bool>("hasState");
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<int>("left");

    QTest::newRow("plain") << false << false << true << 9;
    QTest::newRow("factory") << true << false << false << 2;
    QTest::newRow("state shown") << false << true << true << 2;
    QTest::newRow("state not shown") << false << true << false << 9;
}

void TestPainting::placesIcons()
{
    QFETCH(bool, isFactory);
    QFETCH(bool, hasState);
    QFETCH(bool, isShown);
    QFETCH(int, left);
    MakeTypeChooser(2, QSize(200, 100));
    MakeIconsRed(QSize(20, 20));
    m_Browser->m_Items[0].m_DisplayIcon = QPixmap();
    m_Browser->m_Items[1].m_IsFactory = isFactory;
    m_Browser->m_Items[1].m_HasScState = hasState;
    m_Browser->m_SourceControlEnabled = isShown;
    QCOMPARE(BoundsOf(m_Browser->Paint(), Qt::red), QRect(left, 23 + 24 + 2, 20, 20));
}

void TestPainting::clipsRowsUnderTheHeader()
{
    MakeTypeChooser(10, QSize(200, 100));
    MakeIconsRed(QSize(20, 60));
    m_Browser->m_SelectedIndex = 0;
    m_Browser->m_ScrollBar->setValue(12);
    // What shines through there would be seen between the children, too.
    m_Browser->m_SearchEdit->hide();
    QImage const image = m_Browser->Paint();
    QColor const highlight =
        m_Browser->style()->standardPalette().color(QPalette::Active, QPalette::Highlight);
    QCOMPARE(BoundsOf(image, highlight), QRect(0, 23, 180, 13));
    QCOMPARE(BoundsOf(image, Qt::red).top(), 23);
}

void TestPainting::scrollsWithTheBar()
{
    MakeTypeChooser(10, QSize(200, 100));
    MakeIconsRed(QSize(20, 20));
    m_Browser->m_ScrollBar->setValue(30);
    QCOMPARE(m_Browser->m_ScrollOffset, 30);
    // Row 1 begins 6 pixels above the header's end, its icon 2 pixels lower.
    QImage const image = m_Browser->Paint();
    QCOMPARE(ColorAt(image, 15, 23), QColor(Qt::red));
    QCOMPARE(ColorAt(image, 15, 23 - 6 + 2 + 19), QColor(Qt::red));
    QVERIFY(ColorAt(image, 15, 23 - 6 + 2 + 20) != QColor(Qt::red));
}

void TestPainting::marksModifiedItems()
{
    MakeTypeChooser(0, QSize(200, 100));
    m_Library->Add(LibType::gType, "a").isModified = true;
    m_Library->Add(LibType::gType, "a*");
    m_Library->Add(LibType::gType, "aa");
    m_Browser->m_ItemListDirty = true;
    m_Browser->Paint();
    MakeIconsRed(QSize(20, 20));
    QImage const image = m_Browser->Paint();
    QImage const modified = Cut(image, QRect(0, 23, 200, 24));
    QCOMPARE(m_Browser->GetRows().join(" "), QString("a a* aa"));
    QCOMPARE(modified, Cut(image, QRect(0, 23 + 24, 200, 24)));
    QVERIFY(modified != Cut(image, QRect(0, 23 + 48, 200, 24)));

    // Names begin at 35; between icon and name there is nothing.
    QImage const gap = Cut(image, QRect(29, 23, 6, 72));
    QImage const beyond = Cut(image, QRect(100, 23, 6, 72));
    QCOMPARE(gap, beyond);
    QVERIFY(Cut(image, QRect(35, 23, 6, 72)) != beyond);

    // The text of a selected row keeps its colour.
    m_Browser->m_SelectedIndex = 2;
    QColor const text = m_Browser->palette().color(QPalette::WindowText);
    QCOMPARE(BoundsOf(Cut(m_Browser->Paint(), QRect(0, 71, 200, 24)), text),
             BoundsOf(Cut(image, QRect(0, 71, 200, 24)), text));
}

void TestPainting::paintsNothingElse()
{
    MakeTypeChooser(0, QSize(200, 100));
    QImage const image = Cut(m_Browser->Paint(), QRect(0, 23, 200, 100));
    QImage background = image;
    background.fill(QColor(image.pixel(0, 0)));
    QCOMPARE(image, background);
}

void TestPainting::asksOnlyAboutRowsInSight_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("rows");
    QTest::newRow("at the top") << 0 << 5;
    QTest::newRow("row ends at the header") << 24 << 5;
    QTest::newRow("last line of a row") << 23 << 6;
    QTest::newRow("at the end") << 1000 * 24 - 100 << 5;
}

void TestPainting::asksOnlyAboutRowsInSight()
{
    QFETCH(int, offset);
    MakeTypeChooser(1000, QSize(200, 100));
    m_Browser->m_ScrollBar->setValue(offset);
    m_Browser->Paint();
    m_Host->TakeCount("GetItemName");
    m_Browser->Paint();
    QTEST(m_Host->TakeCount("GetItemName"), "rows");
}

void TestPainting::rebuildsOnceForManyChanges()
{
    int const kinds = 5;
    MakeTypeChooser(1, QSize(200, 100));
    m_Host->TakeCount("GetItems");
    m_Host->TakeCalls();
    TestItem& added = m_Library->Add(LibType::gType, "added");
    m_Library->TellToc([&](IItemTOCNotification& listener) {
        ItemAccessor accessor = m_Library->GetAccessor(added);
        for (int i = 0; i < 5; ++i)
            listener.ItemAdded(accessor);
    });
    m_Browser->SearchTextChange("added");
    QCOMPARE(m_Browser->GetRows(), QStringList("added"));
    QCOMPARE(m_Host->TakeCount("GetItems"), kinds);
    QVERIFY(m_Host->TakeCalls().isEmpty());

    // States that are asked for come with a rebuild, which then serves both.
    m_Browser->m_ItemListDirty = true;
    m_Browser->m_ScStatesStale = true;
    m_Browser->Paint();
    QCOMPARE(m_Host->TakeCount("GetItems"), kinds);
    QCOMPARE(m_Host->TakeCalls(), QStringList("RequestObjectStates []"));
    QVERIFY(!m_Browser->m_ItemListDirty && !m_Browser->m_ScStatesStale);
}

void TestPainting::drawsSharpIcons()
{
    m_Host->AddRevisionControl();
    m_Library->AddObject(m_Library->Add(LibType::gType, ""),
                         m_Host->m_Database.m_ComponentSources[0]);
    MakeTypeChooser(1, QSize(200, 100));
    double const scale = qApp->devicePixelRatio();
    for (CNodeBrowser::Item const& item : m_Browser->m_Items) {
        QCOMPARE(item.m_Icon.devicePixelRatio(), scale);
        QCOMPARE(item.m_Icon.size(), QSize(20, 20) * scale);
        QCOMPARE(item.m_DisplayIcon.devicePixelRatio(), scale);
        QCOMPARE(item.m_DisplayIcon.size(), QSize(item.m_IsFactory ? 27 : 20, 20) * scale);
    }
    QImage icon(scale > 1 ? ":type@2x.png" : ":type.png");
    QImage badge(scale > 1 ? ":res/projectbrowser/PB_Factory@2x.png"
                           : ":res/projectbrowser/PB_Factory.png");
    QVERIFY(!icon.isNull() && !badge.isNull());
    icon.setDevicePixelRatio(1);
    badge.setDevicePixelRatio(1);

    QVERIFY(m_Browser->m_Items[0].m_IsFactory || m_Browser->m_Items[1].m_IsFactory);
    for (CNodeBrowser::Item const& item : m_Browser->m_Items) {
        if (!item.m_IsFactory)
            continue;
        QImage expected(item.m_DisplayIcon.size(), QImage::Format_ARGB32_Premultiplied);
        expected.fill(Qt::transparent);
        QPainter painter(&expected);
        painter.drawImage(qRound(7 * scale), 0, icon);
        painter.drawImage(0, expected.height() - badge.height(), badge);
        painter.end();
        QImage composite = item.m_DisplayIcon.toImage();
        composite.setDevicePixelRatio(1);
        QCOMPARE(composite.convertToFormat(expected.format()), expected);
    }
}

void TestPainting::scrollsAsPaintedAnew_data()
{
    QTest::addColumn<int>("config");
    QTest::addColumn<bool>("isWindow");
    QTest::newRow("as a window") << int(CNodeBrowser::eConfigTypes) << true;
    QTest::newRow("inside of another") << int(CNodeBrowser::eConfigTypes) << false;
    // The tabs are wider than the panel, and the scroll bar stands over the last one.
    QTest::newRow("with tabs") << int(CNodeBrowser::eConfigNodes) << true;
}

/// What stands on the screen after a scroll step is what a new paint would show, whatever has
/// changed without a repaint since the last one.
void TestPainting::scrollsAsPaintedAnew()
{
    QFETCH(int, config);
    QFETCH(bool, isWindow);
    if (qApp->devicePixelRatio() > 1)
        QSKIP("The platform without a screen shows no picture of it at this scale.");
    for (int i = 0; i < 30; ++i)
        m_Library->Add(config ? LibType::gType : TarnoType::gSolver, "item " + std::to_string(i));
    QWidget frame;
    frame.resize(200, 223);
    TestBrowser browser(static_cast<CNodeBrowser::eConfigType>(config));
    browser.resize(200, 223);
    browser.setAutoFillBackground(isWindow);
    browser.SetItemLibrary(m_Library->GetAccessor());
    if (!isWindow)
        browser.setParent(&frame);
    browser.show();
    QWidget& window = *browser.window();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QWidget over(&browser);
    over.setGeometry(20, 90, 30, 30);
    over.setAutoFillBackground(true);
    over.show();

    QPixmap tallIcon(20, 60);
    tallIcon.fill(Qt::red);
    std::vector<std::function<void()>> const changes = {
        [] {},
        [&] { browser.m_SelectedIndex = 5; },
        [&] {
            browser.m_SelectedIndex = 4;
            browser.grab();
        },
        [&] { browser.m_Items[4].m_DisplayIcon = QPixmap(); },
        [&] { browser.m_Items[6].m_DisplayIcon = tallIcon; },
    };
    for (std::size_t change = 0; change < changes.size(); ++change) {
        changes[change]();
        browser.m_ScrollBar->setValue(47 + 13 * int(change));
        QApplication::processEvents();
        QImage const screen = window.screen()->grabWindow(window.winId()).toImage();
        QImage const anew = window.grab().toImage();
        QVERIFY2(screen.convertToFormat(anew.format()) == anew,
                 qPrintable(QString::number(change)));
    }
}

NODEBROWSER_TEST_MAIN(TestPainting)

#include "tst_painting.moc"
