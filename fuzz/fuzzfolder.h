#ifndef FUZZ_FUZZFOLDER_H
#define FUZZ_FUZZFOLDER_H

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

/// A library folder, and a file outside of it, in the system's folder for temporary files, which
/// had better be in memory.
class FuzzFolder
{
public:
    struct File
    {
        QByteArray content;
        /// Changes with each time that the file is written, even the same.
        quint64 version;
    };
    typedef QMap<QString, File> Files;

    FuzzFolder();

    /// The library folder.
    QString GetPath() const;
    QString GetPath(QString const& file) const;

    /// Makes it a library without objects: "project" and "shared" may be written, "factory" not.
    void Clear();
    /// `file` is relative to the library folder. Each file gets a time of its own, so that a
    /// change is noticed that comes right after another one.
    void Write(QString const& file, QByteArray const& content);
    void Remove(QString const& file) const;
    /// Puts a link to the file outside, or a pipe, in place of the file.
    void Link(QString const& file) const;
    void MakePipe(QString const& file) const;

    /// The regular files of the library, by their path in it. Hidden ones are passed over.
    Files Read() const;
    /// The file outside of the library is as it was.
    bool IsOutsideKept() const;

private:
    QTemporaryDir m_Folder;
    qint64 m_Time = 0;
};

bool AreSameContents(FuzzFolder::Files const& left, FuzzFolder::Files const& right);
/// And none has been written.
bool AreUntouched(FuzzFolder::Files const& left, FuzzFolder::Files const& right);

#endif
