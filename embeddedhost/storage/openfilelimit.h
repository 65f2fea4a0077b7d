#ifndef EMBEDDEDHOST_OPENFILELIMIT_H
#define EMBEDDEDHOST_OPENFILELIMIT_H

#include <cstddef>

namespace embeddedhost {

/// Lets the process open that many files at once, on top of what it has open anyway, as far as the
/// system allows it. The limit is what it was when the object goes.
class COpenFileLimit
{
public:
    explicit COpenFileLimit(std::size_t wanted);
    ~COpenFileLimit();
    COpenFileLimit(COpenFileLimit const&) = delete;
    COpenFileLimit& operator=(COpenFileLimit const&) = delete;

    /// How many files may be opened; at least 1.
    std::size_t GetAllowed() const;

private:
    std::size_t m_Allowed;
    /// 0 when the limit was left alone.
    std::size_t m_Before = 0;
};

} // namespace embeddedhost

#endif
