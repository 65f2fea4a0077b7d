#include "storage/libraryreader.h"

#include "model/library.h"
#include "model/libraryitem.h"
#include "storage/fileobjects.h"
#include "storage/folderscan.h"
#include "storage/jsonfile.h"
#include "storage/manifest.h"

#include <QFileInfo>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Fills a library from its files.
class LibraryReader
{
public:
    LibraryReader(CLibrary& library, FaultReporter const& faults)
        : m_Library(library)
        , m_Faults(faults)
    {}

    void AddSources(std::vector<CDataSource::Description> const& descriptions)
    {
        for (CDataSource::Description const& description : descriptions) {
            DataSourcePtr const source(new CDataSource(description));
            m_Library.AddSource(source);
            m_Library.GetDatabase().AddResource(source);
            if (!description.component.empty())
                m_Library.GetDatabase().AddComponent(source, description.component);
        }
    }

    void ListFiles()
    {
        for (DataSourcePtr const& source : m_Library.GetSources()) {
            auto const paths =
                ListJsonFiles(m_Library.GetFolder(), source->GetDescription().folder, m_Faults);
            for (QString const& path : paths)
                m_Files.push_back({path, source});
        }
    }

    void ReadFiles(ReadProgress const& progress)
    {
        int const total = int(m_Files.size());
        for (int done = 0; done < total; ++done) {
            if (progress)
                progress(done, total);
            ReadFile(m_Files[std::size_t(done)]);
        }
        if (progress)
            progress(total, total);
    }

    /// An item that refers to one that is not there may be hidden or miss its signature.
    void CheckReferences()
    {
        for (KindIndex kind = 0; kind < kKindCount; ++kind) {
            for (CLibraryItem const* item : m_Library.GetItems(kind)) {
                for (char const* key : {"parent", "specializes", "implements"})
                    CheckReference(*item, key);
            }
        }
    }

private:
    struct SourceFile
    {
        QString path;
        DataSourcePtr source;
    };

    void ReadFile(SourceFile const& file)
    {
        m_ShownPath = GetShownPath(m_Library.GetFolder(), file.path);
        m_ObjectNumber = 0;
        JsonFile json = ReadJsonFile(file.path, m_Library.GetFolder());
        if (!json.fault.isEmpty()) {
            m_Faults.Report(JoinPlace(m_ShownPath, json.faultPlace), json.fault);
            return;
        }
        ReportRepeatedKeys(json.repeatedKeys);
        bool const isArray = json.content.is_array();
        if (!isArray && !json.content.is_object()) {
            m_Faults.Report(m_ShownPath, QStringLiteral("the file must hold an object or an array "
                                                        "of objects; it is left out."));
            return;
        }
        LibraryFile& target = m_Library.AddFile({file.path, file.source, isArray, {}, json.digest});
        CheckRealPlace(target, json.realPath);
        if (!isArray) {
            ReadObject(target, json.content);
            return;
        }
        target.entries.reserve(json.content.size());
        for (ordered_json& object : json.content) {
            ++m_ObjectNumber;
            ReadObject(target, object);
        }
    }

    void ReadObject(LibraryFile& file, ordered_json& object)
    {
        auto const isTaken = [this](char const* uid) {
            return m_Library.HasUid(uid);
        };
        auto const report = [this](QString const& key, QString const& reason) {
            ReportKey(GetPlace(), key, reason);
        };
        if (!MakesItem(object, isTaken, report)) {
            file.entries.push_back({nullptr, std::move(object)});
            return;
        }
        object.get_ref<ordered_json::object_t&>().shrink_to_fit();
        CLibraryItem& item = m_Library.AddItem(file, std::move(object));
        file.entries.push_back({&item, ordered_json()});
    }

    void ReportRepeatedKeys(std::vector<QString> const& places) const
    {
        for (QString const& place : places) {
            m_Faults.Report(JoinPlace(m_ShownPath, place),
                            QStringLiteral("the key is there more than once. The last value "
                                           "counts; the others are lost when the object is changed "
                                           "and saved."));
        }
    }

    void CheckRealPlace(LibraryFile& file, QString const& realPath) const
    {
        file.isReadOnly = LiesInReadOnlySource(m_Library.GetSources(), realPath);
        if (file.isReadOnly && !file.source->GetDescription().isReadOnly)
            m_Faults.Report(m_ShownPath,
                            QStringLiteral("the link leads to a file of a data source that is "
                                           "read-only; its objects cannot be changed here."));
    }

    void CheckReference(CLibraryItem const& item, char const* key)
    {
        auto const found = item.GetObject().find(key);
        if (found == item.GetObject().end() || !found->is_string())
            return;
        auto const& uid = found->get_ref<std::string const&>();
        if (uid.empty() || m_Library.FindItem(uid.c_str()))
            return;
        QString const place =
            JoinPlace(GetShownPath(m_Library.GetFolder(), item.GetFile().path),
                      QStringLiteral("object %1").arg(QString::fromUtf8(item.GetIdentity().uid)));
        ReportKey(place, QString::fromLatin1(key),
                  QStringLiteral("the library has no object %1.").arg(QString::fromStdString(uid)));
    }

    void ReportKey(QString const& place, QString const& key, QString const& reason) const
    {
        QString const part = key.isEmpty() ? QString() : QStringLiteral("key \"%1\"").arg(key);
        m_Faults.Report(JoinPlace(place, part), reason);
    }

    /// Where the object is that is being read.
    QString GetPlace() const
    {
        bool const isInArray = m_ObjectNumber > 0;
        return JoinPlace(m_ShownPath,
                         isInArray ? QStringLiteral("object %1").arg(m_ObjectNumber) : QString());
    }

    CLibrary& m_Library;
    FaultReporter const& m_Faults;
    std::vector<SourceFile> m_Files;
    /// Where the reader is, for messages.
    QString m_ShownPath;
    /// Counted from 1 in an array; 0 outside of one.
    int m_ObjectNumber = 0;
};

std::optional<Manifest> FindManifest(QString const& folder, FaultReporter const& faults)
{
    QFileInfo const info(folder);
    if (info.isDir())
        return ReadManifest(info.canonicalFilePath(), faults);
    faults.ReportFatal(folder, QStringLiteral("there is no such folder."));
    return std::nullopt;
}

} // namespace

bool CheckLibrary(QString const& folder, CMessageChannel& messages)
{
    CMessageChannel found;
    FaultReporter const faults(found);
    if (FindManifest(folder, faults))
        return true;
    for (CMessageChannel::Message const& message : found.GetLog()) {
        if (message.severity == eSeverity::kError)
            messages.Post(message.severity, message.text);
    }
    return false;
}

std::shared_ptr<CLibrary> ReadLibrary(QString const& folder, CMessageChannel& messages,
                                      ReadProgress const& progress)
{
    FaultReporter const faults(messages);
    std::optional<Manifest> const manifest = FindManifest(folder, faults);
    if (!manifest)
        return nullptr;

    auto library =
        std::make_shared<CLibrary>(QFileInfo(folder).canonicalFilePath(), manifest->name, messages);
    LibraryReader reader(*library, faults);
    reader.AddSources(manifest->sources);
    reader.ListFiles();
    reader.ReadFiles(progress);
    reader.CheckReferences();
    faults.ReportRest(library->GetFolder());
    return library;
}

} // namespace embeddedhost
