#include "sourcecontrol/gitrepository.h"
#include "sourcecontrol/statebits.h"

namespace embeddedhost {

namespace {

int StopWhenCancelled(git_diff const*, char const*, char const*, void* cancel)
{
    return static_cast<CancelFlag const*>(cancel)->IsCancelled() ? GIT_EUSER : 0;
}

/// A pass over the parts of the work tree, over all of it for none.
git_diff_options MakeOptions(git_strarray const& parts, CancelFlag const& cancel)
{
    // Paths are matched literally, since file names may contain wildcards. Unmodified and ignored
    // files are included because each file asked about needs a state.
    git_diff_options options = GIT_DIFF_OPTIONS_INIT;
    options.flags = GIT_DIFF_INCLUDE_UNMODIFIED | GIT_DIFF_INCLUDE_UNTRACKED
                    | GIT_DIFF_RECURSE_UNTRACKED_DIRS | GIT_DIFF_INCLUDE_IGNORED
                    | GIT_DIFF_INCLUDE_UNREADABLE | GIT_DIFF_INCLUDE_TYPECHANGE
                    | GIT_DIFF_IGNORE_SUBMODULES | GIT_DIFF_DISABLE_PATHSPEC_MATCH;
    options.pathspec = parts;
    options.progress_cb = StopWhenCancelled;
    options.payload = const_cast<CancelFlag*>(&cancel);
    return options;
}

unsigned GetUnstagedState(git_delta_t change)
{
    switch (change) {
    case GIT_DELTA_UNMODIFIED:
        return StateBits::kClean;
    case GIT_DELTA_MODIFIED:
    case GIT_DELTA_DELETED:
    case GIT_DELTA_TYPECHANGE:
        return StateBits::kModified;
    case GIT_DELTA_UNTRACKED:
        return StateBits::kUntracked;
    case GIT_DELTA_IGNORED:
        return StateBits::kIgnored;
    case GIT_DELTA_CONFLICTED:
        return StateBits::kConflicted;
    default:
        return StateBits::kUnknown;
    }
}

/// Adds the staged change to `state`, which is that of the work tree.
unsigned AddStagedState(unsigned state, git_delta_t change)
{
    bool const isTracked = state & (StateBits::kClean | StateBits::kModified);
    switch (change) {
    case GIT_DELTA_ADDED:
        return isTracked ? (state & ~StateBits::kClean) | StateBits::kAdded : state;
    case GIT_DELTA_MODIFIED:
    case GIT_DELTA_TYPECHANGE:
        return isTracked ? StateBits::kModified : state;
    case GIT_DELTA_DELETED:
        // A file that is still there has become an untracked one.
        return state ? state : StateBits::kModified;
    default:
        return state;
    }
}

char const* GetPath(git_diff_delta const& delta)
{
    return delta.new_file.path ? delta.new_file.path : delta.old_file.path;
}

} // namespace

bool CGitWorkTree::ReadStates(std::string const& part, CancelFlag const& cancel,
                              CFileStates& states) const
{
    GitIndexPtr const index = m_Private->GetIndex();
    if (!index)
        return false;

    char* path = const_cast<char*>(part.c_str());
    git_diff_options const options = MakeOptions({&path, part.empty() ? 0u : 1u}, cancel);
    git_repository* const repository = m_Private->repository.get();

    git_diff* diff = nullptr;
    if (git_diff_index_to_workdir(&diff, repository, index.get(), &options) != 0)
        return false;
    GitDiffPtr const unstaged(diff);

    git_tree* tree = nullptr;
    GitCommitPtr const head = m_Private->GetHeadCommit();
    // Before the first commit there is no tree, and all files in the index count as added.
    if ((head && git_commit_tree(&tree, head.get()) != 0)
        || (!head && git_repository_head_unborn(repository) != 1))
        return false;
    GitTreePtr const headTree(tree);
    if (git_diff_tree_to_index(&diff, repository, tree, index.get(), &options) != 0)
        return false;
    GitDiffPtr const staged(diff);

    // First the work tree: AddStagedState builds on its states.
    for (std::size_t i = 0; i < git_diff_num_deltas(unstaged.get()); ++i) {
        git_diff_delta const& delta = *git_diff_get_delta(unstaged.get(), i);
        states[GetPath(delta)] = GetUnstagedState(delta.status);
    }
    for (std::size_t i = 0; i < git_diff_num_deltas(staged.get()); ++i) {
        git_diff_delta const& delta = *git_diff_get_delta(staged.get(), i);
        if (delta.status == GIT_DELTA_UNMODIFIED)
            continue;
        unsigned& state = states[GetPath(delta)];
        state = AddStagedState(state, delta.status);
    }
    return !cancel.IsCancelled();
}

} // namespace embeddedhost
