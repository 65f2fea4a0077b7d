#include "canvastest.h"

#include <nodebrowser.h>
#include <typeselector.h>

#include <QContextMenuEvent>
#include <QInputDialog>
#include <QMenu>
#include <QTimer>

#include <functional>

namespace {

/// In the first row of the dialog's panel, which has no tabs.
QPoint const kInFirstRow(60, 34);

/// Tries until it succeeds, from the event loops of dialogs and menus that come up.
class WhenShown
{
public:
    explicit WhenShown(std::function<bool()> const& act)
    {
        QObject::connect(&m_Timer, &QTimer::timeout, &m_Timer,
                         [this, act] { m_IsDone = m_IsDone || act(); });
        m_Timer.start(1);
    }

    bool IsDone() const
    {
        return m_IsDone;
    }

private:
    bool m_IsDone = false;
    QTimer m_Timer;
};

/// Chooses the type that the dialog lists first.
bool ChooseType()
{
    auto* const dialog = qobject_cast<CTypeSelector*>(QApplication::activeModalWidget());
    if (!dialog)
        return false;
    QTest::mouseClick(dialog->findChild<CNodeBrowser*>(), Qt::LeftButton, Qt::NoModifier,
                      kInFirstRow);
    // There are no rows before the first paint.
    return !dialog->isVisible();
}

bool EnterName(QString const& name)
{
    auto* const dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
    if (!dialog)
        return false;
    dialog->setTextValue(name);
    dialog->accept();
    return true;
}

/// An empty text closes the menu.
bool ChooseInMenu(QString const& text)
{
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
        return false;
    for (QAction* const action : menu->actions())
        if (action->text() == text && action->isEnabled())
            action->trigger();
    menu->close();
    return true;
}

} // namespace

/// Connections between nodes, and the compound's own ports.
class TestCanvasPorts : public CanvasTest
{
    Q_OBJECT

private:
    void ChooseInContextMenu(QPoint const& point, QString const& text)
    {
        WhenShown const answer([&text] { return ChooseInMenu(text); });
        QContextMenuEvent event(QContextMenuEvent::Mouse, point,
                                m_Canvas->viewport()->mapToGlobal(point));
        QApplication::sendEvent(m_Canvas->viewport(), &event);
        QVERIFY(answer.IsDone());
    }

    /// The dot of the compound's only input, wherever its node was put.
    QPoint FindOwnPort() const
    {
        CGraphScene const& scene = *static_cast<CGraphScene*>(m_Canvas->scene());
        auto const port = scene.GetPort({kInputsNode, "value"}, true);
        return port ? m_Canvas->mapFromScene(port->position) : QPoint();
    }

    /// What the canvas shows around a point.
    QImage Look(QPoint const& point) const
    {
        return m_Canvas->viewport()
            ->grab(QRect(point, QSize(1, 1)).adjusted(-8, -8, 8, 8))
            .toImage();
    }

private Q_SLOTS:
    void connectionsAreDrawnEitherWay()
    {
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        QCOMPARE(SourceOf("two", "a"), std::string("one.sum"));
        QCOMPARE(Stack().undoText(), QStringLiteral("Connect"));
        Stack().undo();
        QCOMPARE(SourceOf("two", "a"), std::string());
        Drag(PortOf("two", 0, false), PortOf("one", 0, true));
        QCOMPARE(SourceOf("two", "a"), std::string("one.sum"));
    }

    void connectionsReplaceWhatWasThere()
    {
        QCOMPARE(SourceOf("two", "b"), std::string("gone.lost"));
        Drag(PortOf("one", 0, true), PortOf("two", 1, false));
        QCOMPARE(SourceOf("two", "b"), std::string("one.sum"));
        QCOMPARE(Body().connections.size(), std::size_t(1));
    }

