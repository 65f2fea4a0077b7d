#include "sourcecontrol/checkouts.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <nlohmann/json.hpp>

#include <map>
#include <mutex>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

QString GetListPath(CGitWorkTree const& tree)
{
    return tree.GetGitFolder() + QStringLiteral("checkedout.json");
}

/// Serialises the changes of one list. Each list has a mutex of its own, so that a thread that
/// hangs in one list does not block the others.
std::mutex& GetListMutex(CGitWorkTree const& tree)
{
    // Never destroyed, as a thread may use them while the process ends.
    static auto& guard = *new std::mutex;
    static auto& mutexes = *new std::map<QString, std::mutex>;
    std::lock_guard<std::mutex> const lock(guard);
    return mutexes[GetListPath(tree)];
}

/// Path to content in HEAD, in hexadecimal; an empty object when there is no list.
ordered_json ReadList(CGitWorkTree const& tree)
{
    QFile file(GetListPath(tree));
    if (!file.open(QIODevice::ReadOnly))
        return ordered_json::object();
    QByteArray const text = file.readAll();
    ordered_json list = ordered_json::parse(text.begin(), text.end(), nullptr, false);
    return list.is_object() ? list : ordered_json::object();
}

bool WriteList(CGitWorkTree const& tree, ordered_json const& list)
{
    // File names may be in any encoding.
    std::string const text = list.dump(2, ' ', false, ordered_json::error_handler_t::replace);
    QSaveFile file(GetListPath(tree));
    return file.open(QIODevice::WriteOnly)
           && file.write(text.data(), qint64(text.size())) == qint64(text.size()) && file.commit();
}

} // namespace

// Looks at the permission bits, because root can write to any file.
QString MakeFileWritable(QString const& file)
{
    QFile::Permissions const permissions = QFile::permissions(file);
    if (permissions.testFlag(QFile::WriteOwner)
        || QFile::setPermissions(file, permissions | QFile::WriteOwner | QFile::WriteUser))
        return QString();
    return QStringLiteral("its permissions cannot be changed; it may belong to another user");
}

QString CheckOutFile(QString const& file, CancelFlag const& cancel)
{
    QFileInfo const info(file);
    CGitWorkTree const tree(info.path());
    if (tree.GetAccess() != CGitWorkTree::kReadable)
        return tree.GetError();
    if (cancel.IsCancelled())
        return QStringLiteral("it was cancelled");
    QString const reason = MakeFileWritable(file);
    if (!reason.isEmpty())
        return reason;
    std::string const path = tree.GetRelativePath(info.canonicalPath() + '/' + info.fileName());
    return MarkCheckedOut(tree, path)
               ? QString()
               : QStringLiteral("nothing can be written into %1").arg(tree.GetGitFolder());
}

bool MarkCheckedOut(CGitWorkTree const& tree, std::string const& file)
{
    std::lock_guard<std::mutex> const lock(GetListMutex(tree));
    ordered_json list = ReadList(tree);
    list[file] = tree.GetHeadBlob(file);
    return WriteList(tree, list);
}

std::set<std::string> ReadCheckOuts(CGitWorkTree const& tree)
{
    std::lock_guard<std::mutex> const lock(GetListMutex(tree));
    ordered_json const list = ReadList(tree);
    ordered_json kept = ordered_json::object();
    std::set<std::string> files;
    for (auto const& entry : list.items()) {
        if (entry.value() == tree.GetHeadBlob(entry.key())) {
            kept[entry.key()] = entry.value();
            files.insert(entry.key());
        }
    }
    if (kept.size() != list.size())
        WriteList(tree, kept);
    return files;
}

} // namespace embeddedhost
