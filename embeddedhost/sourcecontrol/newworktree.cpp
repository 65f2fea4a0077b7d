#include "sourcecontrol/newworktree.h"

#include "sourcecontrol/gitrepository.h"
#include "sourcecontrol/gitthread.h"

#include <QDir>
#include <QFile>

namespace embeddedhost {

namespace {

/// The longest wait for git in a folder that was just filled.
constexpr std::chrono::seconds kPatience(3);

typedef std::unique_ptr<git_signature, GitFree<git_signature_free>> GitSignaturePtr;

GitRepositoryPtr Initialize(QString const& folder)
{
    git_repository* repository = nullptr;
    git_repository_init_options options = GIT_REPOSITORY_INIT_OPTIONS_INIT;
    git_repository_init_ext(&repository, QFile::encodeName(folder).constData(), &options);
    return GitRepositoryPtr(repository);
}

/// The tree of all files of the work tree, regardless of the user's global ignore rules.
GitTreePtr AddAll(git_repository* repository)
{
    git_index* opened = nullptr;
    if (git_repository_index(&opened, repository) != 0)
        return nullptr;
    GitIndexPtr const index(opened);
    git_oid id;
    git_tree* tree = nullptr;
    bool const isAdded =
        git_index_add_all(opened, nullptr, GIT_INDEX_ADD_FORCE, nullptr, nullptr) == 0
        && git_index_write(opened) == 0 && git_index_write_tree(&id, opened) == 0
        && git_tree_lookup(&tree, repository, &id) == 0;
    return GitTreePtr(isAdded ? tree : nullptr);
}

GitSignaturePtr FindAuthor(git_repository* repository)
{
    git_signature* author = nullptr;
    if (git_signature_default(&author, repository) != 0)
        git_signature_now(&author, "Node Editor", "nodeeditor@localhost");
    return GitSignaturePtr(author);
}

bool Commit(git_repository* repository, git_tree* tree)
{
    GitSignaturePtr const author = FindAuthor(repository);
    git_oid id;
    return author
           && git_commit_create_v(&id, repository, "HEAD", author.get(), author.get(), nullptr,
                                  "Start the library\n", tree, 0)
                  == 0;
}

/// Why it could not be made; empty when it is.
QString MakeWorkTree(QString const& folder)
{
    StartGitLibrary();
    // The folder may have gone while git hung.
    GitRepositoryPtr const repository = QDir(folder).exists() ? Initialize(folder) : nullptr;
    GitTreePtr const tree = repository ? AddAll(repository.get()) : nullptr;
    if (tree && Commit(repository.get(), tree.get()))
        return QString();
    return QStringLiteral("git cannot write into %1; see whether it may be written to and "
                          "whether the disk is full")
        .arg(QDir::toNativeSeparators(folder));
}

} // namespace

bool MakeGitWorkTree(QString const& folder, QString* fault)
{
    auto const make = [folder](CancelFlag const&) {
        return MakeWorkTree(folder);
    };
    *fault = CGitThread::Get(QFile::encodeName(folder).toStdString())
                 ->Ask(make, kPatience)
                 .value_or(QStringLiteral("git does not answer; one of its settings may be a pipe, "
                                          "or lie on a network drive that is gone"));
    return fault->isEmpty();
}

} // namespace embeddedhost
