#include "nullpointererror.h"

#include <qorm.h>

namespace qorm {

namespace {

// A count, because guards may be nested.
int gDisabledReporting = 0;

} // namespace

ExBase::ExBase(std::string const& errorString)
    : m_ErrorString(errorString)
{}

ExBase::~ExBase() noexcept = default;

std::string const& ExBase::GetErrorString() const
{
    return m_ErrorString;
}

char const* ExBase::what() const noexcept
{
    return m_ErrorString.c_str();
}

ExBase::NullPtr::NullPtr(char const* what, char const* file, int line)
    : ExBase(std::string("Null pointer in ") + what + " (" + file + ":" + std::to_string(line)
             + ")")
{}

DisableErrorReportingGuard::DisableErrorReportingGuard()
{
    ++gDisabledReporting;
}

DisableErrorReportingGuard::~DisableErrorReportingGuard()
{
    --gDisabledReporting;
}

bool DisableErrorReportingGuard::IsErrorReportingDisabled()
{
    return gDisabledReporting > 0;
}

} // namespace qorm

namespace hostkit {

void RaiseNullPtr()
{
    // All null dereferences are reported with this one expression and line.
    qorm::ExBase::NullPtr const error("GetPointeeNotNull", "qormptr.h", 102);
    if (!qorm::DisableErrorReportingGuard::IsErrorReportingDisabled())
        qorm::PrintDebugString(error.GetErrorString());
    throw error;
}

} // namespace hostkit
