#include "hosttest.h"
#include "model/graphwriter.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

using namespace embeddedhost;
using namespace tarno::datamodel;

typedef std::vector<MemoryItem> Items;

namespace {

char const* const kWave = "0000000a-0000-4000-8000-000000000001";

/// All of each item on one line.
QStringList Describe(Items const& items)
{
    QStringList lines;
    for (MemoryItem const& item : items) {
        auto body = nlohmann::ordered_json::object();
        embeddedhost::WriteGraphBody(item.body, body);
        std::string line = item.kind + '|' + item.uid + '|' + item.name + '|' + item.tags + '|'
                           + item.category + '|' + item.implements + '|'
                           + (item.isSignature ? "signature" : "") + (item.isLoop ? "loop" : "")
                           + (item.isReadOnly ? "locked" : "");
        for (auto const& [category, tags] : item.otherTags)
            line += '|' + category + '=' + tags;
        lines << QString::fromStdString(line + (body.empty() ? "" : body.dump()));
    }
    return lines;
}

MemoryItem MakeFullItem()
{
    MemoryItem item = {"compound", Uid(7), "Größe \u2603", "a;b", "maths"};
    item.implements = "unary";
    item.isLoop = item.isReadOnly = true;
    item.otherTags["Internal"] = "x";
    item.body.inputs = {{"value", "number"}};
    item.body.outputs = {{"result", "number"}};
    item.body.nodes = {{"1", "add", QPointF(1, -2.5)}};
    item.body.connections = {{{"in", "value"}, {"1", "a"}}};
    return item;
}

MemoryItem Wave()
{
    return {TarnoType::gCompound, kWave, "Wave", "motion"};
}

} // namespace

