#include "browsertest.h"

#include <algorithm>
#include <cstring>

using namespace tarno::datamodel;

/// The panel towards its host: how it is made, what it registers and asks, what it is told.
class TestPanel : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsAsConfigured()
    {
        m_Library->Add(TarnoType::gSolver, "node");
        m_Library->Add(LibType::gType, "type");
        m_Host->m_ListsQueries = true;
        // Whatever is no full browser is a type chooser.
        for (int const config : {0, 1, 2, 9}) {
            m_Host->TakeCalls();
            TestBrowser browser(static_cast<CNodeBrowser::eConfigType>(config));
            QCOMPARE(m_Host->TakeCalls().join('|'),
                     QString("ScsTask 'NodeBrowser'|GetService 'RevisionControlPropertiesMgr'"));
            QString tabs;
            QTabBar const* const tabBar = browser.findChild<QTabBar*>();
            for (int tab = 0; tabBar && tab < tabBar->count(); ++tab)
                tabs += tabBar->tabText(tab) + ' ';
            QCOMPARE(tabs, QString(config == 0 ? "Nodes Types All " : ""));
            QVERIFY(browser.findChild<QScrollBar*>()->isHidden());
            QPushButton const& clear = *browser.findChild<QPushButton*>();
            QVERIFY(clear.text().isEmpty() && !clear.icon().isNull());
            // Without a library there is nothing to show, nor to break.
            QCOMPARE(browser.GetRows(), QString());
            browser.SetItemLibrary(m_Library->GetAccessor());
            QCOMPARE(browser.GetRows(), QString(config == 0 ? "node" : "type"));
            QVERIFY(browser.GetSelection().IsNull());
        }
    }

    void keepsItsMetaObject()
    {
        QMetaObject const& meta = CNodeBrowser::staticMetaObject;
        QStringList methods;
        for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
            methods << meta.method(index).methodSignature();
        QCOMPARE(methods.join(' '),
                 QString("SelectionChanged() SliderValueChanged(int) SearchTextChange(QString) "
                         "EnterPressed() TabChanged(int) OnNewSignature() OnNewCompound() "
                         "OnNewLoopCompound() OnSaveGraphLibrary() ClearButton(bool) "
                         "OnRenameItem() OnDeleteItem() OnCheckOutItem() OnMakeItemWritable() "
                         "OnShowItemFiles() OnEditItemTags() OnDatasourceChange()"));
        // The slot of revision control is inherited privately.
        TestBrowser browser;
        QVERIFY(!browser.qt_metacast("IRevisionControlPropertiesMgr_Slot"));
        QCOMPARE(browser.qt_metacast("tarno::datamodel::IItemLibraryNotification"),
                 static_cast<void*>(static_cast<IItemLibraryNotification*>(&browser)));
    }

    void ordersItsVirtualFunctions()
    {
#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)
        // A pointer to a virtual function holds its place in the table of the class.
        auto const placeOf = [](auto function) {
            std::ptrdiff_t words[sizeof(function) / sizeof(std::ptrdiff_t)];
            std::memcpy(words, &function, sizeof(function));
            return (words[0] - 1) / std::ptrdiff_t(sizeof(void*));
        };
        auto const areInOrder = [placeOf](auto... functions) {
            std::vector<std::ptrdiff_t> const places = {placeOf(functions)...};
            return places.back() - places.front() + 1 == std::ptrdiff_t(places.size())
                   && std::is_sorted(places.begin(), places.end());
        };
        typedef CNodeBrowser B;
        typedef TestBrowser T;
        QVERIFY(areInOrder(&B::OnRevisionControlPropertiesChange, &B::ItemAdded, &B::ItemRemoved,
                           &B::OnBeginChanges, &B::OnEndChanges, &B::LibraryInvalidated,
                           &B::ItemNameChanged, &B::ItemTagsChanged, &B::ItemAccessStateChanged,
                           &B::OnPreCommit, &B::OnPostCommit, &T::OnRenameItem, &T::OnDeleteItem,
                           &T::OnCheckOutItem, &T::OnMakeItemWritable, &T::OnShowItemFiles,
                           &T::OnEditItemTags, &T::OnDatasourceChange, &T::PopContexMenu));
#else
        QSKIP("Only one calling convention tells the order.");
#endif
    }

    void registersOnceWhateverIsAttached()
    {
        TestLibrary second("B");
        QString const attach =
            "Library.AddNotification %1 40 own context|TOC.AddNotification %1 39 own context";
        QString const detach = "TOC.RemoveNotification %1 39 own context|"
                               "Library.RemoveNotification %1 40 own context|";
        auto const attachAndTake = [this](TestLibrary const& library) {
            m_Browser->SetItemLibrary(library.GetAccessor());
            return m_Host->TakeCalls().join('|');
        };
        m_Browser.reset(new TestBrowser);
        m_Host->TakeCalls();
        QCOMPARE(attachAndTake(*m_Library), attach.arg("A"));
        QCOMPARE(attachAndTake(*m_Library), detach.arg("A") + attach.arg("A"));
        QCOMPARE(attachAndTake(second), detach.arg("A") + attach.arg("B"));
        m_Browser.reset();
        QCOMPARE(m_Host->TakeCalls().join('|'), detach.arg("B") + "DeleteMe");
        // Without a library there is nothing to unregister.
        m_Browser.reset(new TestBrowser);
        m_Browser.reset();
        QCOMPARE(m_Host->TakeCalls().mid(1), QStringList("DeleteMe"));
    }

    void repaintsAndRebuildsAsNeeded()
    {
        m_Host->m_IsFileVersionControlActive = true;
        for (int item = 0; item < 30; ++item)
            m_Library->Add(TarnoType::gSolver, "item");
        TestItem& item = *m_Library->m_Listed.front();
        ItemAccessor accessor = m_Library->GetAccessor(item);
        ItemLibraryAccessor library = m_Library->GetAccessor();
        MakeBrowser();
        m_Browser->show();
        QVERIFY(QTest::qWaitForWindowActive(m_Browser.get()));
        QApplication::processEvents();

        bool cancel = true;
        // Whether it is painted, and questions asked; making the list takes five.
        typedef std::tuple<char const*, std::function<void()>, bool, int> Row;
        for (auto const& [name, happen, isPainted, questions] : {
                 Row{"added", [&] { m_Browser->ItemAdded(accessor); }, true, 5},
                 Row{"removed", [&] { m_Browser->ItemRemoved(accessor); }, true, 5},
                 Row{"renamed", [&] { m_Browser->ItemNameChanged(library, item.id); }, true, 5},
                 Row{"changes", [&] { TellInvalidated(), TellInvalidated(); }, true, 5},
                 Row{"begin", [&] { m_Browser->OnBeginChanges(library); }, false, 0},
                 Row{"end", [&] { m_Browser->OnEndChanges(library); }, false, 0},
                 Row{"commit", [&] { m_Browser->OnPreCommit(library, &cancel); }, false, 0},
                 Row{"committed", [&] { m_Browser->OnPostCommit(library); }, false, 0},
                 Row{"tags", [&] { TellTags(item.id); }, false, 0},
                 Row{"other state", [&] { TellState(item.id, 1); }, true, 0},
                 Row{"states shown", [&] { m_Browser->SetSourceControlEnabled(true); }, true, 5},
                 Row{"state shown", [&] { TellState(item.id, 2); }, true, 0},
                 Row{"states hidden", [&] { m_Browser->SetSourceControlEnabled(false); }, true, 0},
                 Row{"library", [&] { m_Browser->SetItemLibrary(library); }, true, 5},
                 Row{"search", [&] { m_Browser->SearchTextChange("i"); }, true, 0},
                 Row{"tab", [&] { m_Browser->TabChanged(0); }, true, 0},
                 Row{"scroll", [&] { m_Browser->findChild<QScrollBar*>()->setValue(9); }, true, 0},
                 Row{"selected", [&] { Click(1); }, true, 0},
                 // The highlight stays until something else paints.
                 Row{"deselected", [&] { Click(0, Qt::MiddleButton); }, false, 0},
             }) {
            m_Browser->TakePaintCount();
            m_Host->TakeCount("GetItems");
            happen();
            QVERIFY2((m_Browser->TakePaintCount() > 0) == isPainted, name);
            QVERIFY2(m_Host->TakeCount("GetItems") == questions && cancel, name);
        }
    }

    void findsNewTagsWithTheNextFiltering()
    {
        TestItem& first = m_Library->Add(TarnoType::gSolver, "first", "old");
        TestItem& second = m_Library->Add(TarnoType::gSolver, "second");
        MakeBrowser();
        auto const search = [this] {
            m_Browser->SearchTextChange("old");
            return m_Browser->GetRows();
        };
        first.tags.clear();
        second.tags["ApplicationTags"] = "very old";
        // Other categories, and items that are not listed, do not count.
        for (char const* category : {"applicationtags", "ApplicationTagsX", ""})
            TellTags(second.id, category);
        TellTags(m_Library->Add(TarnoType::gSolver, "unlisted", "old").id);
        QCOMPARE(search(), QString("first"));
        TellTags(first.id);
        TellTags(second.id);
        QCOMPARE(m_Browser->GetRows(), QString("first"));
        QCOMPARE(search(), QString("second"));
    }

    void followsRevisionControlProperties()
    {
        std::unique_ptr<TestProperties> properties(new TestProperties);
        m_Host->SetService("RevisionControlPropertiesMgr", properties.get());
        TestBrowser early;
        for (int answers = 0; answers < 8; ++answers) {
            properties->m_IsAvailable = answers & 1;
            properties->m_IsEnabled = answers & 2;
            m_Host->m_IsFileVersionControlActive = answers & 4;
            m_Host->m_ListsQueries = true;
            m_Host->TakeCalls();
            TestBrowser late;
            // Each question is asked only when the one before is answered with yes.
            QStringList const questions{"HasRevisionControlEnabled", "GetRevisionControlEnabled",
                                        "IsFileVersionControlActive"};
            QCOMPARE(m_Host->TakeCalls().mid(2),
                     questions.mid(0, answers & 1 ? answers & 2 ? 3 : 2 : 1));
            properties->Notify();
            QCOMPARE(early.m_SourceControlEnabled, answers == 7);
            QCOMPARE(late.m_SourceControlEnabled, answers == 7);
        }
        QCOMPARE(properties->m_Connections.size(), std::size_t(1));
        // The properties may go first.
        properties.reset();
        QVERIFY(!early.m_SourceControlEnabled);
    }
};

NODEBROWSER_TEST(TestPanel)

#include "tst_panel.moc"
