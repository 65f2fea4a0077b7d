#include "browsertest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

using namespace tarno::datamodel;

class TestLayout : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void laysOutItsChildren_data();
    void laysOutItsChildren();
    void keepsScrollRangeInStep();
    void findsRows_data();
    void findsRows();
};

void TestLayout::laysOutItsChildren_data()
{
    QTest::addColumn<int>("config");
    QTest::addColumn<int>("headerHeight");
    QTest::newRow("with tabs") << 0 << 43;
    QTest::newRow("without tabs") << 1 << 23;
}

void TestLayout::laysOutItsChildren()
{
    QFETCH(int, config);
    QFETCH(int, headerHeight);
    TestBrowser browser(static_cast<CNodeBrowser::eConfigType>(config));
    browser.resize(200, 300);
    browser.Paint();
    browser.resize(180, 250);
    browser.Paint();
    QCOMPARE(browser.m_SearchEdit->geometry(), QRect(0, 0, 160, 20));
    QCOMPARE(browser.m_ClearButton->geometry(), QRect(160, 0, 20, 20));
    QCOMPARE(browser.m_ScrollBar->geometry(), QRect(160, headerHeight, 20, 250 - headerHeight));
    if (browser.m_TabBar)
        QCOMPARE(browser.m_TabBar->pos(), QPoint(0, 20));
}

void TestLayout::keepsScrollRangeInStep()
{
    MakeTypeChooser(10, QSize(200, 100));
    QScrollBar const& bar = *m_Browser->m_ScrollBar;
    QCOMPARE(m_Browser->m_ContentHeight, 240);
    QCOMPARE(bar.minimum(), 0);
    QCOMPARE(bar.maximum(), 140);
    QCOMPARE(bar.pageStep(), 100);
    QVERIFY(!bar.isHidden());

    m_Browser->m_ScrollBar->setValue(140);
    m_Browser->resize(200, 23 + 120);
    m_Browser->Paint();
    QCOMPARE(bar.maximum(), 120);
    QCOMPARE(m_Browser->m_ScrollOffset, 120);

    m_Browser->resize(200, 23 + 240);
    m_Browser->Paint();
    QVERIFY(bar.isHidden());
    QCOMPARE(m_Browser->m_ScrollOffset, 0);
    // A hidden bar keeps its range.
    QCOMPARE(bar.maximum(), 120);

    m_Browser->resize(200, 23 + 239);
    m_Browser->Paint();
    QCOMPARE(bar.maximum(), 1);
    QVERIFY(!bar.isHidden());
    m_Browser->SearchTextChange("nothing");
    m_Browser->Paint();
    QVERIFY(bar.isHidden());
}

void TestLayout::findsRows_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("offset");
    QTest::addColumn<unsigned long>("row");

    unsigned long const none = 0xFFFFFFFFul;
    QTest::newRow("search field") << QPoint(5, 5) << 0 << none;
    QTest::newRow("last line of the header") << QPoint(5, 23) << 0 << none;
    QTest::newRow("first line below") << QPoint(5, 24) << 0 << 0ul;
    QTest::newRow("last line of a row") << QPoint(5, 23 + 23) << 0 << 0ul;
    QTest::newRow("first line of a row") << QPoint(5, 23 + 24) << 0 << 1ul;
    QTest::newRow("scrolled") << QPoint(5, 24) << 30 << 1ul;
    QTest::newRow("left of the panel") << QPoint(-100, 24) << 0 << 0ul;
    QTest::newRow("right edge") << QPoint(199, 24) << 0 << 0ul;
    QTest::newRow("right of the panel") << QPoint(200, 24) << 0 << none;
    QTest::newRow("past the last row") << QPoint(5, 23 + 24 * 50) << 0 << 50ul;
}

void TestLayout::findsRows()
{
    QFETCH(QPoint, point);
    QFETCH(int, offset);
    MakeTypeChooser(10, QSize(200, 100));
    m_Browser->m_ScrollBar->setValue(offset);
    QTEST(m_Browser->GetItemIndexAt(point), "row");
}

NODEBROWSER_TEST_MAIN(TestLayout)

#include "tst_layout.moc"