class TestMemoryLibrary : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void itemsComeBackAsTheyWereGiven()
    {
        Items const items = {MakeFullItem(), Wave(), {LibType::gType, "number", "Number"}};
        QVERIFY(Open(items));
        QCOMPARE(Describe(m_Host->GetItems()), Describe(items));
        QCOMPARE(m_Host->GetLibraryName(), QString("Items"));
        QVERIFY(m_Host->GetLibraryFolder().isEmpty() && !m_Host->IsModified());
        QVERIFY(m_User->Rename(m_Host->FindItem(kWave), "Ripple"));
        QVERIFY(m_Host->GetUnsavedChanges().isEmpty() && m_Host->FindConflicts().isEmpty());
        QVERIFY(!m_Host->TakeFileFromDisk(kWave) && !m_Host->OverwriteFileOnDisk(kWave)
                && !m_Host->RestoreUnsavedChanges("{}"));
        QCOMPARE(GetMessages(*m_Host).count("\"Items\" is not kept in a folder."), 3);
    }

    void faultyItemsLeaveTheOpenLibrary()
    {
        QVERIFY(Open({Wave()}));
        Rename("Ripple");
        ItemLibraryAccessor const open = m_Host->GetLibrary();
        typedef MemoryItem& Item;
        QString const start = "\"Other\" cannot be opened: item 2 (\"";
        std::pair<std::function<void(Item)>, char const*> const faults[] = {
            {[](Item i) { i.kind = "Type"; }, "not known, it must be one of solver, poly"},
            {[](Item i) { i.uid = std::string("a\0b", 3); }, "the uid has a zero byte"},
            {[](Item i) { i.uid = QByteArray(kWave).toUpper().toStdString(); },
             "the uid 0000000A-0000-4000-8000-000000000001 is that of item 1 already"},
            {[](Item i) { i.name = ""; }, "the name is empty"},
            {[](Item i) { i.tags = "\xE9"; }, "the tag text is not UTF-8"},
            {[](Item i) { i.otherTags["\xE9"]; }, "the tag category is not UTF-8"},
            {[](Item i) { i.otherTags["a"] = "\xE9"; }, "the tag text is not UTF-8"},
            {[](Item i) { i.otherTags["ApplicationTags"]; }, "which is that of its tags"},
            {[](Item i) { i.category.resize(70000, 'a'); }, "the category is longer than 65536 "},
            {[](Item i) { i.implements = "\xE9"; }, "the uid of its signature is not UTF-8"},
            {[](Item i) { i.body.nodes[0].position.rx() = qInf(); }, "node \"1\" is not a finite"},
            {[](Item i) { i.body.inputsPosition = QPointF(0, qInf()); }, "\"in\" is not a finite"},
            {[](Item i) { i.body.outputsPosition = QPointF(qInf(), 0); },
             "\"out\" is not a finite"},
            {[](Item i) { i.body.nodes.push_back(i.body.nodes[0]); }, "nodes[1].id must be a text"},
            {[](Item i) { i.body.connections[0].to.port = "\xE9"; }, "it has a text that is not"}};
        for (auto const& [spoil, fault] : faults) {
            MemoryItem second = MakeFullItem();
            spoil(second);
            QVERIFY(!m_Host->OpenItems("Other", {Wave(), second}));
            QString const said = GetMessages(*m_Host).last();
            QVERIFY2(said.startsWith(start) && said.contains(fault), qPrintable(said));
        }
        QVERIFY(open.Revalidate() && m_Host->GetLibraryName() == "Items");
        QVERIFY(m_Host->GetItems().at(0).name == "Ripple" && Stack().canUndo());
    }

    void tagsKeepLettersThatThePanelCannotShow()
    {
        MemoryItem item = Wave();
        item.tags = "мир;sea; 海 ;é";
        QVERIFY(Open({item}));
        // The panel shows "?" and "???", hands equal tags over once, and in its order.
        m_User->Tag(m_Host->FindItem(kWave), "?;???;new;\xE9");
        QCOMPARE(m_Host->GetItems()[0].tags.c_str(), "海;мир;new;é");
        m_User->Tag(m_Host->FindItem(kWave), "new;what?");
        QCOMPARE(m_Host->GetItems()[0].tags.c_str(), "new;what?");
    }

    void refusedSavesKeepTheChanges()
    {
        bool isFull = true;
        for (CEmbeddedHost::SaveItems const& save :
             {CEmbeddedHost::SaveItems(), CEmbeddedHost::SaveItems([&](Items const&) {
                  return isFull ? QString("the disk is full") : throw std::runtime_error("refused");
              })}) {
            QVERIFY(Open({Wave()}, save));
            QVERIFY2(m_User->Save(), "there is nothing to save");
            Rename("Ripple");
            QVERIFY(!m_User->Save() && m_Host->IsModified());
        }
        QCOMPARE(GetMessages(*m_Host).last(),
                 QString("\"Items\" was not saved: the disk is full."));
        isFull = false;
        QVERIFY(!m_User->Save() && m_Host->IsModified());
    }

    void savingMayRunAnEventLoop()
    {
        QStringList saved;
        bool hasNested = true;
        QVERIFY(Open({Wave()}, [&](Items const& items) {
            Rename("Later");
            hasNested = m_User->Save();
            saved = Describe(items);
            return QString();
        }));
        Rename("Ripple");
        QVERIFY(m_User->Tag(m_Host->FindItem(kWave), "sea"));
        QVERIFY(!m_User->Create("New", true, "", "maths").IsNull());
        QVERIFY(m_User->Save() && !hasNested);
        QCOMPARE(saved.size(), 2);
        QCOMPARE(saved[0], "compound|" + QString(kWave) + "|Ripple|sea|||");
        QVERIFY(saved[1].endsWith("|New||maths||signature") && m_Host->IsModified());
        Stack().undo();
        QVERIFY(!m_Host->IsModified());

        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()) && m_Host->GetItems().empty());
        QVERIFY(Open({Wave()}, [this](Items const&) {
            m_Host->CloseLibrary();
            return QString();
        }));
        Rename("Ripple");
        QVERIFY(!m_User->Save());
        QVERIFY(!m_Host->GetLibrary().IsValid());
    }

    void listenersToTheUndoStackCloseAndOpen()
    {
        QVERIFY(Open({Wave()}));
        Rename("Ripple");
        bool isOpened = false;
        auto const listening = connect(&Stack(), &QUndoStack::indexChanged, this, [&] {
            if (isOpened)
                return;
            m_Host->CloseLibrary();
            isOpened = Open({Wave()});
        });
        m_Host->CloseLibrary();
        QVERIFY(!isOpened && !m_Host->GetLibrary().IsValid());

        QVERIFY(Open({Wave()}));
        Rename("Ripple");
        QVERIFY(isOpened && Stack().count() == 0);
        disconnect(listening);
        Rename("Later");
        QCOMPARE(Stack().count(), 1);
    }

private:
    bool Open(Items const& items, CEmbeddedHost::SaveItems const& save = {})
    {
        return m_Host->OpenItems("Items", items, save);
    }

    bool Rename(char const* name)
    {
        return m_User->Rename(m_Host->FindItem(kWave), name);
    }

    void Open() override
    {
        m_Host = std::make_unique<CEmbeddedHost>();
        m_User = std::make_unique<LibraryUser>(*m_Host);
    }
};

NODEBROWSER_TEST(TestMemoryLibrary)
#include "tst_memorylibrary.moc"
