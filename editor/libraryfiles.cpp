#include "libraryfiles.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace {

[[noreturn]] void Fail(QString const& path, QString const& reason)
{
    throw std::runtime_error(QStringLiteral("%1: %2").arg(path, reason).toStdString());
}

} // namespace

void WriteFile(QString const& path, std::string const& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(text.data(), static_cast<qint64>(text.size())) < 0 || !file.flush())
        Fail(path, file.errorString());
}

void MakeFolder(QString const& path)
{
    if (!QDir().mkpath(path))
        Fail(path, QStringLiteral("the folder cannot be made"));
}
