#ifndef EMBEDDEDHOST_NEWLIBRARY_H
#define EMBEDDEDHOST_NEWLIBRARY_H

#include <string>
#include <vector>

namespace embeddedhost {

/// A library to be made. Texts are UTF-8.
struct NewLibrary
{
    struct DataSource
    {
        /// A UID.
        std::string uid;
        std::string name;
        /// Relative to the library folder.
        std::string path;
        bool isReadOnly = false;
        /// The UID of an application component that lives in it; empty for none.
        std::string component = {};
    };

    std::string name;
    std::vector<DataSource> sources;
};

} // namespace embeddedhost

#endif
