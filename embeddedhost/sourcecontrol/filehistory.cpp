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
        if (!cancel.IsCancelled())
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

    /// Used by one thread, that of the library.
    std::unordered_map<std::string, Entry> m_Entries;
};

struct CFileHistory::Search
{
    explicit Search(QString const& path)
        : file(path)
    {}

    FileFacts Run(Cache& cache) const
    {
        QFileInfo const info(file);
        CGitWorkTree const tree(info.path());
        std::string const path = tree.GetRelativePath(info.canonicalPath() + '/' + info.fileName());
        FileFacts found;
        found.path = QFile::decodeName(path.c_str());
        found.state = ReadFileStates({file}, *cancel).front();
        if (!path.empty())
            found.lastCommit = cache.Find(tree, path, *cancel);
        return found;
    }

    QString const file;
    CancelFlagPtr const cancel = std::make_shared<CancelFlag>();
    std::promise<FileFacts> facts;
    std::future<FileFacts> result = facts.get_future();
};

CFileHistory::CFileHistory(CGitWorkers& workers)
    : m_Workers(workers)
    , m_Cache(std::make_shared<Cache>())
{}

std::optional<FileFacts> CFileHistory::Find(QString const& file, std::chrono::milliseconds patience)
{
    auto const isReady = [this](std::chrono::milliseconds time) {
        return m_Search->result.wait_for(time) == std::future_status::ready;
    };
    // The result of a finished search may be out of date. A new search is quick, because it
    // starts from the cache of the earlier one.
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
        m_Search->cancel->Cancel();
    m_Search.reset();
}

void CFileHistory::Forget()
{
    Cancel();
    // A search that hangs may have the old one yet.
    m_Cache = std::make_shared<Cache>();
}

void CFileHistory::Start(QString const& file)
{
    Cancel();
    m_Search = std::make_shared<Search>(file);
    m_Workers.Run(
        CGitWorkers::kHistory, m_Search->cancel,
        [search = m_Search, cache = m_Cache] {
            FileFacts facts;
            try {
                facts = search->Run(*cache);
            } catch (std::exception const&) {
                // Without an answer the tool tip would wait for this search for ever.
            }
            search->facts.set_value(facts);
        },
        nullptr);
}

} // namespace embeddedhost
