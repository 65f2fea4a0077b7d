#ifndef EMBEDDEDHOST_FAULTS_H
#define EMBEDDEDHOST_FAULTS_H

#include "framework/messagechannel.h"

#include <QString>

namespace embeddedhost {

/// "place, part", or just the place if the part is empty.
QString JoinPlace(QString const& place, QString const& part);

/// A part of a message, cut to a readable length: files may hold texts of any length.
QString Shorten(QString const& text);

/// The maximum of faults of one library that are reported one by one.
constexpr int kMaxReportedFaults = 100;

/// Reports the faults of a library folder, each with its place.
class FaultReporter
{
public:
    explicit FaultReporter(CMessageChannel& messages);

    /// A fault that keeps the library from being opened.
    void ReportFatal(QString const& place, QString const& reason) const;
    /// A fault in one entry, which is left out or repaired; the rest is loaded. From the hundred
    /// and first on faults are only counted.
    void Report(QString const& place, QString const& reason) const;
    /// Says how many were only counted.
    void ReportRest(QString const& libraryFolder) const;

private:
    CMessageChannel& m_Messages;
    mutable int m_Count = 0;
};

} // namespace embeddedhost

#endif