    void impossibleConnectionsAreNotMade()
    {
        Drag(PortOf("say", 0, true), PortOf("two", 0, false));
        Drag(PortOf("one", 0, true), PortOf("two", 0, true));
        Drag(PortOf("one", 0, true), PortOf("one", 0, false));
        Drag(PortOf("one", 0, true), QPoint(5, 5));
        QCOMPARE(Stack().count(), 0);
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        Drag(PortOf("two", 0, true), PortOf("one", 0, false));
        QCOMPARE(Stack().count(), 1);
    }

    void connectionsAreSelectedAndDeleted()
    {
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        Click((PortOf("one", 0, true) + PortOf("two", 0, false)) / 2);
        QVERIFY(m_Canvas->HasSelection());
        QTest::keyClick(m_Canvas.get(), Qt::Key_Delete);
        QCOMPARE(SourceOf("two", "a"), std::string());
        QCOMPARE(SourceOf("two", "b"), std::string("gone.lost"));
        QCOMPARE(Body().nodes.size(), std::size_t(4));
    }

    void connectedInputsGiveTheirConnectionAway()
    {
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        // Put down elsewhere, onto what cannot take it, back, and nowhere.
        Drag(PortOf("two", 0, false), PortOf("two", 1, false));
        QCOMPARE(SourceOf("two", "a"), std::string());
        QCOMPARE(SourceOf("two", "b"), std::string("one.sum"));
        int const count = Stack().count();
        Drag(PortOf("two", 1, false), PortOf("say", 0, false));
        Drag(PortOf("two", 1, false), PortOf("two", 1, false));
        QCOMPARE(Stack().count(), count);
        Drag(PortOf("two", 1, false), QPoint(5, 5));
        QCOMPARE(SourceOf("two", "b"), std::string());
        QCOMPARE(Stack().undoText(), QStringLiteral("Disconnect"));
    }

