#ifndef EMBEDDEDHOST_GITACTIONS_H
#define EMBEDDEDHOST_GITACTIONS_H

#include "sourcecontrol/gitworkers.h"

#include <QObject>
#include <QString>

namespace embeddedhost {

/// The user's actions on single files that git has to follow: moves and check-outs.
class CGitActions : public QObject
{
    Q_OBJECT

public:
    explicit CGitActions(CGitWorkers& workers);

    /// Why the file cannot be checked out; empty when it is. Holds the thread for half a second at
    /// most.
    QString CheckOut(QString const& file);
    /// The file was renamed on disk. Git's index follows later, in the order of the calls, and even
    /// if the library is closed meanwhile.
    void FollowMove(QString const& from, QString const& to);

Q_SIGNALS:
    /// The index has followed; with a sentence for the user when it could not.
    void MoveFollowed(QString const& fault);

private:
    CGitWorkers& m_Workers;
};

} // namespace embeddedhost

#endif
