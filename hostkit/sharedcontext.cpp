#include "sharedcontext.h"

namespace hostkit {

using tarno::datamodel::ContextID;

namespace {

ContextID MakeContextID()
{
    // Begins with 1: accessors without a context answer 0.
    static std::atomic<ContextID> last(0);
    return ++last;
}

} // namespace

CSharedContext::CSharedContext()
    : m_References(0)
    , m_ID(MakeContextID())
{}

CSharedContext::~CSharedContext() = default;

} // namespace hostkit
