#ifndef EMBEDDEDHOST_GITWORKTREE_H
#define EMBEDDEDHOST_GITWORKTREE_H

#include "sourcecontrol/cancelflag.h"
#include "sourcecontrol/filestates.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>
#include <string>

namespace embeddedhost {

struct GitCommit
{
    /// As short as is unique in the repository.
    QString shortHash;
    QString author;
    /// In the author's time zone.
    QDateTime date;
    QString subject;
};

/// A git work tree. The index is read, and written only by MoveEntry.
///
/// Each thread opens one of its own. All functions may hang with git, so they are for the jobs of
/// CGitThread. Paths of files are relative to the root, in the encoding of the file system.
class CGitWorkTree
{
public:
    enum eAccess
    {
        kNoWorkTree, ///< the folder is in none
        kForeign,    ///< another user owns it, so git refuses to read its configuration
        kUnreadable, ///< it is broken, or may not be read
        kReadable
    };

    /// Opens the work tree around the folder, which must exist. All answers are empty unless
    /// it is readable.
    explicit CGitWorkTree(QString const& folder);
    CGitWorkTree(CGitWorkTree&& other) noexcept;
    ~CGitWorkTree();

    /// The git folder of the repository around the folder; empty when there is none.
    static QString FindGitFolder(QString const& folder);

    eAccess GetAccess() const;
    /// Why the work tree is not readable, or why the last MoveEntry failed, and a remedy; a clause
    /// to stand after a colon.
    QString GetError() const;

    /// Canonical and without a slash at the end.
    QString GetRoot() const;
    /// The repository's own folder for this work tree, with a slash at the end.
    QString GetGitFolder() const;
    /// `file` is absolute and its folder canonical; empty when it is not in the work tree.
    std::string GetRelativePath(QString const& file) const;

    /// Takes the states of the file, of all files in the folder, or of the whole work tree for an
    /// empty path, in one pass. False when it failed or was cancelled.
    bool ReadStates(std::string const& part, CancelFlag const& cancel, CFileStates& states) const;

    /// The commit of HEAD, in hexadecimal; empty before the first one.
    std::string GetHead() const;
    /// The file's content in HEAD, in hexadecimal; empty when it is not there.
    std::string GetHeadBlob(std::string const& file) const;
    /// The last commit in HEAD's history that changed the file, as `git log -1` finds it.
    /// Nothing when there is none, and when the search was cancelled.
    std::optional<GitCommit> FindLastCommit(std::string const& file,
                                            CancelFlag const& cancel) const;

    bool IsTracked(std::string const& file) const;
    /// Follows a tracked file that was renamed on disk: its entry in the index gets the new path,
    /// and changes that are not staged stay so. Waits a moment for another program that writes the
    /// index. Nothing is changed when it fails.
    bool MoveEntry(std::string const& from, std::string const& to);

private:
    class Private;
    std::unique_ptr<Private> m_Private;
};

} // namespace embeddedhost

#endif
