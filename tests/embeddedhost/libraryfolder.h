#ifndef NODEBROWSER_TESTS_LIBRARYFOLDER_H
#define NODEBROWSER_TESTS_LIBRARYFOLDER_H

#include <embeddedhost/embeddedhost.h>

#include <QMap>
#include <QTemporaryDir>

/// What a LibraryFolder has from the start: its library.json, and the uids in there.
extern char const* const kManifest;
extern char const* const kProjectUid;
extern char const* const kFactoryUid;
extern char const* const kFactoryComponent;

/// A temporary folder, or one of that name below it. Paths are canonical, those of files relative
/// to the folder.
class TestFolder
{
public:
    explicit TestFolder(QString const& name = QString());

    QString GetPath(QString const& file = QString()) const;
    /// Folders are made as needed.
    void Write(QString const& file, QByteArray const& content) const;
    /// Empty when there is no such file.
    QByteArray Read(QString const& file) const;
    /// The contents of all files, by path.
    QMap<QString, QByteArray> Read() const;

private:
    QTemporaryDir m_Parent;
    QString m_Path;
};

/// A library: a writable data source "project" and a read-only one "factory", in this order and
/// empty, until the test writes files into it.
class LibraryFolder : public TestFolder
{
public:
    LibraryFolder();
};

/// A well-formed UID that ends with the number.
std::string Uid(int number);

/// An object with this kind and name and the UID of the number; `more` begins with a comma.
QByteArray Object(int uid, char const* kind, char const* name, char const* more = "");

/// The whole content; empty when there is none.
QByteArray ReadFile(QString const& path);
/// In place, with a single call to the system. False when it fails.
bool WriteFile(QString const& path, QByteArray const& content);

/// The texts of the messages so far.
QStringList GetMessages(CEmbeddedHost& host);

#endif
