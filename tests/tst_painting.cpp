#include "browsertest.h"

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
            int const header = config == 0 ? 43 : 23;
            MakeBrowser(static_cast<CNodeBrowser::eConfigType>(config));
            m_Browser->resize(180, 250);
            m_Browser->Paint();
            QCOMPARE(m_Browser->findChild<QLineEdit*>()->geometry(), QRect(0, 0, 160, 20));
            QCOMPARE(m_Browser->findChild<QPushButton*>()->geometry(), QRect(160, 0, 20, 20));
            QCOMPARE(GetScrollBar().geometry(), QRect(160, header, 20, 250 - header));
            if (config == 0)
                QCOMPARE(m_Browser->findChild<QTabBar*>()->pos(), QPoint(0, 20));
        }
    }

    void keepsScrollRangeInStep()
    {
        MakeTypeChooser(10, QSize(200, 100));
        QScrollBar& bar = GetScrollBar();
        QCOMPARE(bar.pageStep(), 100);
        bar.setValue(140);
        // Height of the row area, greatest and present value, and whether the bar is hidden; a
        // hidden one keeps its range.
        std::tuple<int, int, int, bool> const steps[] = {{100, 140, 140, false},
                                                         {120, 120, 120, false},
                                                         {240, 120, 0, true},
                                                         {239, 1, 0, false}};
        for (auto const& [height, maximum, value, isHidden] : steps) {
            m_Browser->resize(200, 23 + height);
            m_Browser->Paint();
            QCOMPARE(bar.minimum(), 0);
            QCOMPARE(bar.maximum(), maximum);
            QCOMPARE(bar.value(), value);
            QCOMPARE(bar.isHidden(), isHidden);
        }
        m_Browser->SearchTextChange("nothing");
        m_Browser->Paint();
        QVERIFY(bar.isHidden());
    }

    void findsRows()
    {
        MakeTypeChooser(10, QSize(200, 100));
        unsigned long const none = 0xFFFFFFFFul;
        // The last line of the header is none of the rows; the last ones are past the right edge.
        std::pair<QPoint, unsigned long> const places[] = {
            {{5, 23}, none}, {{5, 24}, 0},   {{5, 23 + 23}, 0},       {{5, 23 + 24}, 1},
            {{-100, 24}, 0}, {{199, 24}, 0}, {{5, 23 + 24 * 50}, 50}, {{200, 24}, none}};
        for (auto const& [point, row] : places)
            QCOMPARE(m_Browser->GetItemIndexAt(point), row);
        GetScrollBar().setValue(30);
        QCOMPARE(m_Browser->GetItemIndexAt(QPoint(5, 24)), 1ul);
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
        QRect const places[] = {{9, 2, 20, 20}, {2, 26, 27, 20}, {2, 50, 20, 20}, {9, 74, 20, 20}};
        for (unsigned int row = 0; row < 4; ++row)
            QCOMPARE(BoundsOf(image, QColor(0xFF0001 + row)), places[row].translated(0, 23));
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
        QImage const unscaled = image.scaled(image.size() / image.devicePixelRatio());
        QImage const mask = unscaled.createMaskFromColor(color.rgb(), Qt::MaskOutColor);
        return QRegion(QBitmap::fromImage(mask)).boundingRect();
    }
};

NODEBROWSER_TEST(TestPainting)

#include "tst_painting.moc"
