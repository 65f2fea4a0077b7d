#include "storage/faults.h"

namespace embeddedhost {

namespace {

QString Sentence(QString const& place, QString const& reason)
{
    return place + QStringLiteral(": ") + reason;
}

} // namespace

QString JoinPlace(QString const& place, QString const& part)
{
    return part.isEmpty() ? place : place + QStringLiteral(", ") + part;
}

FaultReporter::FaultReporter(CMessageChannel& messages)
    : m_Messages(messages)
{
}

void FaultReporter::ReportFatal(QString const& place, QString const& reason) const
{
    m_Messages.Post(eSeverity::kError, Sentence(place, reason));
}

void FaultReporter::Report(QString const& place, QString const& reason) const
{
    m_Messages.Post(eSeverity::kWarning, Sentence(place, reason));
}

} // namespace embeddedhost
