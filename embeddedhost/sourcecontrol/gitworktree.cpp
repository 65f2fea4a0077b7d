#include "sourcecontrol/gitrepository.h"

#include <QDir>
#include <QFile>

namespace embeddedhost {

namespace {

QString TakeText(git_buf& buffer)
{
    QString const text = QFile::decodeName(QByteArray(buffer.ptr, int(buffer.size)));
    git_buf_dispose(&buffer);
    return text;
}

std::string ToHex(git_oid const& id)
{
    char text[GIT_OID_HEXSZ + 1];
    return git_oid_tostr(text, sizeof text, &id);
}

CGitWorkTree::eAccess GetAccessAfter(int openResult, QString const& folder)
{
    switch (openResult) {
    case 0:
        return CGitWorkTree::kReadable;
    case GIT_EOWNER:
        return CGitWorkTree::kForeign;
    case GIT_ENOTFOUND:
        // The library also says so of a foreign work tree when the user has not declared any
        // folder safe: the setting is what it did not find.
        return CGitWorkTree::FindGitFolder(folder).isEmpty() ? CGitWorkTree::kNoWorkTree
                                                             : CGitWorkTree::kForeign;
    default:
        return CGitWorkTree::kUnreadable;
    }
}

/// The folder itself or the nearest one around it that git's folder lies in. For work trees that
/// cannot be opened.
QString FindRoot(QString const& folder)
{
    QDir root(folder);
    while (!root.exists(QStringLiteral(".git")) && root.cdUp()) {
    }
    return root.path();
}

QString DescribeForeignTree(QString const& folder)
{
    return QStringLiteral("the work tree belongs to another user, so git does not trust it; if "
                          "you do, declare it safe with: git config --global --add "
                          "safe.directory \"%1\"")
        .arg(FindRoot(folder));
}

QString DescribeUnreadableTree(QString const& root)
{
    return QStringLiteral("git cannot read the work tree %1; see what is wrong with it with: "
                          "git -C \"%1\" status")
        .arg(root);
}

QString DescribeAccess(CGitWorkTree::eAccess access, QString const& folder)
{
    switch (access) {
    case CGitWorkTree::kNoWorkTree:
        return QStringLiteral("it is not in a git work tree");
    case CGitWorkTree::kForeign:
        return DescribeForeignTree(folder);
    case CGitWorkTree::kUnreadable:
        return DescribeUnreadableTree(FindRoot(folder));
    case CGitWorkTree::kReadable:
        break;
    }
    return QString();
}

} // namespace

// Never shut down: worker threads may still be in the library while the process ends.
void StartGitLibrary()
{
    static int const started = git_libgit2_init();
    Q_UNUSED(started);
}

CGitWorkTree::CGitWorkTree(QString const& folder)
    : m_Private(new Private)
{
    StartGitLibrary();
    git_repository* opened = nullptr;
    int const result =
        git_repository_open_ext(&opened, QFile::encodeName(folder).constData(), 0, nullptr);
    m_Private->repository.reset(opened);
    m_Private->access = GetAccessAfter(result, folder);
    if (opened && git_repository_is_bare(opened))
        m_Private->access = kNoWorkTree;
    m_Private->error = DescribeAccess(m_Private->access, folder);
}

CGitWorkTree::CGitWorkTree(CGitWorkTree&& other) noexcept = default;
CGitWorkTree::~CGitWorkTree() = default;

QString CGitWorkTree::FindGitFolder(QString const& folder)
{
    StartGitLibrary();
    git_buf found = GIT_BUF_INIT;
    if (git_repository_discover(&found, QFile::encodeName(folder).constData(), 0, nullptr) != 0)
        return QString();
    return TakeText(found);
}

CGitWorkTree::eAccess CGitWorkTree::GetAccess() const
{
    return m_Private->access;
}

QString CGitWorkTree::GetError() const
{
    return m_Private->error;
}

QString CGitWorkTree::GetRoot() const
{
    if (m_Private->access != kReadable)
        return QString();
    QString const root = QFile::decodeName(git_repository_workdir(m_Private->repository.get()));
    return root.size() > 1 && root.endsWith('/') ? root.left(root.size() - 1) : root;
}

QString CGitWorkTree::GetGitFolder() const
{
    if (m_Private->access != kReadable)
        return QString();
    return QFile::decodeName(git_repository_path(m_Private->repository.get()));
}

std::string CGitWorkTree::GetRelativePath(QString const& file) const
{
    if (m_Private->access != kReadable)
        return std::string();
    QString const start = QFile::decodeName(git_repository_workdir(m_Private->repository.get()));
    return file.startsWith(start) ? QFile::encodeName(file.mid(start.size())).toStdString()
                                  : std::string();
}

std::string CGitWorkTree::GetHead() const
{
    GitCommitPtr const head = m_Private->GetHeadCommit();
    return head ? ToHex(*git_commit_id(head.get())) : std::string();
}

std::string CGitWorkTree::GetHeadBlob(std::string const& file) const
{
    GitCommitPtr const head = m_Private->GetHeadCommit();
    auto const blob = head ? FindGitBlob(head.get(), file) : std::nullopt;
    return blob ? ToHex(*blob) : std::string();
}

GitCommitPtr CGitWorkTree::Private::GetHeadCommit()
{
    git_oid id;
    git_commit* commit = nullptr;
    if (access == kReadable && git_reference_name_to_id(&id, repository.get(), "HEAD") == 0)
        git_commit_lookup(&commit, repository.get(), &id);
    return GitCommitPtr(commit);
}

GitIndexPtr CGitWorkTree::Private::GetIndex()
{
    git_index* index = nullptr;
    if (access != kReadable || git_repository_index(&index, repository.get()) != 0)
        return nullptr;
    GitIndexPtr opened(index);
    return git_index_read(index, false) == 0 ? std::move(opened) : nullptr;
}

std::optional<git_oid> FindGitBlob(git_commit* commit, std::string const& path)
{
    git_tree* tree = nullptr;
    if (git_commit_tree(&tree, commit) != 0)
        return std::nullopt;
    GitTreePtr const root(tree);
    git_tree_entry* entry = nullptr;
    if (git_tree_entry_bypath(&entry, tree, path.c_str()) != 0)
        return std::nullopt;
    return *git_tree_entry_id(GitTreeEntryPtr(entry).get());
}

} // namespace embeddedhost
