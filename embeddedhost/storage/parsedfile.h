#ifndef EMBEDDEDHOST_PARSEDFILE_H
#define EMBEDDEDHOST_PARSEDFILE_H

#include "storage/objectformat.h"
#include "storage/systemfiles.h"

namespace embeddedhost {

/// A file as it was read, or why it could not be.
struct ParsedFile : ParsedText
{
    /// The digest of the text.
    QByteArray digest = QByteArray();
};

/// Why the file has no text to read, a sentence; empty when it has.
QString DescribeFault(FileContent const& file);

/// Reads a regular file that really lies in the folder, which is canonical.
ParsedFile ParseFile(QString const& path, QString const& folder, ObjectFormat const& format);

} // namespace embeddedhost

#endif
