#ifndef EMBEDDEDHOST_FILERECONCILER_H
#define EMBEDDEDHOST_FILERECONCILER_H

#include "model/library.h"
#include "storage/parsedfile.h"

#include <QString>

#include <memory>

namespace embeddedhost {

/// The result of bringing the library up to date with a file that another program may have
/// changed.
enum class eReconciled
{
    kUpToDate,   ///< the library matches the file on disk
    kConflict,   ///< the file has changes that are not saved; they are kept
    kUnreadable, ///< the file cannot be read, or is only half written
    kClosed      ///< a listener closed the library
};

/// The file as it is now; an empty array when it is not there. A file that holds no objects is
/// unreadable, and so is one of which it cannot be known whether it is there.
ParsedFile ReadObjectFile(CLibrary const& library, CDataSource const& source, QString const& path);

/// Brings items up to the file on disk, with notifications: added, removed, renamed and tagged.
/// `fault`, which is not null, says why a file is unreadable.
eReconciled ReconcileFile(std::shared_ptr<CLibrary> const& library, DataSourcePtr const& source,
                          QString const& path, QString* fault);

} // namespace embeddedhost

#endif
