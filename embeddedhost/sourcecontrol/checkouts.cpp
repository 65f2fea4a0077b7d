#include "sourcecontrol/checkouts.h"

#include <QFile>
#include <QSaveFile>

#include <nlohmann/json.hpp>

#include <mutex>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// One change of a list at a time.
std::mutex gListMutex;

QString GetListPath(CGitWorkTree const& tree)
{
    return tree.GetGitFolder() + QStringLiteral("checkedout.json");
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

bool MarkCheckedOut(CGitWorkTree const& tree, std::string const& file)
{
    std::lock_guard<std::mutex> const lock(gListMutex);
    ordered_json list = ReadList(tree);
    list[file] = tree.GetHeadBlob(file);
    return WriteList(tree, list);
}

std::set<std::string> ReadCheckOuts(CGitWorkTree const& tree)
{
    std::lock_guard<std::mutex> const lock(gListMutex);
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
