#include "sourcecontrol/filestates.h"

namespace embeddedhost {

unsigned CFileStates::Find(std::string const& path) const
{
    auto const found = m_States.find(path);
    if (found != m_States.end())
        return found->second;
    for (std::size_t slash = path.rfind('/'); slash != std::string::npos && slash > 0;
         slash = path.rfind('/', slash - 1)) {
        auto const folder = m_States.find(path.substr(0, slash + 1));
        if (folder != m_States.end())
            return folder->second;
    }
    return 0;
}

unsigned& CFileStates::operator[](std::string const& path)
{
    return m_States[path];
}

} // namespace embeddedhost
