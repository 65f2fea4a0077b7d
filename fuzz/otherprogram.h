#ifndef FUZZ_OTHERPROGRAM_H
#define FUZZ_OTHERPROGRAM_H

#include "fuzzfolder.h"
#include "libraryscript.h"

#include <map>
#include <set>
#include <string>

/// Changes a library folder as other programs may, and keeps track of the faults that it made.
class OtherProgram
{
public:
    explicit OtherProgram(FuzzFolder& folder);

    /// The file that a step is about, as a path in the library.
    static QString GetFile(Step const& step);

    /// Nothing for a step of the library's user.
    void Do(Step const& step);

    void NoteOpened();
    /// The manifest is not the one that the library was opened with.
    bool HasOtherManifest() const;
    /// There was something in place of a file from which no objects can be read.
    bool HasUnreadable() const;
    /// Folded uids that more than one object had, now or before: which one of them is in the
    /// library depends on the order in which they were read.
    std::set<std::string> const& GetAmbiguousUids() const;

private:
    void Write(Step const& step);
    void NoteUids(Step const& step);

    FuzzFolder& m_Folder;
    std::map<std::string, QString> m_FileOfUid;
    std::set<std::string> m_AmbiguousUids;
    bool m_HasUnreadable = false;
    bool m_HasOtherManifest = false;
};

#endif
