#ifndef EMBEDDEDHOST_GITREPOSITORY_H
#define EMBEDDEDHOST_GITREPOSITORY_H

#include "sourcecontrol/gitworktree.h"

#include <git2.h>

#include <memory>
#include <optional>

namespace embeddedhost {

/// Has to be called before anything of the git library.
void StartGitLibrary();

template <auto Free>
struct GitFree
{
    template <class T>
    void operator()(T* object) const
    {
        Free(object);
    }
};

typedef std::unique_ptr<git_commit, GitFree<git_commit_free>> GitCommitPtr;
typedef std::unique_ptr<git_diff, GitFree<git_diff_free>> GitDiffPtr;
typedef std::unique_ptr<git_index, GitFree<git_index_free>> GitIndexPtr;
typedef std::unique_ptr<git_repository, GitFree<git_repository_free>> GitRepositoryPtr;
typedef std::unique_ptr<git_tree, GitFree<git_tree_free>> GitTreePtr;
typedef std::unique_ptr<git_tree_entry, GitFree<git_tree_entry_free>> GitTreeEntryPtr;

/// The repository of a CGitWorkTree, shared by its source files.
class CGitWorkTree::Private
{
public:
    void Open(QString const& folder);
    /// Null before the first commit, and when it cannot be read.
    GitCommitPtr GetHeadCommit();
    /// The index as it is on disk; null when it cannot be read.
    GitIndexPtr GetIndex();

    GitRepositoryPtr repository;
    eAccess access = kNoWorkTree;
    QString error;
};

/// The entry of the path in the commit's tree; nothing when it has none.
std::optional<git_oid> FindGitBlob(git_commit* commit, std::string const& path);

} // namespace embeddedhost

#endif
