#include "canvastest.h"
#include "whenshown.h"

#include <nodebrowser.h>
#include <typeselector.h>

using namespace embeddedhost;

namespace {

/// In the first row of the dialog's panel, which has no tabs.
QPoint const kInFirstRow(60, 34);

/// Chooses the type that the dialog lists first.
bool ChooseType(CTypeSelector& dialog)
{
    QTest::mouseClick(dialog.findChild<CNodeBrowser*>(), Qt::LeftButton, Qt::NoModifier,
                      kInFirstRow);
    // There are no rows before the first paint.
    return !dialog.isVisible();
}

} // namespace

/// Connections between nodes, and the compound's own ports.
class TestCanvasPorts : public CanvasTest
{
    Q_OBJECT

private:
    /// In the colour of a connection of numbers.
    bool IsPaintedAt(QPoint const& point) const
    {
        return IsLike(Picture().pixelColor(point), GetTypeColor(Uid(kFloat), "Float", false));
    }

    /// It can be pressed and seen, so far from the port.
    bool IsWireAt(char const* port, int offset) const
    {
        QPoint const point = At(port) + QPoint(offset, 0);
        return IsPaintedAt(point) && Scene().FindConnectionAt(m_Canvas->mapToScene(point), 2);
    }

    /// Chooses an entry of the context menu. Returns all of them, in brackets where they cannot be.
    QString Choose(QPoint const& point, char const* text = "",
                   QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
    {
        QStringList entries;
        WhenShown const answer([&entries, text] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            for (QAction* const action : menu ? menu->actions() : QList<QAction*>()) {
                if (!action->isSeparator())
                    entries << QString(action->isEnabled() ? "%1" : "(%1)").arg(action->iconText());
                if (action->text() == text && action->isEnabled())
                    action->trigger();
            }
            return menu && menu->close();
        });
        QContextMenuEvent event(reason, point, m_Canvas->viewport()->mapToGlobal(point));
        QApplication::sendEvent(m_Canvas->viewport(), &event);
        return entries.join(' ');
    }

private Q_SLOTS:
    void connectionsAreDrawn()
    {
        QString const first = QStringLiteral("gone.lost>two.b");
        QString const both = first + "|one.sum>two.a";
        // From a port to another one, the connections then, and why it is refused.
        std::tuple<char const*, char const*, QString, QString> const rows[] = {
            {"two.sum", "out.result", both + "|two.sum>out.result", ""},
            {"in.value", "one.b", both + "|in.value>one.b", ""},
            // Instead of another one.
            {"in.value", "two.b", "one.sum>two.a|in.value>two.b", ""},
            // Taken off an input.
            {"two.a", "no.where", first, ""},
            {"two.a", "two.b", "one.sum>two.b", ""},
            // Refused: other types, sides and circles.
            {"say.said", "one.a", both, "Text does not go into Float."},
            {"one.sum", "two.sum", both, "An output goes to an input."},
            {"one.b", "one.a", both, "An input takes an output."},
            {"two.sum", "one.b", both, "The output depends on this node already."},
            {"one.sum", "no.where", both, ""},
            {"two.a", "two.a", both, ""}};
        Connect("one.sum", "two.a");
        for (auto const& [from, to, wires, reason] : rows) {
            Press(At(from));
            MoveMouse(At(to));
            QCOMPARE(Cursor(), reason.isEmpty() ? Qt::CrossCursor : Qt::ForbiddenCursor);
            QVERIFY(reason.isEmpty() || QToolTip::text() == reason);
            Release(At(to));
            m_Canvas->ForgetWantedNode();
            QCOMPARE(Wires(), wires);
            QCOMPARE(Stack().index(), wires == both ? 1 : 2);
            QCOMPARE(Cursor(), Qt::ArrowCursor);
            // Nothing of the loose connection is left.
            QVERIFY(IsAsOpenedAnew());
            Stack().setIndex(1);
        }
    }

    void looseConnectionsFollowTheMouse()
    {
        Connect("one.sum", "two.a");
        QImage const before = Picture();
        for (char const* const port : {"one.sum", "two.a"}) {
            Press(At(port));
            QCOMPARE(Cursor(), Qt::CrossCursor);
            for (QPoint const& point : {QPoint(500, 430), QPoint(640, 560)}) {
                MoveMouse(point);
                QVERIFY(IsPaintedAt(point - QPoint(3, 0)));
            }
            QVERIFY(!IsPaintedAt(QPoint(497, 430)));
            TypeKey(Qt::Key_Escape);
            QCOMPARE(Picture(), before);
            Release(kNowhere);
        }
        QCOMPARE(Stack().count(), 1);
    }

    void connectionsFollowTheirNodes()
    {
        Connect("one.sum", "two.a");
        for (char const* const node : {"one", "two"}) {
            QPoint const from = At(node);
            Press(from);
            for (int const way : {60, 20}) {
                MoveMouse(from + QPoint(0, way));
                // At both of its ends.
                QVERIFY(IsWireAt("one.sum", 7));
                QVERIFY(IsWireAt("two.a", -8));
            }
            Release(from + QPoint(0, 20));
            QVERIFY(IsAsOpenedAnew());
        }
    }

    void connectionsAreSelectedAndDeleted()
    {
        Connect("one.sum", "two.a");
        QPoint const middle = Between("one.sum", "two.a");
        Click(middle + QPoint(0, 8));
        QVERIFY(!m_Canvas->HasSelection());
        Click(middle + QPoint(0, 5));
        QVERIFY(m_Canvas->HasSelection() && !m_Canvas->CanCopy());
        QCOMPARE(Picture().pixelColor(middle), Scene().GetColors().selection);
        TypeKey(Qt::Key_Backspace);
        QCOMPARE(Wires(), QStringLiteral("gone.lost>two.b"));
    }

