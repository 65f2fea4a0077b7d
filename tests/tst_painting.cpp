#include "browsertest.h"
#include "testtable.h"

#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>

using namespace tarno::datamodel;

/// Where everything stands and what it looks like. Everything is told in device-independent
/// pixels, so that the tests run at any scale.
class TestPainting : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void laysOutItsChildren()
    {
        for (int const config : {0, 1}) {
            int const headerHeight = config == 0 ? 43 : 23;
            MakeBrowser(static_cast<CNodeBrowser::eConfigType>(config));
            m_Browser->resize(180, 250);
            m_Browser->Paint();
            QCOMPARE(m_Browser->findChild<QLineEdit*>()->geometry(), QRect(0, 0, 160, 20));
            QCOMPARE(m_Browser->findChild<QPushButton*>()->geometry(), QRect(160, 0, 20, 20));
            QCOMPARE(GetScrollBar().geometry(), QRect(160, headerHeight, 20, 250 - headerHeight));
            QTabBar const* const tabs = m_Browser->findChild<QTabBar*>();
            QVERIFY(config == 0 ? tabs->pos() == QPoint(0, 20) : !tabs);
        }
    }

    void keepsScrollRangeInStep()
    {
        MakeTypeChooser(10, QSize(200, 100));
        QScrollBar& bar = GetScrollBar();
        QCOMPARE(bar.minimum(), 0);
        QCOMPARE(bar.maximum(), 140);
        QCOMPARE(bar.pageStep(), 100);
        QVERIFY(!bar.isHidden());

        bar.setValue(140);
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

    void findsRows_data()
    {
        unsigned long const none = 0xFFFFFFFFul;
        AddColumns<QPoint, int, unsigned long>("point", "offset", "row");
        AddRow("last line of the header", QPoint(5, 23), 0, none);
        AddRow("first line below", QPoint(5, 24), 0, 0ul);
        AddRow("last line of a row", QPoint(5, 23 + 23), 0, 0ul);
        AddRow("first line of a row", QPoint(5, 23 + 24), 0, 1ul);
        AddRow("scrolled", QPoint(5, 24), 30, 1ul);
        AddRow("left of the panel", QPoint(-100, 24), 0, 0ul);
        AddRow("right edge", QPoint(199, 24), 0, 0ul);
        AddRow("right of the panel", QPoint(200, 24), 0, none);
        AddRow("past the last row", QPoint(5, 23 + 24 * 50), 0, 50ul);
    }

    void findsRows()
    {
        QFETCH(QPoint, point);
        QFETCH(int, offset);
        MakeTypeChooser(10, QSize(200, 100));
        GetScrollBar().setValue(offset);
        QTEST(m_Browser->GetItemIndexAt(point), "row");
    }

    void highlightsSelectedRow()
    {
        MakeTypeChooser(10, QSize(200, 300));
        // The panel's own palette has no say.
        QPalette palette;
        palette.setColor(QPalette::Highlight, Qt::magenta);
        m_Browser->setPalette(palette);
        QCOMPARE(GetHighlight(), QRect());
        Click(2);
        // Each row overlaps the next one by a pixel.
        QCOMPARE(GetHighlight(), QRect(0, 23 + 48, 200, 25));
        Click(10);
        QCOMPARE(GetHighlight(), QRect());

        m_Browser->resize(200, 123);
        m_Browser->Paint();
        Click(0);
        GetScrollBar().setValue(12);
        // Cut off at the header, and under the scroll bar.
        QCOMPARE(GetHighlight(), QRect(0, 23, 180, 13));
    }

    void placesIcons()
    {
        m_Host->m_IsFileVersionControlActive = true;
        m_Host->AddRevisionControl();
        TestDatabase& database = m_Host->m_Database;
        m_Library->Add(LibType::gType, "0");
        AddStored(LibType::gType, "1", database.m_ComponentSources[0]);
        AddStored(TarnoType::gCompound, "2", database.AddSource("project"));
        AddStored(TarnoType::gCompound, "3", database.AddSource("shared", 1));
        m_Library->Add("unheard of", "4");
        MakeTypeChooser(0, QSize(200, 100));
        m_Browser->SetSourceControlEnabled(true);
        m_Browser->Paint();
        // The host shows a state by its color.
        for (int row = 0; row < 4; ++row)
            TellState((*m_Library)[std::to_string(row)].id, 0xFF0001 + row);
        QImage const image = m_Browser->Paint();
        QCOMPARE(BoundsOf(image, QColor(0xFF0001)), QRect(9, 23 + 2, 20, 20));
        QCOMPARE(BoundsOf(image, QColor(0xFF0002)), QRect(2, 23 + 24 + 2, 27, 20));
        QCOMPARE(BoundsOf(image, QColor(0xFF0003)), QRect(2, 23 + 48 + 2, 20, 20));
        QCOMPARE(BoundsOf(image, QColor(0xFF0004)), QRect(9, 23 + 72 + 2, 20, 20));

        // Without states the badge strip of the factory is all that is left.
        m_Browser->SetSourceControlEnabled(false);
        QImage const plain = m_Browser->Paint();
        QImage const compound = Cut(plain, QRect(0, 23 + 48, 35, 24));
        QCOMPARE(compound, Cut(plain, QRect(0, 23 + 72, 35, 24)));
        QVERIFY(compound != Cut(plain, QRect(0, 23, 35, 24)));
    }

    void writesNames()
    {
        m_Library->Add(LibType::gType, "a").isModified = true;
        m_Library->Add(LibType::gType, "b\xC9");
        m_Library->Add(LibType::gType, "c with a name that is much too long for the panel");
        MakeTypeChooser(0, QSize(200, 100));
        Click(2);
        QFont font;
        font.setPixelSize(17);
        m_Browser->setFont(font);
        QImage const image = m_Browser->Paint();
        QPixmap expected = m_Browser->grab();
        QPainter painter(&expected);
        painter.setFont(font);
        painter.setPen(m_Browser->palette().color(QPalette::WindowText));
        painter.fillRect(35, 23, 165, 48, QColor(image.pixel(0, 60)));
        painter.drawText(35, 23, 165, 25, Qt::AlignLeft | Qt::AlignVCenter, "a*");
        painter.drawText(35, 23 + 24, 165, 25, Qt::AlignLeft | Qt::AlignVCenter, "b\u00C9");
        painter.end();
        QCOMPARE(image, expected.toImage());
    }

    void paintsNothingElse()
    {
        MakeTypeChooser(0, QSize(200, 100));
        QImage const image = Cut(m_Browser->Paint(), QRect(0, 23, 200, 100));
        QImage background = image;
        background.fill(QColor(image.pixel(0, 0)));
        QCOMPARE(image, background);
    }

    void asksOnlyAboutRowsInSight()
    {
        MakeTypeChooser(1000, QSize(200, 100));
        // A row that ends at the header is not asked about, one of which a line is seen is.
        std::pair<int, int> const views[] = {{0, 5}, {24, 5}, {23, 6}, {1000 * 24 - 100, 5}};
        for (auto const& view : views) {
            GetScrollBar().setValue(view.first);
            m_Browser->Paint();
            m_Host->TakeCount("GetItemName");
            m_Browser->Paint();
            QCOMPARE(m_Host->TakeCount("GetItemName"), view.second);
        }
    }

    void drawsTheBadgeSharp()
    {
        m_Host->AddRevisionControl();
        AddStored(LibType::gType, "", m_Host->m_Database.m_ComponentSources[0]);
        MakeBrowser();
        double const scale = qApp->devicePixelRatio();
        QString const suffix = scale > 1 ? "@2x.png" : ".png";
        QPixmap icon(":type" + suffix);
        QPixmap badge(":res/projectbrowser/PB_Factory" + suffix);
        QVERIFY(!icon.isNull() && !badge.isNull());
        QPixmap expected(QSize(27, 20) * scale);
        expected.setDevicePixelRatio(scale);
        expected.fill(Qt::transparent);
        QPainter painter(&expected);
        painter.drawPixmap(7, 0, icon);
        painter.drawPixmap(0, 20 - badge.height() / int(badge.devicePixelRatio()), badge);
        painter.end();
        CNodeBrowser::Item const& item = m_Browser->m_Items.at(0);
        QCOMPARE(item.m_Icon.size(), QSize(20, 20) * scale);
        QCOMPARE(item.m_DisplayIcon.toImage(), expected.toImage());
    }

private:
    QScrollBar& GetScrollBar() const
    {
        return *m_Browser->findChild<QScrollBar*>();
    }

    QRect GetHighlight()
    {
        return BoundsOf(m_Browser->Paint(), m_Browser->style()->standardPalette().color(
                                                QPalette::Active, QPalette::Highlight));
    }

    /// The smallest rectangle around what has the color.
    static QRect BoundsOf(QImage const& image, QColor const& color)
    {
        QRect bounds;
        int const scale = qRound(image.devicePixelRatio());
        for (int y = 0; y < image.height() / scale; ++y) {
            for (int x = 0; x < image.width() / scale; ++x) {
                if (QColor(image.pixel(x * scale, y * scale)) == color)
                    bounds |= QRect(x, y, 1, 1);
            }
        }
        return bounds;
    }

    static QImage Cut(QImage const& image, QRect const& rect)
    {
        int const scale = qRound(image.devicePixelRatio());
        return image.copy(QRect(rect.topLeft() * scale, rect.size() * scale));
    }
};

NODEBROWSER_TEST(TestPainting)

#include "tst_painting.moc"
