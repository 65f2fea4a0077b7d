#include "storage/unsavedchanges.h"

#include "model/libraryitem.h"
#include "storage/jsonparser.h"
#include "storage/objectreader.h"

#include <QDir>

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

constexpr int kFormat = 1;

std::string GetRelativePath(CLibrary const& library, QString const& path)
{
    return QDir(library.GetFolder()).relativeFilePath(path).toStdString();
}

std::string GetHexDigest(LibraryFile const& file)
{
    return file.digest.toHex().toStdString();
}

bool HasText(ordered_json const& object, char const* key)
{
    return object.is_object() && object.contains(key) && object[key].is_string();
}

/// Checks the object as strictly as one of a library file: the document may have been edited.
bool IsChange(ordered_json const& entry)
{
    return HasText(entry, "source") && HasText(entry, "file") && HasText(entry, "digest")
           && entry.contains("saved") && entry.contains("object") && entry["object"].is_object()
           && CheckObject(entry["object"], [](QString const&, QString const&) {});
}

bool IsRemoval(ordered_json const& entry)
{
    return HasText(entry, "file") && HasText(entry, "digest");
}

bool IsListOf(ordered_json const& document, char const* key, bool (*isEntry)(ordered_json const&))
{
    return document.contains(key) && document[key].is_array()
           && std::all_of(document[key].begin(), document[key].end(), isEntry);
}

} // namespace

QByteArray CollectUnsavedChanges(CLibrary const& library)
{
    ordered_json objects = ordered_json::array();
    ordered_json removed = ordered_json::array();
    for (auto const& file : library.GetFiles()) {
        if (!file->IsModified())
            continue;
        std::string const path = GetRelativePath(library, file->path);
        std::string const digest = GetHexDigest(*file);
        if (file->entries.empty() && !file->isArray)
            removed.push_back({{"file", path}, {"digest", digest}});
        for (LibraryFile::Entry const& entry : file->entries) {
            if (entry.item && entry.item->IsModified())
                objects.push_back({{"source", file->source->GetDescription().uid},
                                   {"file", path},
                                   {"digest", digest},
                                   {"saved", entry.item->GetSavedObject()},
                                   {"object", entry.item->GetObject()}});
        }
    }
    if (objects.empty() && removed.empty())
        return QByteArray();
    ordered_json const document = {{"format", kFormat},
                                   {"library", library.GetFolder().toStdString()},
                                   {"objects", std::move(objects)},
                                   {"removedFiles", std::move(removed)}};
    // Replaces invalid UTF-8, as a save does.
    return QByteArray::fromStdString(
        document.dump(1, ' ', false, ordered_json::error_handler_t::replace));
}

ordered_json ParseUnsavedChanges(QByteArray const& text, QString const& libraryFolder,
                                 QString* fault)
{
    // Around an object are its entry, the list of entries and the document.
    ordered_json document = ParseJson(text, 3).content;
    if (!document.is_object() || document.value("format", ordered_json()) != kFormat
        || !HasText(document, "library") || !IsListOf(document, "objects", IsChange)
        || !IsListOf(document, "removedFiles", IsRemoval)) {
        *fault = QStringLiteral("it is damaged, or not a list of changes");
        return ordered_json();
    }
    QString const library = QString::fromStdString(document["library"].get<std::string>());
    if (library != libraryFolder) {
        *fault = QStringLiteral("it is of another library, %1").arg(library);
        return ordered_json();
    }
    return document;
}

int CountUnsavedChanges(ordered_json const& document)
{
    return int(document["objects"].size() + document["removedFiles"].size());
}

} // namespace embeddedhost
