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
    /// The staging folder in it; null, with the reason, if it cannot be made or locked. Only the
    /// first call for a root waits for the lock.
    CStagingFolder* Get(QString const& root, QString* fault);

    /// The files kept in the opened folders: a sentence for each of the first ones and one for
    /// the rest.
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

/// Removes the leftovers of a killed save from the library's folders, and reports the content of
/// other programs that is kept there.
void TidyUpStagingFolders(CLibrary const& library);

} // namespace embeddedhost

#endif
