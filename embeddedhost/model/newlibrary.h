#ifndef EMBEDDEDHOST_NEWLIBRARY_H
#define EMBEDDEDHOST_NEWLIBRARY_H

#include <string>
#include <vector>

namespace embeddedhost {

/// A library to be made. Texts are UTF-8.
struct NewLibrary
{
    /// A folder of it in which items are kept.
    struct DataSource
    {
        /// A UID.
        std::string uid;
        std::string name; ///< the display name
        /// Relative to the library folder.
        std::string path;
        bool isReadOnly = false; ///< its items cannot be changed
        /// The UID of an application component that lives in it; empty for none.
        std::string component = {};
    };

    std::string name;                ///< the display name
    std::vector<DataSource> sources; ///< new items go to the first that can be written
};

} // namespace embeddedhost

#endif
