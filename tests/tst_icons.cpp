#include "browsertest.h"
#include "testtable.h"

using namespace tarno::datamodel;

/// What the data source of an item makes of its icon.
class TestIcons : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    /// Comes first in the program, because the panel keeps the components for the whole process.
    void looksComponentsUpOnce()
    {
        m_Host->AddRevisionControl();
        QString const uid =
            AddStored(TarnoType::gSolver, "solver", m_Host->m_Database.AddSource("project"));
        m_Host->m_ListsQueries = true;
        MakeBrowser();
        TellInvalidated();
        m_Browser->Paint();
        QStringList const calls = m_Host->TakeCalls().filter("FindObject ");
        QCOMPARE(calls.mid(0, 2), (QStringList{"FindObject D2BA853A-8668-704A-A121-1F7DE917B664",
                                               "FindObject 34F315D3-58CF-4019-9BE3-381FCED0E983"}));
        QCOMPARE(QSet<QString>(calls.begin() + 2, calls.end()), QSet<QString>{"FindObject " + uid});
    }

    void showsItsSource_data()
    {
        AddColumns<QString, int, QString, QString, QString>("source", "accessMode", "asset",
                                                            "flags", "icon");
        AddRow("project", "project", 0, "", "state", "20 true");
        AddRow("other access mode", "project", 2, "", "state", "20 true");
        AddRow("read-only project", "project", 1, "", "read-only", "20 true");
        AddRow("first component", "component 0", 0, "", "factory state", "27 false");
        AddRow("second component", "component 1", 0, "", "factory state", "27 false");
        AddRow("read-only component", "component 1", 1, "locked", "factory read-only", "");
        AddRow("open asset", "project", 0, "open", "state", "20 true");
        AddRow("locked asset", "project", 0, "locked", "factory read-only", "");
        AddRow("locked asset, not loaded", "project", 0, "locked unloaded", "state", "20 true");
        AddRow("locked asset in a component", "component 0", 0, "locked", "factory read-only", "");
        AddRow("open asset, read-only project", "project", 1, "open", "read-only", "20 true");
        for (char const* source : {"no service", "other service", "no UID", "no object"})
            AddRow(source, source, 0, "", "state", "20 true");
    }

    void showsItsSource()
    {
        QFETCH(QString, source);
        QFETCH(int, accessMode);
        QFETCH(QString, asset);
        QFETCH(QString, flags);
        QFETCH(QString, icon);
        TestDatabase& database = m_Host->m_Database;
        TestDataSource* const dataSource =
            source == "project" ? database.AddSource("project")
                                : database.m_ComponentSources[source == "component 1"];
        dataSource->m_AccessMode = accessMode;
        if (source != "no service")
            m_Host->AddRevisionControl();
        if (source == "other service")
            m_Host->SetService("RevisionControlUIHelper", &m_Host->m_Proxy);
        TestItem const& added = m_Library->Add(TarnoType::gCompound, "item", "",
                                               source == "no UID" ? "Compound:x" : nullptr);
        if (source != "no object") {
            TestObject& object = m_Library->AddObject(added, dataSource);
            object.m_IsTypeAsset = !asset.isEmpty();
            object.m_IsReadOnly = asset.startsWith("locked");
            object.m_IsLoaded = !asset.endsWith("unloaded");
        }

        // 0: states are not shown; 1: shown, but version control is off; 2: shown.
        for (int const shown : {0, 1, 2}) {
            MakeBrowser();
            m_Browser->SetSourceControlEnabled(shown > 0);
            m_Host->m_IsFileVersionControlActive = shown != 1;
            m_Browser->Paint();
            // A state that the panel has not composed an icon for.
            int const state = 0xFF00 + shown;
            m_Host->m_ListsQueries = true;
            m_Host->TakeCalls();
            TellState((*m_Library)["item"].id, state);
            QStringList const calls = m_Host->TakeCalls();
            m_Host->m_ListsQueries = false;
            CNodeBrowser::Item const& item = m_Browser->m_Items.at(0);
            QCOMPARE(Describe(item), flags);
            // Width, state, whether it is drawn, and whether the icon is a plain one.
            QString const call = icon.section(' ', 0, 0) + " 0x" + QString::number(state, 16)
                                 + (shown == 2 ? " true " : " false ") + icon.section(' ', 1);
            QCOMPARE(calls.filter("getAssetStateIcon ").join("; "),
                     icon.isEmpty() ? "" : "getAssetStateIcon " + call);
            QCOMPARE(calls.contains("IsFileVersionControlActive"), shown > 0);
            qint64 const key = item.m_DisplayIcon.cacheKey();
            TellState((*m_Library)["item"].id, state);
            QCOMPARE(item.m_DisplayIcon.cacheKey(), key);
        }
    }

    /// A host may make items itself; states are of compounds only.
    void keepsTheStateGiven()
    {
        m_Browser.reset(new TestBrowser);
        for (char const* kind : {"compound", "solver", "odd"}) {
            ItemAccessor accessor = m_Library->GetAccessor(m_Library->Add(FindKind(kind), kind));
            CNodeBrowser::Item const item(m_Browser.get(), accessor, 5, ItemID());
            QCOMPARE(item.m_ScState, *kind == 'c' ? 5 : 0);
            QCOMPARE(item.m_HasScState, *kind == 'c');
        }
    }

private:
    static QString Describe(CNodeBrowser::Item const& item)
    {
        QStringList flags;
        flags << (item.m_IsFactory ? "factory" : "") << (item.m_IsReadOnlySource ? "read-only" : "")
              << (item.m_HasScState ? "state" : "");
        flags.removeAll("");
        return flags.join(' ');
    }
};

NODEBROWSER_TEST(TestIcons)

#include "tst_icons.moc"
