#ifndef EMBEDDEDHOST_STAGINGFOLDERS_H
#define EMBEDDEDHOST_STAGINGFOLDERS_H

#include "model/library.h"
#include "storage/stagingfolder.h"

#include <map>

namespace embeddedhost {

/// The staging folders of a library that a save has to do with. They are closed with this.
class CStagingFolders
{
public:
    /// `patience` is how long to wait for the locks of others, in milliseconds.
    CStagingFolders(CLibrary const& library, int patience);

    /// The folder that the place of a file, a canonical path, is reached from: that of its data
    /// source, or the library's. Empty, with the reason, when nothing may be written there.
    QString FindRoot(QString const& realPath, QString* fault) const;
    /// The staging folder in it; null, with the reason, when it cannot be had. It is waited for
    /// the first time only.
    CStagingFolder* Get(QString const& root, QString* fault);

    /// Says what is kept in those that were opened, a sentence for each of the first files and
    /// one for the rest.
    QStringList DescribeKept() const;

private:
    struct Opened
    {
        std::unique_ptr<CStagingFolder> staging;
        QString fault;
    };

    CLibrary const& m_Library;
    std::map<QString, Opened> m_Opened;
    int m_Patience;
};

/// Removes what a save left behind in the library's folders that was killed, and reports what it
/// has kept of others.
void TidyUpStagingFolders(CLibrary const& library);

} // namespace embeddedhost

#endif
