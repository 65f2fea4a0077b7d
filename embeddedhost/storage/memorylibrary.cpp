#include "storage/memorylibrary.h"

#include "base/text8.h"
#include "model/graphjson.h"
#include "model/graphwriter.h"
#include "model/library.h"
#include "storage/faults.h"
#include "storage/objectformat.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <exception>
#include <utility>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

char const* const kPanelCategory = "ApplicationTags";

/// Marks a saved item, in place of the digest of its file.
QByteArray GetSavedDigest()
{
    return QByteArrayLiteral("saved");
}

QString ShownText(std::string const& utf8)
{
    return Shorten(QString::fromStdString(utf8));
}

/// Counted from 1.
QString ShownPlace(std::vector<MemoryItem> const& items, MemoryItem const& item)
{
    return QString::number(&item - items.data() + 1);
}

QString FindTextFault(char const* what, std::string const& text)
{
    QString const subject = QStringLiteral("the %1 ").arg(QLatin1String(what));
    if (text.find('\0') != std::string::npos)
        return subject + QStringLiteral("has a zero byte");
    if (!IsUtf8(text))
        return subject + QStringLiteral("is not UTF-8");
    if (IsTooLong(text))
        return subject + QStringLiteral("is longer than %1 characters").arg(kMaxTextLength);
    return QString();
}

QString FindNeededTextFault(char const* what, std::string const& text)
{
    return text.empty() ? QStringLiteral("the %1 is empty").arg(QLatin1String(what))
                        : FindTextFault(what, text);
}

QString FindKindFault(std::string const& kind)
{
    if (FindItemKind(kind))
        return QString();
    return QStringLiteral("the kind \"%1\" is not known, it must be one of %2")
        .arg(ShownText(kind), QLatin1String(GetKindList()));
}

QString FindTagsFault(MemoryItem const& item)
{
    QString fault = FindTextFault("tag text", item.tags);
    for (auto const& [category, tags] : item.otherTags) {
        if (fault.isEmpty() && category == kPanelCategory)
            fault = QStringLiteral("the other tags have the category \"%1\", which is that of its "
                                   "tags")
                        .arg(QLatin1String(kPanelCategory));
        if (fault.isEmpty())
            fault = FindTextFault("tag category", category);
        if (fault.isEmpty())
            fault = FindTextFault("tag text", tags);
    }
    return fault;
}

/// Parts of the graph that would be left out when the object is read again.
QString FindGraphFault(ordered_json const& object)
{
    QString fault;
    ReadGraphBody(object, [&](std::string const& key, std::string const& reason) {
        if (fault.isEmpty())
            fault = ShownText(key + ' ' + reason);
    });
    return fault;
}

QString FindItemFault(MemoryItem const& item)
{
    QString fault = FindKindFault(item.kind);
    if (fault.isEmpty())
        fault = FindNeededTextFault("uid", item.uid);
    if (fault.isEmpty())
        fault = FindNeededTextFault("name", item.name);
    if (fault.isEmpty())
        fault = FindTagsFault(item);
    if (fault.isEmpty())
        fault = FindTextFault("category", item.category);
    if (fault.isEmpty())
        fault = FindTextFault("uid of its signature", item.implements);
    return fault.isEmpty() ? FindBodyFault(item.body) : fault;
}

ordered_json MakeTagsObject(MemoryItem const& item)
{
    ordered_json tags = ordered_json::object();
    if (!item.tags.empty())
        tags[kPanelCategory] = item.tags;
    for (auto const& [category, text] : item.otherTags)
        tags[category] = text;
    return tags;
}

ordered_json MakeItemObject(MemoryItem const& item)
{
    ordered_json object = {
        {Keys::kUid, item.uid}, {Keys::kKind, item.kind}, {Keys::kName, item.name}};
    auto const setText = [&](char const* key, std::string const& text) {
        if (!text.empty())
            SetKey(object, key, text);
    };
    auto const setFlag = [&](char const* key, bool isSet) {
        if (isSet)
            SetKey(object, key, true);
    };
    setText(Keys::kCategory, item.category);
    setText(Keys::kImplements, item.implements);
    setFlag(Keys::kSignature, item.isSignature);
    setFlag(Keys::kLoop, item.isLoop);
    setFlag(Keys::kReadOnly, item.isReadOnly);
    if (ordered_json tags = MakeTagsObject(item); !tags.empty())
        SetKey(object, Keys::kTags, std::move(tags));
    WriteGraphBody(item.body, object);
    return object;
}

MemoryItem MakeMemoryItem(ItemObject const& object)
{
    ListedObject const listed = ListObject(object);
    MemoryItem item;
    item.kind = listed.kind;
    item.uid = listed.uid;
    item.name = listed.name;
    item.category = listed.category;
    item.implements = listed.implements;
    item.isSignature = listed.isSignature;
    item.isLoop = listed.isLoop;
    item.isReadOnly = listed.isLocked;
    for (auto const& [category, text] : listed.tags) {
        bool const isShown = category == kPanelCategory;
        (isShown ? item.tags : item.otherTags[std::string(category)]) = text;
    }
    item.body = ReadGraphBody(object, [](std::string const&, std::string const&) {
        // Reported when the library was read.
    });
    return item;
}

