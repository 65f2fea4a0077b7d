#include "sourcecontrol/gitrepository.h"

#include <chrono>
#include <thread>

namespace embeddedhost {

namespace {

/// Other git commands write the index for a moment only.
constexpr int kMaxAttempts = 20;
constexpr std::chrono::milliseconds kAttemptPause(50);

/// Moves the entry of `from` to `to` with all its fields. Returns a result of the git library.
int MoveEntryOnce(git_index* index, std::string const& from, std::string const& to)
{
    // Read again in each attempt: the command that held the lock has changed the index.
    int result = git_index_read(index, true);
    git_index_entry const* const entry = git_index_get_bypath(index, from.c_str(), 0);
    if (result != 0 || !entry)
        return GIT_ERROR;
    git_index_entry moved = *entry;
    moved.path = to.c_str();
    result = git_index_add(index, &moved);
    if (result == 0)
        result = git_index_remove(index, from.c_str(), 0);
    return result == 0 ? git_index_write(index) : result;
}

} // namespace

bool CGitWorkTree::IsTracked(std::string const& file) const
{
    GitIndexPtr const index = m_Private->GetIndex();
    return index && git_index_get_bypath(index.get(), file.c_str(), 0);
}

bool CGitWorkTree::MoveEntry(std::string const& from, std::string const& to)
{
    auto const refuse = [this](QString const& reason) {
        m_Private->error = reason;
        return false;
    };
    if (!IsTracked(from))
        return refuse(QStringLiteral("the file is not tracked"));
    if (IsTracked(to))
        return refuse(QStringLiteral("git knows another file of the new name"));

    GitIndexPtr const index = m_Private->GetIndex();
    for (int attempt = 1; index; ++attempt) {
        int const result = MoveEntryOnce(index.get(), from, to);
        if (result == 0)
            return true;
        if (result != GIT_ELOCKED || attempt == kMaxAttempts)
            break;
        std::this_thread::sleep_for(kAttemptPause);
    }
    // Drops the changes that were made in memory only.
    if (index)
        git_index_read(index.get(), true);
    return refuse(QStringLiteral("git's index cannot be written; another git command may be at "
                                 "work on it"));
}

} // namespace embeddedhost
