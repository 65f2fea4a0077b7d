#include "samplelibrary.h"

#include "libraryfiles.h"

#include <embeddedhost/embeddedhost.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

namespace {

/// The content alone: an installed file may be read-only, its copy must not be.
void CopyFile(QString const& source, QString const& target)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(
            QStringLiteral("%1: %2").arg(source, file.errorString()).toStdString());
    MakeFolder(QFileInfo(target).path());
    WriteFile(target, file.readAll().toStdString());
}

void CopyFolder(QString const& source, QString const& target)
{
    QDirIterator files(source, QDir::Files, QDirIterator::Subdirectories);
    if (!files.hasNext())
        throw std::runtime_error(
            QStringLiteral("%1: the sample library is not there").arg(source).toStdString());
    while (files.hasNext()) {
        QString const file = files.next();
        CopyFile(file, target + file.mid(source.size()));
    }
}

} // namespace

void PrepareSampleLibrary(QString const& source, QString const& copy, QString* fault)
{
    if (CEmbeddedHost::IsLibrary(copy))
        return;
    MakeFolder(QFileInfo(copy).path());
    // Made beside its place and then renamed, so that no half of a copy is ever found there.
    QTemporaryDir folder(copy + QStringLiteral("-XXXXXX"));
    if (!folder.isValid())
        throw std::runtime_error(
            QStringLiteral("%1: %2").arg(copy, folder.errorString()).toStdString());
    CopyFolder(QDir::cleanPath(source), folder.path());
    CEmbeddedHost::MakeWorkTree(folder.path(), fault);
    if (QDir().rename(folder.path(), copy))
        folder.setAutoRemove(false);
    // If there is a library now, another process was quicker.
    else if (!CEmbeddedHost::IsLibrary(copy))
        throw std::runtime_error(
            QStringLiteral("%1: something else is in the way").arg(copy).toStdString());
}
