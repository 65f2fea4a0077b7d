#include "mainwindowtest.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QUndoStack>

/// What menus and keys do, and when they are there.
class TestMainWindowMenus : public MainWindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void shortcutsAreTheirOwn()
    {
        Open();
        QMap<QString, QString> owners;
        for (QAction const* const action : m_Run->window.findChildren<QAction*>()) {
            for (QKeySequence const& key : action->shortcuts()) {
                QString& owner = owners[key.toString()];
                QVERIFY2(owner.isEmpty(),
                         qPrintable(key.toString() + ": " + owner + ", " + action->text()));
                owner = action->text();
            }
        }
        QVERIFY(owners.size() > 10);
    }

    /// What is typed into the search field is no command for the graph.
    void searchFieldKeepsItsKeys()
    {
        Open();
        Rename();
        ShowCompound(1);
        FindAction(QStringLiteral("Select All"))->trigger();
        QTRY_VERIFY(FindAction(QStringLiteral("Delete"))->isEnabled());
        QApplication::setActiveWindow(&m_Run->window);
        auto* const field = m_Run->window.findChild<QLineEdit*>();
        field->setFocus();
        QTRY_VERIFY(field->hasFocus());
        QTest::keyClicks(field, QStringLiteral("ramp"));
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field->text(), QString());
        QCOMPARE(m_Run->user.NameOf(Item(1)), std::string("Soft Glow"));
        QTest::keyClicks(field, QStringLiteral("ramp"));
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_Delete);
        QCOMPARE(field->text(), QString());
        QCOMPARE(CountNodes(), std::size_t(1));
    }

    void editMenuActsOnTheGraph()
    {
        Open();
        ShowCompound(1);
        FindAction(QStringLiteral("Select All"))->trigger();
        QTRY_VERIFY(FindAction(QStringLiteral("Copy"))->isEnabled());
        FindAction(QStringLiteral("Copy"))->trigger();
        FindAction(QStringLiteral("Paste"))->trigger();
        QCOMPARE(CountNodes(), std::size_t(2));
        QTRY_VERIFY(m_Run->window.isWindowModified());
        FindAction(QStringLiteral("Delete"))->trigger();
        QCOMPARE(CountNodes(), std::size_t(1));
        m_Run->host.GetCommandManager().GetUndoStack().undo();
        QCOMPARE(CountNodes(), std::size_t(2));
    }

    void withoutALibraryNothingIsOffered()
    {
        QApplication::clipboard()->clear();
        for (QString const& text :
             {QStringLiteral("Save graph library"), QStringLiteral("Public compound"),
              QStringLiteral("Paste"), QStringLiteral("Input...")})
            QVERIFY2(!FindAction(text)->isEnabled(), qPrintable(text));
        Open();
        QVERIFY(FindAction(QStringLiteral("Save graph library"))->isEnabled());
        QVERIFY(!FindAction(QStringLiteral("Paste"))->isEnabled());
        ShowCompound(1);
        QVERIFY(FindAction(QStringLiteral("Input..."))->isEnabled());
        QVERIFY(!FindAction(QStringLiteral("Paste"))->isEnabled());
        QVERIFY(!FindAction(QStringLiteral("Copy"))->isEnabled());
    }
};

NODEBROWSER_TEST_MAIN(TestMainWindowMenus)
#include "tst_mainwindowmenus.moc"
