#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <qorm.h>

#include <QFile>
#include <QTest>

#include <nlohmann/json.hpp>

#include <map>
#include <random>

using namespace tarno::datamodel;

namespace {

int const kOperations = 10000;
/// In the second data source from the start.
int const kSharedItem = 100;

/// What the library should hold: name and tags by uid.
struct PlainItem
{
    std::string name;
    std::string tags;

    bool operator==(PlainItem const& other) const
    {
        return name == other.name && tags == other.tags;
    }
};
typedef std::map<std::string, PlainItem> PlainLibrary;

} // namespace

/// Thousands of random changes against a plain model of the library.
class tst_Soak : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Host = std::make_unique<CEmbeddedHost>();
        m_User = std::make_unique<LibraryUser>(*m_Host);
        for (int number = 1; number <= 20; ++number) {
            std::string const name = "Item " + std::to_string(number);
            m_Folder.Write(QStringLiteral("project/item%1.json").arg(number),
                           Object(number, "compound", name.c_str()));
            m_Model[Uid(number)] = {name, ""};
        }
        m_Folder.Write(QStringLiteral("shared/first.json"),
                       Object(kSharedItem, "compound", "First"));
        m_Folder.Write(QStringLiteral("library.json"), R"({"format": 1, "name": "Test",
            "dataSources": [
            {"uid": "AAAAAAAA-0000-0000-0000-000000000001", "name": "Project",
             "path": "project", "access": "read-write"},
            {"uid": "AAAAAAAA-0000-0000-0000-000000000003", "name": "Shared",
             "path": "shared", "access": "read-write"}]})");
        m_Model[Uid(kSharedItem)] = {"First", ""};
        m_OnDisk = m_Model;
        m_States = {m_Model};
        QVERIFY(m_Host->OpenLibrary(m_Folder.GetPath()));
    }

    void TearDown() override
    {
        m_User.reset();
        m_Host.reset();
    }

