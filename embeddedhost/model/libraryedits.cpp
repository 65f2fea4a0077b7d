#include "model/libraryedits.h"

#include "base/text8.h"
#include "model/graphwriter.h"
#include "model/librarycommands.h"
#include "model/libraryitem.h"

#include <QFileInfo>
#include <QHash>
#include <QStringList>
#include <QUuid>

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

QString Shown(char const* text)
{
    return FromText8(text);
}

bool Refuse(CLibrary& library, QString const& reason)
{
    library.GetMessages().Post(eSeverity::kWarning, reason);
    return false;
}

bool CheckWritable(CLibrary& library, CLibraryItem const& item, QString const& change)
{
    if (!item.IsReadOnly())
        return true;
    QString const reason = item.IsLocked()
                               ? QStringLiteral("it is marked as read-only")
                               : QStringLiteral("its data source \"%1\" is read-only")
                                     .arg(Shown(item.GetSource()->GetDescription().name.c_str()));
    return Refuse(
        library,
        QStringLiteral("Cannot %1 \"%2\": %3.").arg(change, Shown(item.GetName()), reason));
}

/// Longer texts would not be read again.
QString GetTooLong(QString const& text)
{
    return QStringLiteral("The %1 is longer than %2 characters. Nothing was changed.")
        .arg(text)
        .arg(kMaxTextLength);
}

/// `item` gets the name; null for a new item.
bool CheckName(CLibrary& library, CLibraryItem const* item, char const* name)
{
    if (!*name)
        return Refuse(library, QStringLiteral("The name is empty. Nothing was changed."));
    if (IsTooLong(ToUtf8(name)))
        return Refuse(library, GetTooLong(QStringLiteral("name")));
    bool const isOwnName =
        item && EqualIgnoringAsciiCase(item->GetName(), ToKeptText8(name).c_str());
    if (isOwnName || !library.HasName(name))
        return true;
    return Refuse(
        library,
        QStringLiteral("The name \"%1\" is used already. Choose another one.").arg(Shown(name)));
}

/// The maximum length without number and suffix; encrypted file systems allow the shortest names.
constexpr int kLongestFileName = 120;

/// A file name made from the item's: lower case, letters and digits of ASCII, else "-".
QString MakeFileName(char const* name)
{
    QString const plain = Shown(name).normalized(QString::NormalizationForm_KD).toLower();
    QString fileName;
    for (QChar const character : plain) {
        if (character.unicode() < 128 && character.isLetterOrNumber())
            fileName += character;
        else if (character.unicode() < 128 && !fileName.isEmpty()
                 && !fileName.endsWith(QLatin1Char('-')))
            fileName += QLatin1Char('-');
    }
    fileName.truncate(kLongestFileName);
    while (fileName.endsWith(QLatin1Char('-')))
        fileName.chop(1);
    return fileName.isEmpty() ? QStringLiteral("item") : fileName;
}

/// Implementations start with the ports of their signature.
bool CopySignature(CLibrary& library, char const* signatureUid, ordered_json& object)
{
    CLibraryItem const* const signature = library.FindItem(signatureUid);
    if (!signature || !signature->IsSignature())
        return Refuse(library, QStringLiteral("There is no signature with the uid %1 any more. "
                                              "Nothing was created.")
                                   .arg(Shown(signatureUid)));
    SetKey(object, Keys::kImplements, signatureUid);
    for (char const* const key : {Keys::kInputs, Keys::kOutputs}) {
        if (signature->GetObject().contains(key))
            SetKey(object, key, signature->GetObject()[key]);
    }
    return true;
}

ordered_json MakeObject(NewCompound const& compound)
{
    ordered_json object = ordered_json::object();
    object[Keys::kUid] = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
    object[Keys::kKind] = tarno::datamodel::TarnoType::gCompound;
    object[Keys::kName] = ToUtf8(compound.name);
    if (*compound.category)
        object[Keys::kCategory] = ToUtf8(compound.category);
    if (compound.isSignature)
        object[Keys::kSignature] = true;
    if (compound.isLoop)
        object[Keys::kLoop] = true;
    return object;
}

/// The key of the tags that CLibraryItem::GetTags returns, or the one that new tags get; UTF-8.
std::string FindCategory(ordered_json const& tags, char const* category)
{
    std::string const kept = ToKeptText8(category);
    for (auto const& [key, text] : tags.items()) {
        if (text.is_string() && ToText8(key) == kept)
            return key;
    }
    return ToUtf8(category);
}

/// The new tags as UTF-8. The 8-bit texts have "?" for a letter that Latin-1 lacks, also on their
/// way back: tags that match one of the item's this way keep its letters.
std::string KeepLetters(char const* tags, std::string const& previous)
{
    QHash<QString, QStringList> previousByShown;
    for (QString const& part : QString::fromStdString(previous).split(QLatin1Char(';'))) {
        QString const tag = part.trimmed();
        QString const shown = FromText8(ToText8(tag).c_str());
        if (shown != tag)
            previousByShown[shown] << tag;
    }
    if (previousByShown.isEmpty())
        return ToUtf8(tags);
    QStringList parts = Shown(tags).split(QLatin1Char(';'));
    parts.removeDuplicates();
    QStringList kept;
    for (QString const& part : parts)
        kept << previousByShown.value(part.trimmed(), QStringList(part));
    return kept.join(QLatin1Char(';')).toStdString();
}

