#include "sourcecontrol/filehistory.h"

#include "sourcecontrol/statepass.h"

#include <QFile>
#include <QFileInfo>

#include <future>
#include <unordered_map>

namespace embeddedhost {

/// Last commits by file. One holds as long as HEAD stays where it was.
class CFileHistory::Cache
{
public:
    std::optional<GitCommit> Find(CGitWorkTree const& tree, std::string const& path,
                                  CancelFlag const& cancel)
    {
        std::string const head = tree.GetHead();
        Entry& entry = m_Entries[tree.GetGitFolder().toStdString() + path];
        if (entry.isKnown && entry.head == head)
            return entry.commit;
        auto const commit = tree.FindLastCommit(path, cancel);
        if (!cancel)
            entry = {true, head, commit};
        return commit;
    }

private:
    struct Entry
    {
        bool isKnown = false;
        std::string head;
        std::optional<GitCommit> commit;
    };

    /// Used by the one thread of the pool.
    std::unordered_map<std::string, Entry> m_Entries;
};

struct CFileHistory::Search
{
    QString file;
    CancelFlag isCancelled{false};
    std::promise<FileFacts> facts;
    std::future<FileFacts> result = facts.get_future();
};

CFileHistory::CFileHistory()
    : m_Cache(std::make_shared<Cache>())
{
    m_Pool.setMaxThreadCount(1);
}

CFileHistory::~CFileHistory()
{
    Cancel();
    Wait();
}

std::optional<FileFacts> CFileHistory::Find(QString const& file, std::chrono::milliseconds patience)
{
    auto const isReady = [this](std::chrono::milliseconds time) {
        return m_Search->result.wait_for(time) == std::future_status::ready;
    };
    // What an earlier search found may not be so any more; a new one is quick, it begins with
    // what the earlier one left in the cache.
    if (!m_Search || m_Search->file != file || isReady(std::chrono::milliseconds(0)))
        Start(file);
    if (!isReady(patience))
        return std::nullopt;
    FileFacts const facts = m_Search->result.get();
    m_Search.reset();
    return facts;
}

void CFileHistory::Cancel()
{
    if (m_Search)
        m_Search->isCancelled = true;
    m_Search.reset();
}

void CFileHistory::Wait()
{
    m_Pool.waitForDone();
}

void CFileHistory::Start(QString const& file)
{
    Cancel();
    m_Search = std::make_shared<Search>();
    m_Search->file = file;
    m_Pool.start([search = m_Search, cache = m_Cache] {
        if (search->isCancelled)
            return;
        QFileInfo const info(search->file);
        CGitWorkTree const tree(info.path());
        std::string const path = tree.GetRelativePath(info.canonicalPath() + '/' + info.fileName());
        FileFacts facts;
        facts.path = QFile::decodeName(path.c_str());
        facts.state = ReadFileStates({search->file}, search->isCancelled).front();
        if (!path.empty())
            facts.lastCommit = cache->Find(tree, path, search->isCancelled);
        search->facts.set_value(facts);
    });
}

} // namespace embeddedhost
