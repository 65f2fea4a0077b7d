#include "storage/faults.h"

namespace embeddedhost {

namespace {

constexpr int kMaxPartLength = 1000;

QString Sentence(QString const& place, QString const& reason)
{
    return Shorten(place) + QStringLiteral(": ") + Shorten(reason);
}

} // namespace

QString JoinPlace(QString const& place, QString const& part)
{
    return part.isEmpty() ? place : place + QStringLiteral(", ") + part;
}

QString Shorten(QString const& text)
{
    return text.size() <= kMaxPartLength ? text : text.left(kMaxPartLength) + QStringLiteral("...");
}

FaultReporter::FaultReporter(CMessageChannel& messages)
    : m_Messages(messages)
{}

void FaultReporter::ReportFatal(QString const& place, QString const& reason) const
{
    m_Messages.Post(eSeverity::kError, Sentence(place, reason));
}

void FaultReporter::Report(QString const& place, QString const& reason) const
{
    if (++m_Count <= kMaxReportedFaults)
        m_Messages.Post(eSeverity::kWarning, Sentence(place, reason));
}

void FaultReporter::ReportRest(QString const& libraryFolder) const
{
    int const rest = m_Count - kMaxReportedFaults;
    if (rest > 0)
        m_Messages.Post(
            eSeverity::kWarning,
            Sentence(libraryFolder,
                     QStringLiteral("the library has %1 more faults like these.").arg(rest)));
}

} // namespace embeddedhost
