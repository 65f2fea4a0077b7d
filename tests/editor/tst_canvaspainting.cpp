#include "canvastest.h"

#include <gridpainter.h>
#include <nodepainter.h>

using namespace embeddedhost;

namespace {

/// Pixels between two grid lines, in letters: a line first, then the ground.
QByteArray Cell(char line, int width, int pitch)
{
    return QByteArray(width, line) + QByteArray(pitch - width, '.');
}

double Width(QFont const& font, QString const& text)
{
    return QFontMetricsF(font).horizontalAdvance(text);
}

} // namespace

/// What the canvas looks like, at chosen pixels.
class TestCanvasPainting : public CanvasTest
{
    Q_OBJECT

private:
    bool eventFilter(QObject*, QEvent* event) override
    {
        m_PaintCount += event->type() == QEvent::Paint;
        return false;
    }

    CanvasColors const& Colors() const
    {
        return Scene().GetColors();
    }

    /// Of the picture, at a point of the scene.
    QColor ColorAt(double x, double y) const
    {
        return Picture().pixelColor(ViewPoint(x, y));
    }

    /// What is painted within a rectangle of the scene on a ground of one colour.
    QRect Ink(QRectF const& area, QColor const& ground) const
    {
        QImage const picture = Picture();
        QRect ink;
        QRect const seen = m_Canvas->mapFromScene(area).boundingRect() & picture.rect();
        for (int x = seen.left(); x <= seen.right(); ++x)
            for (int y = seen.top(); y <= seen.bottom(); ++y)
                if (picture.pixelColor(x, y) != ground)
                    ink |= QRect(x, y, 1, 1);
        return ink.translated(-ViewPoint(0, 0));
    }

    void ZoomTo(double zoom)
    {
        m_Canvas->ResetZoom();
        m_Canvas->scale(zoom, zoom);
        m_Canvas->centerOn(200, 100);
    }

    int m_PaintCount = 0;

private Q_SLOTS:
    void gridIsPainted()
    {
        // A zoom and a ratio of pixels, and what is along both directions from the scene's 0.
        std::tuple<double, int, QByteArray> const rows[] = {
            {1.0, 1, Cell('s', 1, 20) + Cell('f', 1, 20).repeated(4) + 's'},
            {1.0, 2, Cell('s', 2, 40) + Cell('f', 2, 40).repeated(4) + "ss"},
            {0.45, 1, Cell('s', 1, 45).repeated(2) + 's'},
            {0.1, 1, QByteArray(100, '.')}};
        CanvasColors const colors{QPalette()};
        QHash<QRgb, char> const letters{{colors.ground.rgb(), '.'},
                                        {colors.faintLine.rgb(), 'f'},
                                        {colors.strongLine.rgb(), 's'}};
        for (auto const& [zoom, ratio, pixels] : rows) {
            QImage image(QSize(330, 330) * ratio, QImage::Format_RGB32);
            image.setDevicePixelRatio(ratio);
            QPainter painter(&image);
            painter.translate(110, 110);
            painter.scale(zoom, zoom);
            PaintGrid(painter, QRectF(-110 / zoom, -110 / zoom, 330 / zoom, 330 / zoom), colors);
            QByteArray across, down;
            for (int pixel = 110 * ratio; across.size() < pixels.size(); ++pixel) {
                across += letters.value(image.pixel(pixel, 113 * ratio), '?');
                down += letters.value(image.pixel(113 * ratio, pixel), '?');
            }
            QCOMPARE(across + down, pixels + pixels);
        }
    }

    void kindsAreToldApart()
    {
        std::pair<int, QColor> const tints[] = {{kAdd, Colors().solverTint},
                                                {kLoop, Colors().compoundTint},
                                                {kConstant, Colors().constantTint},
                                                {99, Colors().missingTint}};
        for (auto const& [item, tint] : tints) {
            Change([item = item](GraphBody& body) { body.nodes[0].item = Uid(item); });
            for (double const zoom : {0.2, 1.0}) {
                ZoomTo(zoom);
                QCOMPARE(ColorAt(140, 10), tint);
                QCOMPARE(ColorAt(80, 32), Colors().nodeBody);
            }
        }
        for (int const x : {-100, 560})
            QCOMPARE(ColorAt(x, 110), Colors().portsTint);
    }

    void textsArePlaced()
    {
        QRect const icon = Ink(QRectF(4, 3, 25, 24), Colors().solverTint);
        QVERIFY(icon.width() >= 10 && QRect(8, 5, 18, 18).contains(icon));
        QRect const title = Ink(QRectF(29, 3, 127, 24), Colors().solverTint);
        QVERIFY(qAbs(title.left() - 32) <= 2);
        QVERIFY(qAbs(title.right() - 32 - Width(GetNodeTitleFont(), "Add")) <= 2);
        QRect const input = Ink(QRectF(7, 33, 60, 18), Colors().nodeBody);
        QVERIFY(qAbs(input.left() - 11) <= 2);
        QVERIFY(qAbs(input.right() - 11 - Width(GetNodeNameFont(), "a")) <= 2);
        QRect const output = Ink(QRectF(70, 33, 83, 18), Colors().nodeBody);
        QVERIFY(qAbs(output.right() - 149) <= 2);
        QVERIFY(qAbs(output.left() - 149 + Width(GetNodeNameFont(), "sum")) <= 2);
        QVERIFY(qAbs(output.center().y() - 43) <= 3);
        // As much of a long name as there is room for, of a port that its item has lost.
        Change([](GraphBody& body) {
            body.connections.push_back({{"one", std::string(99, 'w')}, {"two", "a"}});
        });
        QVERIFY(Ink(QRectF(90, 53, 60, 18), Colors().nodeBody).width() > 40);
    }

