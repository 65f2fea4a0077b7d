#include "libraryrun.h"

#include "bodies.h"
#include "filevalues.h"
#include "require.h"

#include "model/graphjson.h"

#include <QCoreApplication>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

std::set<std::string> const kBodyKeys = {"inputs", "outputs", "nodes", "connections", "portNodes"};

} // namespace

struct LibraryRun::Action
{
    char const* verb;
    void (LibraryRun::*run)(Step const&);
};

LibraryRun::LibraryRun(CEmbeddedHost& host, FuzzFolder& folder)
    : m_Host(host)
    , m_Folder(folder)
    , m_User(host)
    , m_Other(folder)
{
    m_Folder.Clear();
}

void LibraryRun::Do(Step const& step)
{
    static Action const actions[] = {
        {"open", &LibraryRun::Reopen},         {"check", &LibraryRun::Check},
        {"rename", &LibraryRun::Rename},       {"tag", &LibraryRun::Tag},
        {"body", &LibraryRun::SetBody},        {"node", &LibraryRun::AddNode},
        {"create", &LibraryRun::Create},       {"undo", &LibraryRun::Undo},
        {"redo", &LibraryRun::Redo},           {"take", &LibraryRun::Take},
        {"overwrite", &LibraryRun::Overwrite}, {"save", &LibraryRun::Save},
        {"recover", &LibraryRun::Recover}};
    m_Other.Do(step);
    for (Action const& action : actions) {
        if (step.verb == action.verb) {
            Open();
            (this->*action.run)(step);
        }
    }
    if (m_Listener)
        m_Listener->RequireEverythingTold();
    m_Host.GetMessages().ClearLog();
}

void LibraryRun::Finish()
{
    Open();
    Check(Step());
    SettleConflicts();
    // Another manifest makes it another library.
    bool const isReadTheSame = SaveAll() && !m_Other.HasOtherManifest();
    LibraryState const before = GetState(m_Host);
    Reopen(Step());
    if (isReadTheSame)
        RequireSameItems(before, GetState(m_Host));
    Close();
    Require(m_Folder.IsOutsideKept(), "nothing is written outside of the library");
}

void LibraryRun::Open()
{
    if (m_Host.GetLibrary().IsValid())
        return;
    FuzzFolder::Files const before = m_Folder.Read();
    bool const isOpen = m_Host.OpenLibrary(m_Folder.GetPath());
    m_Other.NoteOpened();
    Require(AreUntouched(before, m_Folder.Read()), "opening changes nothing");
    Require(isOpen || !m_Host.GetMessages().GetLog().empty(), "it is said why it is not open");
    RequireNamedFiles();
    Require(!m_Host.IsModified(), "a library that was just read has no changes");
    if (isOpen)
        m_Listener = std::make_unique<StateListener>(m_Host);
}

void LibraryRun::Close()
{
    m_Listener.reset();
    m_HasOverwritten = false;
    m_Host.CloseLibrary();
}

void LibraryRun::Reopen(Step const&)
{
    Close();
    Open();
}

void LibraryRun::Check(Step const&)
{
    FuzzFolder::Files const before = m_Folder.Read();
    m_Host.CheckFolder();
    QCoreApplication::processEvents();
    Require(AreUntouched(before, m_Folder.Read()), "looking at the folder changes nothing");
    RequireNamedFiles();
}

void LibraryRun::Rename(Step const& step)
{
    ItemID const id = ChooseItem(step);
    NoteEdit(id, {"name"}, m_User.Rename(id, step.text.trimmed().constData()));
}

void LibraryRun::Tag(Step const& step)
{
    ItemID const id = ChooseItem(step);
    NoteEdit(id, {"tags"}, m_User.Tag(id, step.text.trimmed().constData()));
}

void LibraryRun::SetBody(Step const& step)
{
    auto const object =
        nlohmann::ordered_json::parse(step.text.begin(), step.text.end(), nullptr, false);
    if (!object.is_object())
        return;
    GraphBody const body =
        embeddedhost::ReadGraphBody(object, [](std::string const&, std::string const&) {});
    ItemID const id = ChooseItem(step);
    NoteEdit(id, kBodyKeys, m_Host.SetBody(id, body, "Change"));
}

void LibraryRun::AddNode(Step const& step)
{
    ItemID const id = ChooseItem(step);
    GraphBody body = m_Host.GetBody(id);
    auto const lineEnd = step.text.indexOf('\n');
    double const x = step.text.left(lineEnd).trimmed().toDouble();
    // Longer than those of the script's own bodies.
    std::string const node = "added-as-number-" + std::to_string(body.nodes.size());
    std::string const item = step.text.mid(lineEnd + 1).trimmed().toStdString();
    body.nodes.push_back({node, item, QPointF(x, -x)});
    bool const isSet = m_Host.SetBody(id, body, "Add");
    NoteEdit(id, kBodyKeys, isSet);
    bool const isText = QString::fromUtf8(item.c_str()).toStdString() == item;
    Require(!isSet || !isText || AreEqual(m_Host.GetBody(id), body), "a body is kept as it is set");
}

void LibraryRun::Create(Step const& step)
{
    ItemID const id = m_User.Create(step.text.trimmed().constData());
    if (!id.IsNull())
        m_Expected.AddObject(FoldUid(ItemIDUnlock::GetItemIDUID(id)));
}

void LibraryRun::Undo(Step const&)
{
    m_Host.GetCommandManager().GetUndoStack().undo();
}

