#include "browsertest.h"

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

    void showsItsSource()
    {
        // Where the item lives, access mode, type asset, the item's flags, and how its icon is
        // asked for: width, state, and whether it is a plain one.
        std::tuple<QString, int, QString, QString, QString> const rows[] = {
            {"project", 0, "", "state", "20 true"},
            {"project", 2, "", "state", "20 true"},
            {"project", 1, "", "read-only", "20 true"},
            {"component 0", 0, "", "factory state", "27 false"},
            {"component 1", 0, "", "factory state", "27 false"},
            {"component 1", 1, "locked", "factory read-only", ""},
            {"project", 0, "locked", "factory read-only", ""},
            {"project", 0, "locked unloaded", "state", "20 true"},
            {"no service", 0, "", "state", "20 true"},
            {"no object", 0, "", "state", "20 true"}};
        for (auto const& [source, accessMode, asset, flags, icon] : rows) {
            SetUp();
            AddItem(source, accessMode, asset);
            // 0: states are not shown; 1: shown, but version control is off; 2: shown.
            for (int const shown : {0, 1, 2}) {
                QString call = icon;
                if (!icon.isEmpty())
                    call.replace(" ", shown == 2 ? " state true " : " state false ");
                QCOMPARE(source + ShowState(shown), source + flags + '|' + call);
            }
        }
    }

private:
    void AddItem(QString const& source, int accessMode, QString const& asset)
    {
        TestDatabase& database = m_Host->m_Database;
        TestDataSource* const dataSource = source.startsWith("component")
                                               ? database.m_ComponentSources[source.endsWith('1')]
                                               : database.AddSource("project");
        dataSource->m_AccessMode = accessMode;
        if (source != "no service")
            m_Host->AddRevisionControl();
        TestItem const& added = m_Library->Add(TarnoType::gCompound, "item");
        if (source == "no object")
            return;
        TestObject& object = m_Library->AddObject(added, dataSource);
        object.m_IsTypeAsset = !asset.isEmpty();
        object.m_IsReadOnly = asset.startsWith("locked");
        object.m_IsLoaded = !asset.endsWith("unloaded");
    }

    /// Tells a state of which there is no icon yet. The flags of the item, and what was asked.
    QString ShowState(int shown)
    {
        MakeBrowser();
        m_Browser->SetSourceControlEnabled(shown > 0);
        m_Host->m_IsFileVersionControlActive = shown != 1;
        m_Browser->Paint();
        m_Host->m_ListsQueries = true;
        m_Host->TakeCalls();
        // The second time there is one.
        for (int time = 0; time < 2; ++time)
            TellState((*m_Library)["item"].id, 0xFF00 + shown);
        QStringList const calls = m_Host->TakeCalls().filter("getAssetStateIcon ");
        m_Host->m_ListsQueries = false;
        CNodeBrowser::Item const& item = m_Browser->m_Items.at(0);
        QStringList flags{item.m_IsFactory ? "factory" : "",
                          item.m_IsReadOnlySource ? "read-only" : "",
                          item.m_HasScState ? "state" : ""};
        flags.removeAll("");
        return flags.join(' ') + '|'
               + calls.join('|')
                     .remove("getAssetStateIcon ")
                     .replace("0x" + QString::number(0xFF00 + shown, 16), "state");
    }
};

NODEBROWSER_TEST(TestIcons)

#include "tst_icons.moc"