void ChangeObject(CLibrary& library, CLibraryItem const& item, ordered_json changed,
                  std::string const& text, wek::fwk::ICommandManager* manager)
{
    RunCommand(new CChangeObjectCommand(library, item, std::move(changed), text), manager);
}

} // namespace

DataSourcePtr FindWritableSource(CLibrary const& library)
{
    auto const& sources = library.GetSources();
    auto const found = std::find_if(sources.begin(), sources.end(), [](DataSourcePtr const& s) {
        return s->GetAccessMode() != qorm::IDataSource::kReadOnlyAccess;
    });
    return found == sources.end() ? nullptr : *found;
}

QString FindFreePath(CLibrary const& library, DataSourcePtr const& source, char const* name)
{
    QString const stem = source->GetDescription().folder + QLatin1Char('/') + MakeFileName(name);
    QString const& suffix = source->GetDescription().fileSuffix;
    QString path = stem + suffix;
    // QFileInfo::exists is false for a dangling link.
    auto const isTaken = [&] {
        if (library.FindFile(path))
            return true;
        QFileInfo const file(path);
        return !library.IsInMemory() && (file.exists() || file.isSymLink());
    };
    for (int number = 2; isTaken(); ++number)
        path = QStringLiteral("%1-%2%3").arg(stem).arg(number).arg(suffix);
    return path;
}

CLibraryItem* CreateCompound(CLibrary& library, NewCompound const& compound,
                             wek::fwk::ICommandManager* manager)
{
    if (!CheckName(library, nullptr, compound.name))
        return nullptr;
    if (IsTooLong(ToUtf8(compound.category))) {
        Refuse(library, GetTooLong(QStringLiteral("category")));
        return nullptr;
    }
    DataSourcePtr const source = FindWritableSource(library);
    if (!source) {
        Refuse(library, QStringLiteral("Cannot create \"%1\": every data source of the library "
                                       "is read-only.")
                            .arg(Shown(compound.name)));
        return nullptr;
    }
    ordered_json object = MakeObject(compound);
    bool const implements = compound.signatureUid && *compound.signatureUid;
    if (implements && !CopySignature(library, compound.signatureUid, object))
        return nullptr;

    std::string const uid = GetUid(object);
    tarno::datamodel::ItemLibraryAccessor const kept = library.GetAccessor();
    RunCommand(new CAddItemCommand(library, source, FindFreePath(library, source, compound.name),
                                   std::move(object), std::string("Create ") + compound.name),
               manager);
    // A listener may have closed the library.
    return kept.Revalidate() ? library.FindItem(uid.c_str()) : nullptr;
}

bool RenameItem(CLibrary& library, CLibraryItem& item, char const* name,
                wek::fwk::ICommandManager* manager)
{
    if (!CheckWritable(library, item, QStringLiteral("rename")) || !CheckName(library, &item, name))
        return false;
    // An equal name makes no command: undoing it would change nothing.
    if (item.GetName() == ToKeptText8(name))
        return true;
    ordered_json changed = item.GetObject();
    SetKey(changed, Keys::kName, ToUtf8(name));
    ChangeObject(library, item, std::move(changed), std::string("Rename ") + item.GetName(),
                 manager);
    return true;
}

bool SetItemTags(CLibrary& library, CLibraryItem& item, char const* category, char const* tags,
                 wek::fwk::ICommandManager* manager)
{
    if (!CheckWritable(library, item, QStringLiteral("tag")))
        return false;
    if (item.GetTags(ToKeptText8(category).c_str()) == ToKeptText8(tags))
        return true;
    ordered_json changed = item.GetObject();
    ordered_json all = changed.value(Keys::kTags, ordered_json::object());
    // A library file may have any value there; the reader has reported it.
    if (!all.is_object())
        all = ordered_json::object();
    std::string const key = FindCategory(all, category);
    auto const previous = all.find(key);
    bool const hasText = previous != all.end() && previous->is_string();
    std::string const kept = KeepLetters(tags, hasText ? previous->get<std::string>() : "");
    if (IsTooLong(key) || IsTooLong(kept))
        return Refuse(library, GetTooLong(QStringLiteral("tag text")));
    if (*tags)
        all[key] = kept;
    else
        all.erase(key);
    if (all.empty())
        changed.erase(Keys::kTags);
    else
        SetKey(changed, Keys::kTags, std::move(all));
    ChangeObject(library, item, std::move(changed), std::string("Tag ") + item.GetName(), manager);
    return true;
}

bool SetItemBody(CLibrary& library, CLibraryItem& item, GraphBody const& body,
                 std::string const& text, wek::fwk::ICommandManager* manager)
{
    if (!CheckWritable(library, item, QStringLiteral("change")))
        return false;
    QString const fault = FindBodyFault(body);
    if (!fault.isEmpty())
        return Refuse(library, QStringLiteral("Cannot change \"%1\": %2. Nothing was changed.")
                                   .arg(Shown(item.GetName()), fault));
    ordered_json changed = item.GetObject();
    WriteGraphBody(body, changed);
    if (changed != item.GetObject())
        ChangeObject(library, item, std::move(changed), text, manager);
    return true;
}

} // namespace embeddedhost