    void escapePutsAConnectionBack()
    {
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        QTest::mousePress(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier,
                          PortOf("two", 0, false));
        QTest::keyClick(m_Canvas.get(), Qt::Key_Escape);
        QTest::mouseRelease(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        QCOMPARE(SourceOf("two", "a"), std::string("one.sum"));
        QCOMPARE(Stack().count(), 1);
    }

    void connectionsThatShareAnInputStay()
    {
        // Files made by other means may have them.
        GraphBody body = Body();
        body.connections = {{{"one", "sum"}, {"two", "a"}}, {{"gone", "sum"}, {"two", "a"}}};
        QVERIFY(m_Host->SetBody(m_Host->FindItem(Uid(kMain)), body, "Fill"));
        QImage const before = m_Canvas->viewport()->grab().toImage();
        Drag(PortOf("two", 0, false), PortOf("two", 0, false));
        MoveMouse(QPoint(5, 5));
        QCOMPARE(m_Canvas->viewport()->grab().toImage(), before);
    }

    void connectionsAreNotSeenWithoutTheirNodes()
    {
        GraphBody body = Body();
        RemoveNodes(body, {"gone"});
        GraphBody torn = body;
        torn.connections = Body().connections;
        auto const show = [this](GraphBody const& shown) {
            m_Host->SetBody(m_Host->FindItem(Uid(kMain)), shown, "Elsewhere");
            return m_Canvas->viewport()->grab().toImage();
        };
        QImage const seen = show(torn);
        QCOMPARE(seen, show(body));
    }

    void loopsFeedValuesBack()
    {
        GraphBody body;
        body.nodes = {{"one", Uid(kAdd), QPointF(0, 0)}, {"two", Uid(kAdd), QPointF(300, 0)}};
        body.connections = {{{"one", "sum"}, {"two", "a"}}};
        QVERIFY(m_Host->SetBody(m_Host->FindItem(Uid(kLoop)), body, "Fill"));
        Open(kLoop);
        m_Canvas->ResetZoom();
        Drag(m_Canvas->mapFromScene(QPointF(300, 0) + GetPortPosition(NodeLook(), 0, true)),
             m_Canvas->mapFromScene(GetPortPosition(NodeLook(), 0, false)));
        QCOMPARE(Body(kLoop).connections.size(), std::size_t(2));
    }

    void portsThatDoNotFitFade()
    {
        QImage const suitable = Look(PortOf("two", 0, false));
        QImage const unsuitable = Look(PortOf("say", 0, false));
        QTest::mousePress(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier,
                          PortOf("one", 0, true));
        QCOMPARE(Look(PortOf("two", 0, false)), suitable);
        QVERIFY(Look(PortOf("say", 0, false)) != unsuitable);
        QTest::mouseRelease(m_Canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        QCOMPARE(Look(PortOf("say", 0, false)), unsuitable);
    }

    void portsUnderTheMouseAreMarked()
    {
        QPoint const port = PortOf("one", 0, true);
        QImage const plain = Look(port);
        MoveMouse(port);
        QVERIFY(Look(port) != plain);
        MoveMouse(QPoint(5, 5));
        QCOMPARE(Look(port), plain);
    }

    void addedPortsHaveTheChosenTypeAndName()
    {
        WhenShown const type(ChooseType);
        // Taken already.
        WhenShown const name([] { return EnterName(QStringLiteral("value")); });
        m_Canvas->AddInput();
        QVERIFY(type.IsDone() && name.IsDone());
        GraphBody const body = Body();
        QCOMPARE(body.inputs.size(), std::size_t(2));
        QCOMPARE(body.inputs.back().name, std::string("value 2"));
        QCOMPARE(body.inputs.back().type, Uid(kFloat));
        QCOMPARE(Stack().undoText(), QStringLiteral("Add Input"));
    }

    void addedPortsOutliveTheirCompound()
    {
        WhenShown const type([this] {
            m_Host->CloseLibrary();
            return ChooseType();
        });
        QTimer::singleShot(50, m_Canvas.get(), [] {
            if (QWidget* const dialog = QApplication::activeModalWidget())
                dialog->close();
        });
        m_Canvas->AddOutput();
        QCOMPARE(Stack().count(), 0);
    }

    void removedPortsTakeTheirConnectionsAlong()
    {
        GraphBody body = Body();
        Connect(body, {{kInputsNode, "value"}, {"one", "a"}});
        m_Host->SetBody(m_Host->FindItem(Uid(kMain)), body, "Connect");
        m_Canvas->Fit();
        auto const port = FindOwnPort();
        ChooseInContextMenu(port, QStringLiteral("Remove Input"));
        QVERIFY(Body().inputs.empty());
        QCOMPARE(SourceOf("one", "a"), std::string());
        QCOMPARE(Stack().undoText(), QStringLiteral("Remove Input"));
    }

    void readOnlyCompoundsOfferNoChanges()
    {
        QVERIFY(m_Canvas->CanChange());
        Click(HeaderOf("one"));
        m_Canvas->Copy();
        QVERIFY(m_Canvas->CanPaste());
        Open(kLocked);
        QVERIFY(!m_Canvas->CanChange());
        QVERIFY(!m_Canvas->CanPaste());
        m_Host->GetMessages().ClearLog();
        ChooseInContextMenu(QPoint(50, 50), QStringLiteral("Paste"));
        QCOMPARE(Stack().count(), 0);
        QVERIFY(GetMessages(*m_Host).isEmpty());
    }

    void contextMenusActOnWhatIsUnderTheMouse()
    {
        ChooseInContextMenu(HeaderOf("one"), QStringLiteral("Duplicate"));
        QCOMPARE(PositionOf("one-2"), QPointF(40, 40));
        ChooseInContextMenu(HeaderOf("say"), QStringLiteral("Delete"));
        QVERIFY(!FindNode(Body(), "say"));
        Drag(PortOf("one", 0, true), PortOf("two", 0, false));
        ChooseInContextMenu((PortOf("one", 0, true) + PortOf("two", 0, false)) / 2,
                            QStringLiteral("Delete"));
        QCOMPARE(SourceOf("two", "a"), std::string());
        ChooseInContextMenu(QPoint(5, 5), QStringLiteral("Select All"));
        QVERIFY(m_Canvas->CanCopy());
    }
};

NODEBROWSER_TEST_MAIN(TestCanvasPorts)
#include "tst_canvasports.moc"
