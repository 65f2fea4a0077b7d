#ifndef EMBEDDEDHOST_STATEREADER_H
#define EMBEDDEDHOST_STATEREADER_H

#include "model/itemidentity.h"
#include "sourcecontrol/gitworkers.h"
#include "sourcecontrol/staterequests.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace embeddedhost {

struct ItemState
{
    ItemKey item;
    unsigned state;
};

/// Reads the states of items' files on a thread of its own.
class CStateReader : public QObject
{
    Q_OBJECT

public:
    struct ItemFile
    {
        ItemKey item;
        /// Absolute.
        QString path;
    };

    explicit CStateReader(CGitWorkers& workers);

    /// Replaces the pass that is running, whose results are not delivered any more.
    void Start(std::vector<ItemFile> const& files);
    void Cancel();

Q_SIGNALS:
    /// Through the event loop; never after Cancel().
    void Finished(std::vector<embeddedhost::ItemState> const& states);

private:
    struct Pass;

    void Finish(Pass const& pass);

    CGitWorkers& m_Workers;
    /// Null when nothing is being read.
    std::shared_ptr<Pass> m_Pass;
};

} // namespace embeddedhost

#endif
