#include "sourcecontrol/gitrepository.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace embeddedhost {

namespace {

/// Puts the entry of `from` in the place `to`, with all that the index knows of the file.
bool MoveEntry(git_index* index, std::string const& from, std::string const& to)
{
    git_index_entry const* const entry = git_index_get_bypath(index, from.c_str(), 0);
    if (!entry)
        return false;
    git_index_entry moved = *entry;
    moved.path = to.c_str();
    return git_index_add(index, &moved) == 0 && git_index_remove(index, from.c_str(), 0) == 0
           && git_index_write(index) == 0;
}

} // namespace

bool CGitWorkTree::IsTracked(std::string const& file) const
{
    GitIndexPtr const index = m_Private->GetIndex();
    return index && git_index_get_bypath(index.get(), file.c_str(), 0);
}

bool CGitWorkTree::Move(std::string const& from, std::string const& to)
{
    auto const getFullPath = [this](std::string const& path) {
        return GetRoot() + '/' + QFile::decodeName(path.c_str());
    };
    auto const refuse = [this](QString const& reason) {
        m_Private->error = reason;
        return false;
    };
    if (!IsTracked(from))
        return refuse(QStringLiteral("the file is not tracked"));
    QString const source = getFullPath(from);
    QString const target = getFullPath(to);
    if (QFileInfo::exists(target) || QFileInfo(target).isSymLink() || IsTracked(to))
        return refuse(QStringLiteral("there is a file of that name already"));
    if (!QDir().mkpath(QFileInfo(target).path()) || !QFile::rename(source, target))
        return refuse(QStringLiteral("the file cannot be renamed"));

    GitIndexPtr const index = m_Private->GetIndex();
    if (index && MoveEntry(index.get(), from, to))
        return true;
    QFile::rename(target, source);
    // What was changed in memory only is forgotten.
    if (index)
        git_index_read(index.get(), true);
    return refuse(QStringLiteral("git's index cannot be written; another git command may be at "
                                 "work on it"));
}

} // namespace embeddedhost
