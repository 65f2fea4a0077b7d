#include "storage/openfilelimit.h"

#include <QtGlobal>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

namespace embeddedhost {

namespace {

/// What a program with windows has open anyway, and then some.
constexpr std::size_t kReserve = 200;

} // namespace

#ifdef Q_OS_UNIX

COpenFileLimit::COpenFileLimit(std::size_t wanted)
    : m_Allowed(1)
{
    rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    rlim_t const needed = std::min<rlim_t>(limit.rlim_max, wanted + kReserve);
    if (limit.rlim_cur < needed) {
        rlimit const raised = {needed, limit.rlim_max};
        if (setrlimit(RLIMIT_NOFILE, &raised) == 0) {
            m_Before = limit.rlim_cur;
            limit.rlim_cur = needed;
        }
    }
    if (limit.rlim_cur > kReserve)
        m_Allowed = std::min<rlim_t>(limit.rlim_cur - kReserve, wanted + 1);
}

COpenFileLimit::~COpenFileLimit()
{
    rlimit limit;
    if (m_Before == 0 || getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = m_Before;
    setrlimit(RLIMIT_NOFILE, &limit);
}

#else

COpenFileLimit::COpenFileLimit(std::size_t)
    : m_Allowed(kReserve)
{
}

COpenFileLimit::~COpenFileLimit() = default;

#endif

std::size_t COpenFileLimit::GetAllowed() const
{
    return m_Allowed;
}

} // namespace embeddedhost
