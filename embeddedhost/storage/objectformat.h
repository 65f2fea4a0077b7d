#ifndef EMBEDDEDHOST_OBJECTFORMAT_H
#define EMBEDDEDHOST_OBJECTFORMAT_H

#include "model/libraryfile.h"
#include "model/listedobject.h"
#include "storage/parsedtext.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace embeddedhost {

/// The text of a file, kept so that its objects can be read later, one by one.
struct KeptText
{
    std::unique_ptr<ObjectSource const> source;
    /// The place of the single object, or of each entry of an array, whether an object or not.
    std::vector<ObjectPlace> places;
};

/// Lists the objects of files without building trees, which is many times faster.
class ObjectLister
{
public:
    virtual ~ObjectLister() = default;

    /// Accepts or rejects a text as a whole. False unless it holds an object, or an array of
    /// objects, that all make items unless their uids are taken, and of which CheckObject has
    /// nothing to report. Texts that are rejected are left to ObjectFormat::Parse.
    virtual bool Read(QByteArray const& text) = 0;

    virtual bool IsArray() const = 0;
    /// Valid until the next call of Read.
    virtual std::vector<ListedObject> const& GetObjects() const = 0;
};

/// A file format of objects. All code that reads or writes the files goes through this interface.
class ObjectFormat
{
public:
    virtual ~ObjectFormat() = default;

    /// How the names of the files end, with the dot; ASCII.
    virtual QString GetSuffix() const = 0;

    /// Never null; a format without a fast way has a lister that rejects each text.
    virtual std::unique_ptr<ObjectLister> MakeLister() const = 0;
    /// Has a fault for an object that nests deeper than kMaxObjectDepth. Texts are in UTF-8.
    virtual ParsedText Parse(QByteArray const& text) const = 0;
    /// Takes a text that a lister has accepted, or Parse without a fault.
    virtual KeptText Keep(QByteArray const& text) const = 0;
    /// The text of the file's entries: an array if the file is one or has not exactly one entry.
    /// Values that `oldText`, the file on disk, already has are copied byte for byte; it is empty
    /// for a new file, and may be a text that Parse does not read. Raises if an entry cannot be
    /// read.
    virtual QByteArray Write(LibraryFile const& file, QByteArray const& oldText) const = 0;
};

/// Whether the name, or path, has the suffix of a format.
bool IsObjectFile(QString const& name);

/// The format of a file of objects; that of new files for a name without the suffix of any.
ObjectFormat const& GetFormat(QString const& path);

/// The format of files that the program makes.
ObjectFormat const& GetFormatOfNewFiles();

} // namespace embeddedhost

#endif