/// A snapshot of what a save hands over, to mark as saved when it has succeeded.
class SavedState
{
public:
    explicit SavedState(CLibrary const& library)
    {
        for (auto const& file : library.GetFiles()) {
            for (LibraryFile::Entry const& entry : file->entries) {
                if (entry.item && entry.item->IsModified())
                    m_Objects.emplace_back(entry.item->GetIdentity().uid, entry.item->GetObject());
            }
            m_Files.emplace_back(file.get(), !file->entries.empty());
        }
    }

    /// The library is still open. Later changes stay unsaved.
    void NoteSaved(CLibrary& library)
    {
        for (auto& [uid, object] : m_Objects) {
            if (CLibraryItem* const item = library.FindItem(uid.c_str()))
                item->SetSavedObject(std::move(object));
        }
        for (auto const& [file, hadItem] : m_Files) {
            file->digest = hadItem ? GetSavedDigest() : QByteArray();
            // Modified only if its item was added or removed during the save.
            file->hasOtherEntries = file->entries.empty() == hadItem;
        }
    }

private:
    std::vector<std::pair<std::string, ordered_json>> m_Objects;
    /// Whether there was an item in it. Files live as long as the library is open.
    std::vector<std::pair<LibraryFile*, bool>> m_Files;
};

/// Why the items could not be saved; empty when they were.
QString CallStore(MemoryStore& store, std::vector<MemoryItem> const& items)
{
    if (!store.save)
        return QStringLiteral("it has no folder, and the program did not say how to save it");
    if (store.isSaving)
        return QStringLiteral("it is being saved already");
    QScopedValueRollback<bool> const saving(store.isSaving, true);
    try {
        return store.save(items);
    } catch (std::exception const& error) {
        QString const reason = QString::fromUtf8(error.what());
        return reason.isEmpty() ? QStringLiteral("an unknown failure") : reason;
    } catch (...) {
        return QStringLiteral("an unknown failure");
    }
}

} // namespace

std::optional<MemoryObjects> MakeMemoryObjects(std::vector<MemoryItem> const& items, QString* fault)
{
    MemoryObjects objects;
    objects.reserve(items.size());
    UidMap<MemoryItem const> known;
    for (MemoryItem const& item : items) {
        *fault = FindItemFault(item);
        if (fault->isEmpty()) {
            objects.push_back(MakeItemObject(item));
            *fault = FindGraphFault(objects.back());
        }
        MemoryItem const* const other = fault->isEmpty() ? known.Find(item.uid.c_str()) : nullptr;
        if (other)
            *fault = QStringLiteral("the uid %1 is that of item %2 already")
                         .arg(ShownText(item.uid), ShownPlace(items, *other));
        if (!fault->isEmpty()) {
            *fault = QStringLiteral("item %1 (\"%2\"): %3")
                         .arg(ShownPlace(items, item), ShownText(item.name), *fault);
            return std::nullopt;
        }
        known.Insert(item.uid.c_str(), &item);
    }
    return objects;
}

std::shared_ptr<CLibrary> MakeMemoryLibrary(QString const& name, MemoryObjects objects,
                                            MemoryStore const& store, CMessageChannel& messages)
{
    auto library = std::make_shared<CLibrary>(QString(), name, messages);
    library->SetMemoryStore(std::make_shared<MemoryStore>(store));
    DataSourcePtr const source(new CDataSource({std::string(), ToText8(name), QString(), false,
                                                std::string(), GetFormatOfNewFiles().GetSuffix()}));
    library->AddSource(source);
    for (ordered_json& object : objects) {
        QString const path = QString::fromStdString(GetUid(object));
        LibraryFile& file = library->AddFile({path, source, false, {}, GetSavedDigest()});
        file.entries.push_back({&library->AddItem(file, std::move(object)), ordered_json()});
    }
    return library;
}

std::vector<MemoryItem> ListItems(CLibrary const& library)
{
    std::vector<MemoryItem> items;
    items.reserve(library.GetItemCount());
    for (auto const& file : library.GetFiles()) {
        for (LibraryFile::Entry const& entry : file->entries) {
            if (entry.item)
                items.push_back(MakeMemoryItem(entry.item->CopyObject()));
        }
    }
    return items;
}

SaveResult SaveMemoryLibrary(CLibrary& library)
{
    SaveResult result;
    auto const& files = library.GetFiles();
    if (std::none_of(files.begin(), files.end(),
                     [](auto const& file) { return file->IsModified(); }))
        return result;
    // Taken before the call, in which the library may be closed.
    tarno::datamodel::ItemLibraryAccessor const kept = library.GetAccessor();
    std::shared_ptr<MemoryStore> const store = library.GetMemoryStore();
    QString const name = library.GetName();
    SavedState state(library);
    QString const reason = CallStore(*store, ListItems(library));
    if (!reason.isEmpty())
        result.failures.push_back(QStringLiteral("\"%1\" was not saved: %2.").arg(name, reason));
    else if (kept.Revalidate())
        state.NoteSaved(library);
    return result;
}

} // namespace embeddedhost
