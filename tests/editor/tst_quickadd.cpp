#include "canvastest.h"
#include "whenshown.h"

#include <mainwindow.h>
#include <palette/nodepalette.h>
#include <quickadd.h>
#include <trailbar.h>

/// Nodes that are added from palettes, over the canvas of a window.
class TestQuickAdd : public CanvasTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Window.reset();
        CanvasTest::SetUp();
        // There is one canvas with a window, which is the one that is meant from now on.
        m_Canvas.reset();
        m_Window = std::make_unique<CMainWindow>(*m_Host);
        m_Window->resize(1300, 800);
        m_Window->show();
        m_Window->activateWindow();
        m_Canvas.reset(m_Window->findChild<CCanvas*>());
        m_Canvas->ResetZoom();
        m_Canvas->setFocus();
        QTRY_VERIFY(m_Canvas->hasFocus());
    }

    void TearDown() override
    {
        m_Canvas.release();
        m_Window.reset();
    }

private:
    CQuickAdd& Popup() const
    {
        return *m_Window->findChild<CQuickAdd*>();
    }

    void Type(QWidget const& palette, QString const& text) const
    {
        QLineEdit* const field = palette.findChild<QLineEdit*>();
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    }

    /// In one of the ways that the table below has.
    void PopUp(QString const& how)
    {
        QPoint const free = ViewPoint(160, 92);
        if (how == "double click")
            DoubleClick(free);
        else if (how == "Ctrl+Return") {
            Click(At("one"));
            m_Canvas->WantConnectedNode();
        } else if (how == "Tab" || how == "Space")
            QTest::keyClick(m_Canvas.get(), how == "Tab" ? Qt::Key_Tab : Qt::Key_Space);
        else
            Drag(At(how), free);
    }

    /// Entries of the window's menus that could be chosen before or can be now: "+Cut-Paste".
    QString TakeEnabledChanges()
    {
        QCoreApplication::processEvents();
        QString changes;
        for (QMenu const* const menu : m_Window->menuBar()->findChildren<QMenu*>())
            for (QAction const* const action : menu->actions()) {
                if (m_AreDisabled.value(action) == action->isEnabled())
                    changes += (action->isEnabled() ? '+' : '-') + action->iconText();
                m_AreDisabled[action] = !action->isEnabled();
            }
        return changes;
    }

    /// Texts of the labels and buttons that are shown.
    static QString GetTexts(QWidget const& parent)
    {
        QCoreApplication::processEvents();
        QStringList texts;
        for (QWidget const* const part : parent.findChildren<QWidget*>())
            if (part->isVisible() && part->property("text").isValid())
                texts << part->property("text").toString();
        return texts.join('|');
    }

    void Trigger(QString const& entry) const
    {
        for (QAction* const action : m_Window->findChildren<QAction*>())
            if (action->iconText() == entry)
                action->trigger();
    }

    std::unique_ptr<CMainWindow> m_Window;
    QHash<QAction const*, bool> m_AreDisabled;

