#include "sourcecontrol/statepass.h"

#include "sourcecontrol/checkouts.h"
#include "sourcecontrol/statebits.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <map>

namespace embeddedhost {

namespace {

class StatePass
{
public:
    StatePass(std::vector<QString> const& files, CancelFlag const& cancel)
        : m_Files(files)
        , m_Cancel(cancel)
        , m_States(files.size(), 0)
    {}

    std::vector<unsigned> Run()
    {
        GroupByWorkTree();
        for (auto const& group : m_Groups)
            ReadGroup(group.second);
        return m_States;
    }

private:
    typedef std::vector<std::size_t> Positions;

    struct Folder
    {
        QString canonicalPath;
        /// Empty outside of all work trees.
        QString gitFolder;
    };

    void GroupByWorkTree()
    {
        for (std::size_t i = 0; i < m_Files.size() && !m_Cancel.IsCancelled(); ++i) {
            Folder const& folder = GetFolder(i);
            if (!folder.gitFolder.isEmpty())
                m_Groups[folder.gitFolder].push_back(i);
        }
    }

    /// The folder around the file; one that is there, even for a file that is not.
    Folder const& GetFolder(std::size_t position)
    {
        QString const& file = m_Files[position];
        QString const path = file.left(file.lastIndexOf('/'));
        // Looking for the git folder reads every parent, so it is done once for each folder.
        auto const known = m_Folders.constFind(path);
        if (known != m_Folders.constEnd())
            return *known;
        QString existing = path;
        while (!existing.isEmpty() && !QFileInfo::exists(existing))
            existing.truncate(existing.lastIndexOf('/'));
        QString const canonical = QFileInfo(existing).canonicalFilePath();
        return *m_Folders.insert(
            path, {canonical + path.mid(existing.size()), CGitWorkTree::FindGitFolder(canonical)});
    }

    void ReadGroup(Positions const& positions)
    {
        CGitWorkTree const tree(QFileInfo(CanonicalPath(positions.front())).path());
        CFileStates states;
        std::vector<std::string> paths;
        for (std::size_t const position : positions)
            paths.push_back(tree.GetRelativePath(CanonicalPath(position)));
        if (tree.GetAccess() == CGitWorkTree::kNoWorkTree)
            return;
        bool const isRead = tree.ReadStates(GetCommonPart(paths), m_Cancel, states);
        std::set<std::string> const checkOuts = ReadCheckOuts(tree);
        for (std::size_t i = 0; i < positions.size() && !m_Cancel.IsCancelled(); ++i) {
            unsigned const state = isRead ? states.Find(paths[i]) : StateBits::kUnknown;
            m_States[positions[i]] = (state ? state : GetStateWithoutEntry(positions[i]))
                                     | (checkOuts.count(paths[i]) ? StateBits::kCheckedOut : 0);
        }
    }

    QString CanonicalPath(std::size_t position)
    {
        QString const& file = m_Files[position];
        return GetFolder(position).canonicalPath + file.mid(file.lastIndexOf('/'));
    }

    /// Git has no entry for a file that was not written yet.
    unsigned GetStateWithoutEntry(std::size_t position) const
    {
        return QFileInfo::exists(m_Files[position]) ? StateBits::kUnknown : StateBits::kUntracked;
    }

    /// The smallest part of the work tree that all files lie in.
    static std::string GetCommonPart(std::vector<std::string> const& paths)
    {
        if (paths.size() == 1)
            return paths.front();
        auto const getFolder = [](std::string const& path) {
            return path.substr(0, path.rfind('/') + 1);
        };
        std::string common = getFolder(paths.front());
        for (std::string const& path : paths) {
            while (path.compare(0, common.size(), common) != 0) {
                common.pop_back();
                common = getFolder(common);
            }
        }
        return common;
    }

    std::vector<QString> const& m_Files;
    CancelFlag const& m_Cancel;
    std::vector<unsigned> m_States;
    QHash<QString, Folder> m_Folders;
    std::map<QString, Positions> m_Groups;
};

} // namespace

std::vector<unsigned> ReadFileStates(std::vector<QString> const& files, CancelFlag const& cancel)
{
    return StatePass(files, cancel).Run();
}

} // namespace embeddedhost
