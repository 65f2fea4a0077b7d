#include "sourcecontrol/gitrepository.h"
#include "sourcecontrol/specialfiles.h"

#include <QFile>
#include <QFileInfo>

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

/// Whether opening has failed because the library looked in vain for the user's setting that
/// declares another user's folder safe.
bool IsAboutOwner(git_error const* error)
{
    return error && error->klass == GIT_ERROR_CONFIG;
}

CGitWorkTree::eAccess GetAccessAfter(int openResult, QString const& folder)
{
    switch (openResult) {
    case 0:
        return CGitWorkTree::kReadable;
    case GIT_EOWNER:
        return CGitWorkTree::kForeign;
    case GIT_ENOTFOUND:
        // Also the error for a missing part of the repository.
        if (IsAboutOwner(git_error_last()))
            return CGitWorkTree::kForeign;
        return CGitWorkTree::FindGitFolder(folder).isEmpty() ? CGitWorkTree::kNoWorkTree
                                                             : CGitWorkTree::kUnreadable;
    default:
        return CGitWorkTree::kUnreadable;
    }
}

QString DescribeForeignTree(QString const& folder)
{
    return QStringLiteral("the work tree belongs to another user, so git does not trust it; if "
                          "you do, declare it safe with: git config --global --add "
                          "safe.directory \"%1\"")
        .arg(FindGitRoot(folder));
}

QString DescribeUnreadableTree(QString const& folder, QString const& reason)
{
    return QStringLiteral("git cannot read the work tree %1: %2; see what is wrong with it with: "
                          "git -C \"%1\" status")
        .arg(FindGitRoot(folder), reason);
}

QString DescribeSpecialFile(QString const& folder, QString const& file)
{
    return QStringLiteral("git cannot read the work tree %1: %2 is a pipe or a device, which git "
                          "would wait for without end; remove it")
        .arg(FindGitRoot(folder), file);
}

QString DescribeAccess(CGitWorkTree::eAccess access, QString const& folder, QString const& reason)
{
    switch (access) {
    case CGitWorkTree::kNoWorkTree:
        return QStringLiteral("it is not in a git work tree");
    case CGitWorkTree::kForeign:
        return DescribeForeignTree(folder);
    case CGitWorkTree::kUnreadable:
        return DescribeUnreadableTree(folder, reason);
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
    // Checked first: the git library would block on opening a pipe.
    QString const special = FindSpecialGitFile(folder);
    if (special.isEmpty()) {
        m_Private->Open(folder);
    } else {
        m_Private->access = kUnreadable;
        m_Private->error = DescribeSpecialFile(folder, special);
    }
}

CGitWorkTree::CGitWorkTree(CGitWorkTree&& other) noexcept = default;
CGitWorkTree::~CGitWorkTree() = default;

void CGitWorkTree::Private::Open(QString const& folder)
{
    StartGitLibrary();
    git_repository* opened = nullptr;
    int const result =
        git_repository_open_ext(&opened, QFile::encodeName(folder).constData(), 0, nullptr);
    repository.reset(opened);
    git_error const* const failure = result == 0 ? nullptr : git_error_last();
    QString const reason = failure ? QString::fromUtf8(failure->message) : QString();
    access = GetAccessAfter(result, folder);
    // A bare repository has no files whose states could be shown.
    if (opened && git_repository_is_bare(opened))
        access = kNoWorkTree;
    error = DescribeAccess(access, folder, reason);
}

QString CGitWorkTree::FindGitFolder(QString const& folder)
{
    if (!FindSpecialGitFile(folder).isEmpty()) {
        QString const gitFolder = FindGitRoot(folder) + QStringLiteral("/.git");
        return QFileInfo(gitFolder).isDir() ? gitFolder + '/' : QString();
    }
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
