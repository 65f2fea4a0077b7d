#ifndef EMBEDDEDHOST_FAULTS_H
#define EMBEDDEDHOST_FAULTS_H

#include "framework/messagechannel.h"

#include <QString>

namespace embeddedhost {

/// "place, part"; only the place when there is no part.
QString JoinPlace(QString const& place, QString const& part);

/// Reports what is wrong with a library folder, each fault with its place.
class FaultReporter
{
public:
    explicit FaultReporter(CMessageChannel& messages);

    /// What the library cannot be opened with.
    void ReportFatal(QString const& place, QString const& reason) const;
    /// What is left out or not as it should be; the rest is loaded.
    void Report(QString const& place, QString const& reason) const;

private:
    CMessageChannel& m_Messages;
};

} // namespace embeddedhost

#endif
