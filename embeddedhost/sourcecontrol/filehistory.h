#ifndef EMBEDDEDHOST_FILEHISTORY_H
#define EMBEDDEDHOST_FILEHISTORY_H

#include "sourcecontrol/gitworkers.h"
#include "sourcecontrol/tooltip.h"

#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace embeddedhost {

/// Looks up the history of single files in the background. Callers do not wait for a long
/// history: if the search takes too long, the next call has the result.
class CFileHistory
{
public:
    explicit CFileHistory(CGitWorkers& workers);

    /// Nothing while the search goes on. A search for another file ends the one before.
    std::optional<FileFacts> Find(QString const& file, std::chrono::milliseconds patience);
    void Cancel();
    /// Cancels the search and clears the cache, for another library.
    void Forget();

private:
    class Cache;
    struct Search;

    void Start(QString const& file);

    CGitWorkers& m_Workers;
    std::shared_ptr<Cache> m_Cache;
    /// The search that was not waited for to the end; null when there is none.
    std::shared_ptr<Search> m_Search;
};

} // namespace embeddedhost

#endif
