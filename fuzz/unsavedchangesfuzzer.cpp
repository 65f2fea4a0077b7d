#include "fuzzfolder.h"
#include "librarystate.h"
#include "require.h"

#include "libraryuser.h"
#include "storage/filedigest.h"

#include <QCoreApplication>

#include <cstddef>
#include <cstdint>

namespace {

char const* const kOneObject =
    R"({"uid": "one", "kind": "compound", "name": "One", "tags": {"ApplicationTags": "a;b"}})";
char const* const kTwoObjects = R"([
  {"uid": "00000000-0000-0000-0000-000000000002", "kind": "compound", "name": "Two"},
  {"uid": "three", "kind": "type", "name": "Three", "readOnly": true}
])";
char const* const kFactoryObject = R"({"uid": "four", "kind": "solver", "name": "Four"})";

void Prepare(FuzzFolder& folder)
{
    folder.Clear();
    folder.Write(QStringLiteral("project/one.json"), kOneObject);
    folder.Write(QStringLiteral("shared/two.json"), kTwoObjects);
    folder.Write(QStringLiteral("factory/four.json"), kFactoryObject);
}

/// Fills in the library's folder and the digests of its files, which inputs cannot know.
QByteArray FillIn(QByteArray text, FuzzFolder const& folder)
{
    text.replace("@library@", folder.GetPath().toUtf8());
    text.replace("@one@", embeddedhost::GetDigest(kOneObject).toHex());
    text.replace("@two@", embeddedhost::GetDigest(kTwoObjects).toHex());
    return text;
}

/// Makes changes again that may be damaged, or of another version of the library.
class RestoreRun
{
public:
    RestoreRun(CEmbeddedHost& host, FuzzFolder& folder)
        : m_Host(host)
        , m_Folder(folder)
    {
        Reopen();
        m_Opened = GetState(m_Host);
        m_Files = m_Folder.Read();
    }

    void Restore(QByteArray const& changes)
    {
        bool const isComplete = m_Host.RestoreUnsavedChanges(changes);
        Require(isComplete || !m_Host.GetMessages().GetLog().empty(), "lost changes are reported");
        m_Restored = GetState(m_Host);
        m_Changes = m_Host.GetUnsavedChanges();
        Require(m_Host.IsModified() == !m_Changes.isEmpty(),
                "a modified library has unsaved changes");
    }

    void UndoAndRedo()
    {
        QUndoStack& stack = m_Host.GetCommandManager().GetUndoStack();
        Require(stack.count() <= 1, "recovering is one command");
        stack.undo();
        RequireState(m_Opened, QByteArray(), "undone");
        stack.redo();
        RequireState(m_Restored, m_Changes, "redone");
    }

    /// Collects the changes again and requires that none has been lost.
    void RestoreAgain()
    {
        if (m_Changes.isEmpty())
            return;
        Reopen();
        Require(m_Host.RestoreUnsavedChanges(m_Changes), "collected changes can all be made");
        RequireState(m_Restored, m_Changes, "made again");
    }

    /// True when files were written.
    bool Save()
    {
        Require(AreUntouched(m_Files, m_Folder.Read()), "recovering writes nothing");
        if (!LibraryUser(m_Host).Save() || m_Changes.isEmpty())
            return !m_Changes.isEmpty();
        Require(!m_Host.IsModified(), "a saved library is not modified");
        Reopen();
        RequireState(m_Restored, QByteArray(), "saved and read");
        return true;
    }

private:
    void Reopen()
    {
        m_Host.CloseLibrary();
        Require(m_Host.OpenLibrary(m_Folder.GetPath()), "the library can be opened");
        m_Host.GetMessages().ClearLog();
    }

    void RequireState(LibraryState const& state, QByteArray const& changes,
                      std::string const& what) const
    {
        LibraryState const now = GetState(m_Host);
        Require(state == now, "items are as they were when " + what + Describe(state, now));
        Require(GetEntries(changes) == GetEntries(m_Host.GetUnsavedChanges()),
                "changes are as they were when " + what);
    }

    CEmbeddedHost& m_Host;
    FuzzFolder& m_Folder;
    LibraryState m_Opened;
    FuzzFolder::Files m_Files;
    LibraryState m_Restored;
    QByteArray m_Changes;
};

} // namespace

/// The file of unsaved changes that a program has left behind may be damaged, or older than the
/// library.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static int argumentCount = 1;
    static char name[] = "fuzz_unsavedchanges";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
    static CEmbeddedHost host;
    static FuzzFolder folder;
    static bool isPrepared = false;
    RequireNoWarnings();
    if (!isPrepared)
        Prepare(folder);

    RestoreRun run(host, folder);
    run.Restore(FillIn(QByteArray(reinterpret_cast<char const*>(data), int(size)), folder));
    run.UndoAndRedo();
    run.RestoreAgain();
    isPrepared = !run.Save();
    return 0;
}