    void portsShowTypeAndConnection()
    {
        QColor const color = GetTypeColor(Uid(kFloat), "Float", false);
        for (double const zoom : {1.0, 2.5}) {
            ZoomTo(zoom);
            QCOMPARE(ColorAt(300, 62).rgb(), color.rgb());
            QCOMPARE(ColorAt(300, 42), Colors().nodeBody);
            QVERIFY(IsLike(ColorAt(304, 42), color) && IsLike(ColorAt(300, 38), color));
            QVERIFY(!IsLike(ColorAt(307, 42), color));
        }
        ZoomTo(1);
        QCOMPARE(ColorAt(460, 242), GetTypeColor("", "", false));
    }

    void selectedNodesAreFramed()
    {
        QCOMPARE(ColorAt(-4, 52), Colors().ground);
        QVERIFY(qGray(ColorAt(0, 52).rgb()) < qGray(Colors().nodeBody.rgb()) - 20);
        // The shadow is as wide at both sides.
        QCOMPARE(ColorAt(-2, 52), ColorAt(161, 52));
        Click(At("one"));
        QColor const blend = MixColors(Colors().ground, Colors().selection, 80 / 255.0);
        std::pair<int, QColor> const colors[] = {{-5, Colors().ground},
                                                 {-4, blend},
                                                 {-1, Colors().selection},
                                                 {0, Colors().selection},
                                                 {1, Colors().nodeBody}};
        for (auto const& [x, color] : colors)
            QCOMPARE(ColorAt(x, 52), color);
    }

    void refusedConnectionsAreLines()
    {
        ZoomTo(2.5);
        m_Canvas->centerOn(80, 142);
        Press(At("say.said"));
        MoveMouse(At("one.a"));
        QCOMPARE(ColorAt(175, 193), Colors().ground);
    }

    void detailsComeWithTheZoom()
    {
        for (double const zoom : {0.2, 0.4, 0.5, 0.7, 2.5}) {
            ZoomTo(zoom);
            QCOMPARE(!Ink(QRectF(32, 8, 60, 14), Colors().solverTint).isEmpty(), zoom > 0.45);
            QCOMPARE(!Ink(QRectF(100, 35, 52, 14), Colors().nodeBody).isEmpty(), zoom > 0.6);
            QCOMPARE(ColorAt(300, 62).name() == "#922ac6", zoom > 0.45);
        }
    }

    /// From the event loop, unlike the pictures that are taken here.
    void changesAreShown()
    {
        Connect("one.sum", "two.a");
        QPoint const port = At("one.sum");
        std::function<void()> const changes[] = {
            [&] { MoveMouse(port); },
            [&] { MoveMouse(kNowhere); },
            [&] { Press(port); },
            [&] { MoveMouse(port + QPoint(100, 100)); },
            [&] { MoveMouse(At("say.text")); },
            [&] { TypeKey(Qt::Key_Escape); },
            [&] { Change([](GraphBody& body) { body.nodes[1].item = Uid(kSay); }); },
            [&] { m_Canvas->setPalette(QColor(60, 60, 60)); },
        };
        for (auto const& change : changes) {
            QApplication::processEvents();
            m_PaintCount = 0;
            m_Canvas->viewport()->installEventFilter(this);
            change();
            QTRY_VERIFY(m_PaintCount > 0);
        }
        QVERIFY(ColorAt(-7, -7).lightness() < 60);
    }

    /// While the zoom changes, pictures are stretched, but not for long.
    void coarseFramesAreRefined()
    {
        Change([](GraphBody& body) {
            for (int node = 0; node < 200; ++node) {
                std::string const id = "n" + std::to_string(node);
                body.nodes.push_back({id, Uid(kAdd), QPointF(node % 20 * 40, node / 20 * 30)});
                // Each looks different.
                body.connections.push_back({{id, "out " + id}, {"one", "in " + id}});
            }
        });
        ZoomTo(0.7);
        Picture();
        NodePictures& pictures = Scene().GetPictures();
        m_Canvas->ZoomIn();
        Picture();
        QVERIFY(pictures.IsFrameCoarse());
        QTRY_VERIFY(!pictures.IsFrameCoarse());
        QImage const refined = Picture();
        pictures.SetColors(Colors());
        QCOMPARE(Picture(), refined);
    }
};

NODEBROWSER_TEST(TestCanvasPainting)

#include "tst_canvaspainting.moc"
