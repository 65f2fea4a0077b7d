#ifndef EMBEDDEDHOST_FILESTATES_H
#define EMBEDDEDHOST_FILESTATES_H

#include <string>
#include <unordered_map>

namespace embeddedhost {

/// State bits by path in a work tree. Paths are relative to it, in the encoding of the file
/// system, with '/' between their parts. A folder that git looks at as one thing, because all
/// of it is ignored or because it is a repository of its own, has one entry that ends in '/'.
class CFileStates
{
public:
    /// The state of the file or of a folder around it; 0 for none.
    unsigned Find(std::string const& path) const;

    unsigned& operator[](std::string const& path);

private:
    std::unordered_map<std::string, unsigned> m_States;
};

} // namespace embeddedhost

#endif