private Q_SLOTS:
    void entriesAreEnabledWhereTheyWork()
    {
        std::pair<std::function<void()>, QString> const steps[] = {
            {[] {}, "-Open Recent-Undo-Redo-Add Connected Node-Cut-Copy-Paste-Duplicate-Delete"
                    "-Compound Above"},
            {[&] { Click(At("one")); }, "+Add Connected Node+Cut+Copy+Duplicate+Delete"},
            {[&] { m_Canvas->Copy(); }, "+Paste"},
            {[&] { Connect("one.sum", "two.a"), Click(Between("one.sum", "two.a")); },
             "+Undo-Add Connected Node-Cut-Copy-Duplicate"},
            {[&] { Stack().undo(); }, "-Undo+Redo-Delete"},
            {[&] { Open(kLocked); }, "-Add Node-Paste-Input-Output"},
            {[&] { m_Canvas->SelectAll(); }, "+Copy"},
            {[&] { m_Host->SetCompoundTarget({}); },
             "-Copy-Select All-Delete Compound-Zoom In-Zoom Out-Zoom to 100%-Zoom to Fit"},
            {[&] { m_Host->CloseLibrary(); }, "-Save graph library-Redo-Compound signature-Public "
                                              "compound-Public looping compound-Open Compound"}};
        for (auto const& [act, changes] : steps) {
            act();
            QCOMPARE(TakeEnabledChanges(), changes);
        }
    }

    void trailLeadsBack()
    {
        QWidget const& trail = *m_Window->findChild<CTrailBar*>();
        Open(kLocked);
        QCOMPARE(GetTexts(trail), QString("Read only|Locked"));
        Open(kOuter);
        DoubleClick(At("main"));
        QCOMPARE(GetTexts(trail), QString("Outer|\u203a|Main"));
        QCOMPARE(m_Window->windowTitle(), QString("Main - Test[*]"));
        Trigger("Compound Above");
        QCOMPARE(GetTexts(trail), QString("Outer"));
    }

    void compoundsAreDeletedWhenAsked()
    {
        SAnswers const answers({"Cancel", "Delete"});
        Trigger("Delete Compound");
        QVERIFY(!m_Host->FindItem(Uid(kMain)).IsNull());
        QVERIFY(answers.said.startsWith("Delete \"Main\"?It is used in Outer, where it will be"));
        Trigger("Delete Compound");
        QVERIFY(m_Host->FindItem(Uid(kMain)).IsNull());
    }

    void shortcutsAreListed()
    {
        QString texts;
        WhenShown const shown(OnDialog<QDialog>([&texts](QDialog& dialog) {
            texts = GetTexts(dialog);
            return dialog.close();
        }));
        Trigger("Shortcuts");
        QVERIFY2(texts.contains("|Copy|Ctrl+C|Paste|Ctrl+V|"), qPrintable(texts));
        QVERIFY(texts.contains("|<b>Canvas</b>|Add a node|Tab, Space, or double click"));
    }

    void hintsSayHowToBegin()
    {
        auto const texts = [this] {
            return GetTexts(*m_Canvas);
        };
        QCOMPARE(texts(), QString());
        Open(kEmpty);
        QCOMPARE(texts(), QString("Drag nodes here from the node browser, or press Tab."));
        m_Host->SetCompoundTarget({});
        QVERIFY(texts().startsWith("Test|2 solvers, 5 compounds, 1 constant, 2 types\n\nDouble-"));
        QList<QLabel*> const labels = m_Canvas->findChildren<QLabel*>();
        QVERIFY(labels[0]->font().pointSizeF() > 1.5 * labels[1]->font().pointSizeF());
        m_Host->CloseLibrary();
        QCOMPARE(texts(), QString("|Open a library to begin."));
    }

    void popupStaysOnTheScreen()
    {
        QRect const room = m_Window->screen()->availableGeometry();
        for (QPoint const& point : {room.topLeft() - QPoint(9, 9), room.center() - QPoint(99, 99),
                                    room.bottomRight() + QPoint(9, 9)}) {
            Popup().Open(point);
            QVERIFY(room.contains(Popup().geometry()));
            QCOMPARE(Popup().geometry().contains(point), room.contains(point));
        }
        QCOMPARE(Popup().GetPalette().geometry(), Popup().rect().adjusted(2, 2, -2, -2));
    }

    void popsUp_data()
    {
        QTest::addColumn<QString>("added");
        // How the palette pops up, or the port that a connection is drawn from; what is typed; the
        // node and the connection that are added.
        QTest::newRow("Tab;say") << "say-2 middle ";
        QTest::newRow("Space;pi") << "pi middle ";
        QTest::newRow("double click;add") << "add 80,80 ";
        QTest::newRow("Tab;main") << " ";
        // Below "two", which is in the way.
        QTest::newRow("Ctrl+Return;add") << "add 240,80 |one.sum>add.a";
        // The port is where the connection was let go.
        QTest::newRow("one.sum;add") << "add 160,60 |one.sum>add.a";
        QTest::newRow("one.b;add") << "add 0,60 |add.sum>one.b";
        QTest::newRow("one.sum;say") << "say-2 80,80 ";
    }

    void popsUp()
    {
        QStringList const row = QString(QTest::currentDataTag()).split(';');
        QString const nodes = Nodes();
        QString const wires = Wires();
        QImage const before = Picture();
        PopUp(row[0]);
        // It can be called off.
        QVERIFY(Popup().isVisible());
        QTest::keyClick(Popup().findChild<QLineEdit*>(), Qt::Key_Escape);
        QVERIFY(!Popup().isVisible());
        QTRY_VERIFY(m_Canvas->hasFocus());
        TypeKey(Qt::Key_Escape);
        QCOMPARE(Picture(), before);

        QPointF const middle = m_Canvas->mapToScene(m_Canvas->viewport()->rect().center());
        QPointF const topLeft = SnapToGrid(middle - QPointF(80, 14));
        QString const shown = QString("%1,%2").arg(topLeft.x()).arg(topLeft.y());
        PopUp(row[0]);
        Type(Popup(), row[1]);
        QVERIFY(!Popup().isVisible());
        QString const added = Nodes().mid(nodes.size() + 1) + ' ' + Wires().mid(wires.size());
        QTEST(QString(added).replace(shown, "middle"), "added");
        QCOMPARE(Stack().count(), added == " " ? 0 : 1);
        bool const isTold = row[1] == "main" || row == QStringList({"one.sum", "say"});
        QCOMPARE(!GetMessages(*m_Host).isEmpty(), isTold);
        // What was added last comes first.
        PopUp(row[0]);
        QCOMPARE(Popup().GetPalette().GetRowName(0).toLower(), added == " " ? "add" : row[1]);
    }

    void nodesGoIntoConnections()
    {
        QString const other = QStringLiteral("gone.lost>two.b|");
        Connect("one.sum", "two.a");
        QPoint const wire = Between("one.sum", "two.a");
        // Its ports do not fit.
        IsDropped(kSay, wire);
        QCOMPARE(Wires(), other + "one.sum>two.a");
        Stack().undo();
        IsDropped(kAdd, wire);
        QCOMPARE(Wires(), other + "one.sum>add.a|add.sum>two.a");
        Stack().undo();
        // One that is there already, until it is connected.
        IsDropped(kAdd, ViewPoint(160, 300));
        for (int drag = 0; drag < 2; ++drag) {
            Drag(At("add"), wire);
            QCOMPARE(Wires(), other + "one.sum>add.a|add.sum>two.a");
            QCOMPARE(Stack().undoText(), QStringLiteral("Move Node"));
        }
    }

    /// Enter adds whatever is selected in the docked palette, a double click what cannot be opened.
    void paletteAdds()
    {
        auto const dock = m_Window->findChild<QDockWidget*>("Node Browser");
        auto& palette = *dock->findChild<CNodePalette*>();
        palette.findChild<QLineEdit*>()->setFocus();
        Type(palette, "say");
        Type(palette, "");
        // Where there is room.
        QPointF const first = *Scene().FindNodePosition("say-2");
        QVERIFY(Scene().FindNodePosition("say-3")->y() >= first.y() + 60);
        for (char const* const item : {"say", "empty", "outer"}) {
            palette.StartSearch(item);
            QTest::mouseDClick(&palette, Qt::LeftButton, Qt::NoModifier,
                               palette.GetRowRect(0).center());
        }
        QVERIFY(m_Host->GetCompoundTarget().GetItemID() == m_Host->FindItem(Uid(kOuter)));
        Open(kMain);
        QVERIFY(Nodes().contains("say-4") && !Nodes().contains("empty"));
    }

    void portsStayWhereTheyArePut()
    {
        QPointF const place = *Scene().FindNodePosition("in") + QPointF(-40, 80);
        Drag(At("in"), At("in") + QPoint(-40, 80));
        Change([](embeddedhost::GraphBody& body) { body.nodes[0].position.rx() -= 200; });
        QCOMPARE(*Scene().FindNodePosition("in"), place);
        QVERIFY(IsAsOpenedAnew());
        Stack().setIndex(0);
        QVERIFY(*Scene().FindNodePosition("in") != place);
    }
};

NODEBROWSER_TEST(TestQuickAdd)

#include "tst_quickadd.moc"