private:
    int Random(int count)
    {
        return std::uniform_int_distribution<int>(0, count - 1)(m_Random);
    }

    std::string RandomUid()
    {
        return std::next(m_Model.begin(), Random(int(m_Model.size())))->first;
    }

    QUndoStack& Stack()
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    /// What undo and redo lead to: one state of the model for each place of the undo stack.
    void Remember()
    {
        m_States.resize(std::size_t(Stack().index()));
        m_States.push_back(m_Model);
    }

    void Create()
    {
        std::string const name = "New " + std::to_string(m_Counter++);
        ItemID const id = m_User->Create(name.c_str());
        m_Model[ItemIDUnlock::GetItemIDUID(id)] = {name, ""};
        Remember();
    }

    void Rename()
    {
        std::string const uid = RandomUid();
        std::string const name = "Renamed " + std::to_string(m_Counter++);
        QVERIFY(m_User->Rename(m_Host->FindItem(uid), name.c_str()));
        m_Model[uid].name = name;
        Remember();
    }

    void Tag()
    {
        std::string const uid = RandomUid();
        std::string const tags = Random(4) ? "tag" + std::to_string(m_Counter++) : "";
        int const before = Stack().index();
        QVERIFY(m_User->Tag(m_Host->FindItem(uid), tags.c_str()));
        m_Model[uid].tags = tags;
        if (Stack().index() != before)
            Remember();
    }

    /// From the data source it is in to the other one.
    void Move()
    {
        auto* const helper = dynamic_cast<qorm::IRevisionControlUIHelper*>(
            wekGetSystem()->GetService("RevisionControlUIHelper"));
        auto const object = helper->FindObject(qorm::DbObjectId(RandomUid().c_str()));
        auto const source = object.GetDataSource();
        int const before = Stack().index();
        for (char const* const uid : {kProjectUid, "AAAAAAAA-0000-0000-0000-000000000003"}) {
            auto const target = helper->FindObject(qorm::DbObjectId(uid)).GetDataSource();
            QVERIFY(!target.IsNull());
            if (!(target == source)) {
                qorm::IHelper::GetHelper(object.GetInstance())
                    ->MoveToDataSource(object, target, true);
                break;
            }
        }
        QCOMPARE(Stack().index(), before + 1);
        Remember();
    }

    void Undo()
    {
        if (!Stack().canUndo())
            return;
        Stack().undo();
        m_Model = m_States.at(std::size_t(Stack().index()));
    }

    void Redo()
    {
        if (!Stack().canRedo())
            return;
        Stack().redo();
        m_Model = m_States.at(std::size_t(Stack().index()));
    }

    void Save()
    {
        QVERIFY(m_User->Save());
        m_OnDisk = m_Model;
    }

    /// Another program adds an object; undo does not know of it.
    void EditOutside()
    {
        int const number = 1000 + m_Counter++;
        std::string const name = "Outside " + std::to_string(number);
        m_Folder.Write(QStringLiteral("project/outside%1.json").arg(number),
                       Object(number, "compound", name.c_str()));
        m_Host->CheckFolder();
        for (PlainLibrary& state : m_States)
            state[Uid(number)] = {name, ""};
        m_Model[Uid(number)] = m_OnDisk[Uid(number)] = {name, ""};
    }

    void Reopen()
    {
        QVERIFY(m_Host->OpenLibrary(m_Folder.GetPath()));
        m_Model = m_OnDisk;
        m_States = {m_Model};
    }

    PlainLibrary ReadMemory()
    {
        PlainLibrary items;
        ItemLibraryAccessor const library = m_Host->GetLibrary();
        auto all = GetTOC(library).GetItems(TarnoType::gCompound);
        for (; !all.IsDone(); all.Next()) {
            ItemID const id = all.GetCurrent().GetItemID();
            items[ItemIDUnlock::GetItemIDUID(id)] = {library.GetItemName(id, true, nullptr),
                                                     library.GetItemTags(id, "ApplicationTags")};
        }
        return items;
    }

    PlainLibrary ReadDisk()
    {
        PlainLibrary items;
        auto const contents = m_Folder.Read();
        for (auto file = contents.begin(); file != contents.end(); ++file) {
            if (file.key().endsWith("/library.json"))
                continue;
            auto const object = nlohmann::json::parse(file.value().toStdString());
            auto const tags = object.value("tags", nlohmann::json::object());
            items[object["uid"]] = {object["name"], tags.value("ApplicationTags", "")};
        }
        return items;
    }

    LibraryFolder m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<LibraryUser> m_User;
    std::mt19937 m_Random{20261121};
    int m_Counter = 1;
    PlainLibrary m_Model;
    PlainLibrary m_OnDisk;
    std::vector<PlainLibrary> m_States;

private Q_SLOTS:
    void MemoryAndDiskAgreeWithTheModel()
    {
        for (int operation = 1; operation <= kOperations; ++operation) {
            int const kind = Random(1000);
            if (kind < 40)
                Create();
            else if (kind < 340)
                Rename();
            else if (kind < 560)
                Tag();
            else if (kind < 600)
                Move();
            else if (kind < 800)
                Undo();
            else if (kind < 950)
                Redo();
            else if (kind < 980)
                Save();
            else if (kind < 990)
                EditOutside();
            else
                Reopen();
            if (operation % 100 != 0)
                continue;
            QVERIFY2(ReadMemory() == m_Model, qPrintable(QString::number(operation)));
            QVERIFY2(ReadDisk() == m_OnDisk, qPrintable(QString::number(operation)));
        }
        for (CMessageChannel::Message const& message : m_Host->GetMessages().GetLog())
            QVERIFY2(message.severity == eSeverity::kInformation, qPrintable(message.text));
    }
};

NODEBROWSER_TEST_MAIN(tst_Soak)
#include "tst_soak.moc"