void LibraryRun::Redo(Step const&)
{
    m_Host.GetCommandManager().GetUndoStack().redo();
}

void LibraryRun::Take(Step const& step)
{
    TakeFile(GetPath(step));
}

void LibraryRun::Overwrite(Step const& step)
{
    OverwriteFile(GetPath(step));
}

void LibraryRun::Save(Step const&)
{
    SaveAll();
}

void LibraryRun::Recover(Step const&)
{
    Check(Step());
    QByteArray const changes = m_Host.GetUnsavedChanges();
    Require(m_Host.IsModified() || changes.isEmpty(),
            "the unsaved changes are of a modified library");
    // Of an overwritten file there may be no more to save than that objects of others go.
    Require(!m_Host.IsModified() || !changes.isEmpty() || m_HasOverwritten,
            "a modified library has unsaved changes");
    bool const isUnclear = m_Other.HasOtherManifest() || m_Other.HasUnreadable()
                           || !m_Other.GetAmbiguousUids().empty()
                           || !m_Host.FindConflicts().isEmpty();
    if (changes.isEmpty() || isUnclear)
        return;
    LibraryState const before = GetState(m_Host);
    bool const hadOverwritten = m_HasOverwritten;
    Reopen(Step());
    Require(m_Host.RestoreUnsavedChanges(changes), "all changes are made again");
    LibraryState after = GetState(m_Host);
    // Objects that others added to an overwritten file are still there.
    for (auto item = after.begin(); hadOverwritten && item != after.end();)
        item = before.count(item->first) ? std::next(item) : after.erase(item);
    Require(before == after, "recovered items are as they were" + Describe(before, after));
    // An object that was to replace another one in an overwritten file is added beside it.
    auto const list = hadOverwritten ? GetObjects : GetEntries;
    Require(list(m_Host.GetUnsavedChanges()) == list(changes),
            "recovered changes are as they were");
}

ItemID LibraryRun::ChooseItem(Step const& step)
{
    m_Before = GetState(m_Host);
    if (m_Before.empty())
        return ItemID();
    auto const item = std::next(m_Before.begin(), step.number % int(m_Before.size()));
    return FindItem(m_Host, item->first);
}

void LibraryRun::NoteEdit(ItemID const& id, std::set<std::string> const& keys, bool isDone)
{
    if (isDone)
        m_Expected.AddKeys(FoldUid(ItemIDUnlock::GetItemIDUID(id)), keys);
    else
        Require(GetState(m_Host) == m_Before, "a refused edit changes nothing");
}

QString LibraryRun::GetPath(Step const& step) const
{
    return m_Host.GetLibraryFolder() + QLatin1Char('/') + OtherProgram::GetFile(step);
}

void LibraryRun::TakeFile(QString const& path)
{
    // Undo restores objects that another program may have changed meanwhile.
    FuzzFolder::Files const files = m_Folder.Read();
    QString const file = path.mid(m_Host.GetLibraryFolder().size() + 1);
    m_Expected.AddObjectsOf(files.value(file).content);
    for (auto const& [uid, item] : GetState(m_Host))
        m_Expected.AddObject(uid);
    m_Host.TakeFileFromDisk(path);
    Require(AreUntouched(files, m_Folder.Read()), "taking a file changes none");
    RequireNamedFiles();
}

void LibraryRun::OverwriteFile(QString const& path)
{
    m_Expected.AddEverything();
    m_HasOverwritten = true;
    m_Host.OverwriteFileOnDisk(path);
}

void LibraryRun::SettleConflicts()
{
    QStringList const conflicts = m_Host.FindConflicts();
    for (QString const& path : conflicts) {
        TakeFile(path);
        if (m_Host.FindConflicts().contains(path))
            OverwriteFile(path);
    }
    m_Host.GetMessages().ClearLog();
}

bool LibraryRun::SaveAll()
{
    FuzzFolder::Files const before = m_Folder.Read();
    bool const isSaved = m_User.Save();
    FuzzFolder::Files const after = m_Folder.Read();
    m_Expected.Check(before, after);
    if (!m_Host.GetLibrary().IsValid())
        return false;
    Require(isSaved == m_User.GetSaveMessages().empty(), "a failed save is reported");
    RequireNamedFiles();
    if (!isSaved)
        return false;
    m_HasOverwritten = false;
    Require(!m_Host.IsModified(), "a saved library is not modified");
    Require(m_User.Save(), "nothing can be saved any time");
    Require(AreUntouched(after, m_Folder.Read()), "a second save writes nothing");
    return true;
}

void LibraryRun::RequireSameItems(LibraryState saved, LibraryState read) const
{
    for (LibraryState* const state : {&saved, &read}) {
        for (std::string const& uid : m_Other.GetAmbiguousUids())
            state->erase(uid);
    }
    // The library keeps the items of a file that has become unreadable.
    for (auto item = saved.begin(); m_Other.HasUnreadable() && item != saved.end();)
        item = read.count(item->first) ? std::next(item) : saved.erase(item);
    Require(saved == read, "a saved library is read the same" + Describe(saved, read));
}

/// Messages about files name the file.
void LibraryRun::RequireNamedFiles() const
{
    for (CMessageChannel::Message const& message : m_Host.GetMessages().GetLog()) {
        bool const isAboutFile = message.text.contains(QLatin1String(".json"))
                                 || message.text.contains(m_Folder.GetPath());
        Require(isAboutFile || message.severity == eSeverity::kInformation,
                "a message names its file: " + message.text.toStdString());
    }
    m_Host.GetMessages().ClearLog();
}
