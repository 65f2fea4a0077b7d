#ifndef EMBEDDEDHOST_OBJECTFORMAT_H
#define EMBEDDEDHOST_OBJECTFORMAT_H

#include "model/libraryfile.h"
#include "model/listedobject.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace embeddedhost {

/// The text of a file as a tree, or why it is not one.
struct ParsedText
{
    /// Whoever parses the text checks that it is an object, or an array of them.
    ItemObject content;
    /// The place of the fault, "line 3, column 7".
    QString faultPlace;
    /// A sentence; empty when the text was read.
    QString fault;
    /// Keys that an object has more than once, as `object 3, key "tags.colour"`, the first
    /// hundred of them. The last value counts.
    std::vector<QString> repeatedKeys;
};

/// The text of a file, kept so that its objects can be read later, one by one.
struct KeptText
{
    std::unique_ptr<ObjectSource const> source;
    /// The place of each object.
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

/// What the files of objects look like. Everything else that reads and writes them asks their
/// format.
class ObjectFormat
{
public:
    virtual ~ObjectFormat() = default;

    /// How the names of the files end, with the dot; ASCII.
    virtual QString GetSuffix() const = 0;

    virtual std::unique_ptr<ObjectLister> MakeLister() const = 0;
    virtual ParsedText Parse(QByteArray const& text) const = 0;
    /// Takes a text that a lister has accepted, or in which Parse has found objects.
    virtual KeptText Keep(QByteArray const& text) const = 0;
    /// The text of the file's entries. What `oldText`, the file on disk, already has is copied byte
    /// for byte.
    virtual QByteArray Write(LibraryFile const& file, QByteArray const& oldText) const = 0;
};

/// Whether files of this name, or path, hold objects.
bool IsObjectFile(QString const& name);

/// The format of a file of objects.
ObjectFormat const& GetFormat(QString const& path);

/// The format of files that the program makes.
ObjectFormat const& GetFormatOfNewFiles();

} // namespace embeddedhost

#endif
