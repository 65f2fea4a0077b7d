#include "canvastest.h"

#include <QMimeData>
#include <QRandomGenerator>

#include <functional>
#include <set>
#include <vector>

namespace {

quint32 const kSeed = 20261;
int const kOperations = 3000;

} // namespace

/// Whatever is done to the canvas, in whatever order, its graph stays one that can be saved.
class TestCanvasSoak : public CanvasTest
{
    Q_OBJECT

private:
    bool Chance()
    {
        return m_Random.bounded(2) == 0;
    }

    QPoint Anywhere()
    {
        return QPoint(m_Random.bounded(m_Canvas->width()), m_Random.bounded(m_Canvas->height()));
    }

    /// Ports and headers are small; chance alone would seldom find them.
    QPoint SomewhereOnNodes()
    {
        char const* const nodes[] = {"one", "two", "say", "gone"};
        char const* const id = nodes[m_Random.bounded(4)];
        return Chance() ? HeaderOf(id) : PortOf(id, std::size_t(m_Random.bounded(2)), Chance());
    }

    QPoint Somewhere()
    {
        return m_Random.bounded(4) == 0 ? Anywhere() : SomewhereOnNodes();
    }

    void Press()
    {
        QTest::mousePress(m_Canvas->viewport(), Chance() ? Qt::LeftButton : Qt::MiddleButton,
                          Chance() ? Qt::NoModifier : Qt::ControlModifier, Somewhere());
    }

    void TypeKey()
    {
        int const keys[] = {Qt::Key_Delete, Qt::Key_Escape, Qt::Key_Left, Qt::Key_Down,
                            Qt::Key_Space};
        QTest::keyClick(m_Canvas.get(), Qt::Key(keys[m_Random.bounded(5)]));
    }

    /// Of a node that lies far away and one without an item, with connections that share an input
    /// and one to a node that is not there.
    void CopyElsewhere()
    {
        QByteArray const nodes =
            R"({"nodes": [{"id": "one", "item": "nothing", "position": [1e300, -7.5]},
                          {"id": 2, "item": "", "position": [0, 0]}],
                "connections": [{"from": ["one", ""], "to": [2, "x"]},
                                {"from": [2, "y"], "to": [2, "x"]},
                                {"from": ["in", "value"], "to": ["gone", "x"]}]})";
        QMimeData* const data = new QMimeData;
        data->setData(QStringLiteral("application/x-nodeeditor-nodes+json"),
                      nodes.left(Chance() ? nodes.size() : m_Random.bounded(nodes.size())));
        QApplication::clipboard()->setMimeData(data);
    }

    void ChangeFromOutside()
    {
        GraphBody body = Body();
        RemoveNodes(body, {"one", "two"});
        body.nodes.push_back({"one", Uid(kAdd), QPointF(m_Random.bounded(400), 40)});
        m_Host->SetBody(m_Host->FindItem(Uid(kMain)), body, "Elsewhere");
    }

    void Reopen()
    {
        m_Host->CloseLibrary();
        m_Host->OpenLibrary(m_Folder->GetPath());
        Open(kMain);
        m_Canvas->ResetZoom();
    }

    std::vector<std::function<void()>> GetOperations()
    {
        return {[this] { Press(); },
                [this] { MoveMouse(Somewhere()); },
                [this] { MoveMouse(Somewhere()); },
                [this] { Drag(Somewhere(), Somewhere()); },
                [this] { Drag(Somewhere(), Somewhere()); },
                [this] {
                    QTest::mouseRelease(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier,
                                        Somewhere());
                },
                [this] {
                    QTest::mouseDClick(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier,
                                       Somewhere());
                },
                [this] { TypeKey(); },
                [this] { Chance() ? m_Canvas->Copy() : m_Canvas->Cut(); },
                [this] { Chance() ? m_Canvas->Paste() : m_Canvas->Duplicate(); },
                [this] { Chance() ? Stack().undo() : Stack().redo(); },
                [this] { Chance() ? m_Canvas->ZoomIn() : m_Canvas->Fit(); },
                [this] { Open(Chance() ? kMain : kLoop); },
                [this] { CopyElsewhere(); },
                [this] { ChangeFromOutside(); },
                [this] { QApplication::processEvents(); },
                [this] {
                    m_Canvas->viewport()->repaint();
                }};
    }

    /// Each connection leads from one known node to another, and ids are what they say.
    void CheckBody(int uid)
    {
        GraphBody const body = Body(uid);
        std::set<std::string> ids{kInputsNode, kOutputsNode};
        for (GraphNode const& node : body.nodes)
            QVERIFY2(ids.insert(node.id).second, node.id.c_str());
        std::set<std::pair<std::string, std::string>> fed;
        for (GraphConnection const& connection : body.connections) {
            QVERIFY(ids.count(connection.from.node) && ids.count(connection.to.node));
            QVERIFY(fed.insert({connection.to.node, connection.to.port}).second);
        }
    }

    QRandomGenerator m_Random{kSeed};

private Q_SLOTS:
    void graphsStayWhole()
    {
        auto const operations = GetOperations();
        for (int count = 0; count < kOperations; ++count) {
            operations[m_Random.bounded(quint32(operations.size()))]();
            if (count % 500 == 499)
                Reopen();
            if (Body().nodes.size() > 60)
                Stack().setIndex(0);
            CheckBody(kMain);
            CheckBody(kLoop);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("after operation %1").arg(count)));
        }
    }
};

NODEBROWSER_TEST_MAIN(TestCanvasSoak)
#include "tst_canvassoak.moc"
