#include "sourcecontrol/gitrepository.h"

namespace embeddedhost {

namespace {

bool IsSameBlob(std::optional<git_oid> const& a, std::optional<git_oid> const& b)
{
    return a && b ? git_oid_equal(&*a, &*b) : !a && !b;
}

/// The first parent whose file is the same; null when all differ. A parent that a shallow clone
/// does not have counts as different.
GitCommitPtr FindSameParent(git_commit* commit, std::string const& file,
                            std::optional<git_oid> const& blob)
{
    for (unsigned i = 0; i < git_commit_parentcount(commit); ++i) {
        git_commit* opened = nullptr;
        if (git_commit_parent(&opened, commit, i) != 0)
            continue;
        GitCommitPtr parent(opened);
        if (git_oid_equal(git_commit_tree_id(opened), git_commit_tree_id(commit))
            || IsSameBlob(blob, FindGitBlob(opened, file)))
            return parent;
    }
    return nullptr;
}

QString GetShortHash(git_commit const* commit)
{
    git_buf text = GIT_BUF_INIT;
    if (git_object_short_id(&text, reinterpret_cast<git_object const*>(commit)) != 0)
        return QString();
    QString const hash = QString::fromLatin1(text.ptr, int(text.size));
    git_buf_dispose(&text);
    return hash;
}

GitCommit Describe(git_commit* commit)
{
    git_signature const& author = *git_commit_author(commit);
    return {
        GetShortHash(commit), QString::fromUtf8(author.name),
        QDateTime::fromSecsSinceEpoch(author.when.time, Qt::OffsetFromUTC, author.when.offset * 60),
        QString::fromUtf8(git_commit_summary(commit))};
}

} // namespace

std::optional<GitCommit> CGitWorkTree::FindLastCommit(std::string const& file,
                                                      CancelFlag const& cancel) const
{
    GitCommitPtr commit = m_Private->GetHeadCommit();
    std::optional<git_oid> const blob = commit ? FindGitBlob(commit.get(), file) : std::nullopt;
    // Where a parent has the same file, the file's history is that of the parent, so no more
    // than one commit has to be looked at next.
    while (blob && !cancel.IsCancelled()) {
        GitCommitPtr parent = FindSameParent(commit.get(), file, blob);
        if (!parent)
            return Describe(commit.get());
        commit = std::move(parent);
    }
    return std::nullopt;
}

} // namespace embeddedhost
