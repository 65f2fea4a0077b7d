#ifndef FUZZ_LIBRARYRUN_H
#define FUZZ_LIBRARYRUN_H

#include "fuzzfolder.h"
#include "libraryscript.h"
#include "librarystate.h"
#include "otherprogram.h"
#include "savedfiles.h"
#include "statelistener.h"

#include "libraryuser.h"

#include <memory>

/// Runs a script against a library folder, as its user and as another program. The library is
/// opened by the first step that needs it.
class LibraryRun
{
public:
    LibraryRun(CEmbeddedHost& host, FuzzFolder& folder);

    void Do(Step const& step);
    /// Resolves all conflicts, saves, and requires that the library is read again as it was.
    void Finish();

private:
    struct Action;

    void Open();
    void Close();
    void Reopen(Step const&);
    void Check(Step const&);
    void Rename(Step const& step);
    void Tag(Step const& step);
    void SetBody(Step const& step);
    /// The first line of the text is a position, the others the uid of the node's item, as bytes.
    void AddNode(Step const& step);
    void Create(Step const& step);
    void Undo(Step const&);
    void Redo(Step const&);
    void Take(Step const& step);
    void Overwrite(Step const& step);
    void Save(Step const&);
    /// Opens the library anew and restores the unsaved changes.
    void Recover(Step const&);

    tarno::datamodel::ItemID ChooseItem(Step const& step);
    void NoteEdit(tarno::datamodel::ItemID const& id, std::set<std::string> const& keys,
                  bool isDone);
    QString GetPath(Step const& step) const;
    void TakeFile(QString const& path);
    void OverwriteFile(QString const& path);
    void SettleConflicts();
    /// True when everything is on disk.
    bool SaveAll();

    void RequireSameItems(LibraryState saved, LibraryState read) const;
    void RequireNamedFiles() const;

    CEmbeddedHost& m_Host;
    FuzzFolder& m_Folder;
    LibraryUser m_User;
    OtherProgram m_Other;
    /// Null when no library is open.
    std::unique_ptr<StateListener> m_Listener;
    ExpectedChanges m_Expected;
    /// The next save replaces a file that another program has changed.
    bool m_HasOverwritten = false;
    /// Before the edit that is being made.
    LibraryState m_Before;
};

#endif