    /// Files made by other means may have those that share an input, or lack a node.
    void oddConnectionsDoNoHarm()
    {
        Change([](GraphBody& body) {
            body.connections = {{{"one", "sum"}, {"two", "a"}}, {{"gone", "sum"}, {"two", "a"}}};
        });
        Drag(At("two.a"), At("two.a"));
        QVERIFY(IsAsOpenedAnew());
        Change([](GraphBody& body) { RemoveNodes(body, {"gone"}); });
        QImage const without = Picture();
        Connect("gone.sum", "one.a");
        QCOMPARE(Picture(), without);
    }

    void portsAreAddedAndRemoved()
    {
        auto const ports = [this] {
            QString text = Stack().undoText() + ':';
            for (auto const& side : {Body().inputs, Body().outputs})
                for (GraphPort const& port : side)
                    text += ' ' + QString::fromStdString(port.name);
            return text;
        };
        // Taken already.
        WhenShown const type(OnDialog<CTypeSelector>(ChooseType));
        WhenShown const named(OnDialog<QInputDialog>([](QInputDialog& dialog) {
            dialog.setTextValue(" value ");
            return QMetaObject::invokeMethod(&dialog, "accept");
        }));
        m_Canvas->AddInput();
        QVERIFY(type.IsDone() && named.IsDone());
        QCOMPARE(ports(), QString("Add Input: value value 2 result"));
        QCOMPARE(Body().inputs.back().type, Uid(kFloat));
        Connect("in.value", "one.a");
        Choose(At("in.value"), "Remove Input");
        QCOMPARE(ports() + Wires(), QString("Remove Input: value 2 resultgone.lost>two.b"));
    }

    void addedPortsOutliveTheirCompound()
    {
        WhenShown const type(OnDialog<CTypeSelector>([this](CTypeSelector& dialog) {
            m_Host->CloseLibrary();
            return ChooseType(dialog) || dialog.close();
        }));
        m_Canvas->AddOutput();
        QCOMPARE(Stack().count(), 0);
    }

    void screenReadersGetNodesAndConnections()
    {
        Connect("one.sum", "two.a");
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Canvas.get());
        QCOMPARE(list->text(QAccessible::Name), QString("Graph of Main"));
        // By their ids.
        QAccessibleInterface* const two = list->child(5);
        QCOMPARE(two->text(QAccessible::Name), QString("Add"));
        QCOMPARE(two->text(QAccessible::Description),
                 QString("two, solver; inputs a: Float from one sum, b: Float from gone lost; "
                         "outputs sum: Float"));
        QCOMPARE(list->childAt(two->rect().center().x(), two->rect().center().y()), two);
        two->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(two->state().selected && !list->child(2)->state().selected);
        // Readers keep nodes that stay, and forget the others.
        QAccessible::Id const oneId = QAccessible::uniqueId(list->child(2));
        QAccessible::Id const twoId = QAccessible::uniqueId(two);
        m_Canvas->DeleteSelection();
        QVERIFY(QAccessible::accessibleInterface(oneId) && list->child(2)->isValid());
        QCOMPARE(QAccessible::uniqueId(list->child(2)), oneId);
        QVERIFY(!QAccessible::accessibleInterface(twoId));
        Open(kEmpty);
        // A widget instead of a node.
        QVERIFY(list->child(0)->object());
    }

    void contextMenusOfferWhatCanBeDone()
    {
        // An item, a place in its graph, and the entries.
        std::tuple<int, char const*, QString> const rows[] = {
            {kMain, "one", "Cut Copy Duplicate Delete"},
            {kMain, "in.value", "Remove Input"},
            {kMain, "out.result", "Remove Output"},
            {kMain, "no.where", "Add Node\tTab (Paste) Select All Add Input Add Output Fit"},
            {kEmpty, "no.where", "Add Node\tTab (Paste) (Select All) Add Input Add Output Fit"},
            {kOuter, "main", "Open Cut Copy Duplicate Delete"},
            {kLocked, "one", "(Cut) Copy (Duplicate) (Delete)"},
            {kLocked, "in.value", "(Remove Input)"},
            {kLocked, "wire", "(Delete)"},
            {kLocked, "no.where",
             "(Add Node\tTab) (Paste) Select All (Add Input) (Add Output) Fit"}};
        for (auto const& [item, place, entries] : rows) {
            Open(item);
            m_Canvas->ResetZoom();
            Scene().clearSelection();
            QCOMPARE(place + Choose(*place == 'w' ? Between("in.value", "one.a") : At(place)),
                     place + entries);
            QCOMPARE(m_Canvas->HasSelection(), QString("one main wire").contains(place));
        }
    }

    void contextMenusActOnWhatIsUnderTheMouse()
    {
        Connect("one.sum", "two.a");
        Choose(At("one"), "Copy");
        Choose(ViewPoint(220, 140), "Paste");
        QVERIFY(Nodes().endsWith(QStringLiteral("|one-2 220,140")));
        Choose(Between("one.sum", "two.a"), "Delete");
        QCOMPARE(Wires(), QStringLiteral("gone.lost>two.b"));
        Open(kOuter);
        // The Menu key, wherever the mouse is.
        Scene().SelectNodes({"main"});
        Choose(kNowhere, "Open", QContextMenuEvent::Keyboard);
        QVERIFY(m_Host->GetCompoundTarget().GetItemID() == m_Host->FindItem(Uid(kMain)));
        Open(kOuter);
        DoubleClick(At("main"));
        QVERIFY(m_Host->GetCompoundTarget().GetItemID() == m_Host->FindItem(Uid(kMain)));
    }
};

NODEBROWSER_TEST(TestCanvasPorts)

#include "tst_canvasports.moc"
