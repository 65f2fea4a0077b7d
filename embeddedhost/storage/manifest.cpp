#include "storage/manifest.h"

#include "base/text8.h"
#include "storage/folderscan.h"
#include "storage/jsonformat.h"
#include "storage/parsedfile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

constexpr int kFormatVersion = 1;

namespace ManifestKeys {
constexpr char const* kFormat = "format";
constexpr char const* kName = "name";
constexpr char const* kDataSources = "dataSources";
// A data source has these and kName.
constexpr char const* kUid = "uid";
constexpr char const* kPath = "path";
constexpr char const* kAccess = "access";
constexpr char const* kComponent = "component";
} // namespace ManifestKeys

constexpr char const* kReadWrite = "read-write";
constexpr char const* kReadOnly = "read-only";

/// Null unless the object has a text under the key that is neither empty nor too long.
std::string const* FindText(ordered_json const& object, char const* key)
{
    auto const found = object.find(key);
    if (found == object.end() || !found->is_string())
        return nullptr;
    auto const& text = found->get_ref<std::string const&>();
    return text.empty() || IsTooLong(text) ? nullptr : &text;
}

/// Reads the data sources one after the other.
class SourcesReader
{
public:
    SourcesReader(QString const& libraryFolder, FaultReporter const& faults)
        : m_LibraryFolder(libraryFolder)
        , m_Faults(faults)
    {}

    void Read(ordered_json const& source)
    {
        m_Place = kManifestName + QStringLiteral(", data source %1").arg(++m_Number);
        if (!source.is_object()) {
            Report("it must be an object; it is left out.");
            return;
        }
        CDataSource::Description description;
        description.fileSuffix = GetFormatOfNewFiles().GetSuffix();
        if (!ReadUid(source, description) || !ReadFolder(source, description))
            return;
        ReadName(source, description);
        ReadAccess(source, description);
        ReadComponent(source, description);
        m_Sources.push_back(description);
    }

    std::vector<CDataSource::Description> const& GetSources() const
    {
        return m_Sources;
    }

private:
    bool ReadUid(ordered_json const& source, CDataSource::Description& description)
    {
        std::string const* const uid = FindText(source, ManifestKeys::kUid);
        if (!uid || !qorm::DbObjectId::IsUID(uid->c_str())) {
            Report("key \"uid\": a UID like 01234567-89AB-CDEF-0123-456789ABCDEF is needed; the "
                   "data source is left out.");
            return false;
        }
        description.uid = *uid;
        return ClaimUid(*uid, ManifestKeys::kUid);
    }

    void ReadComponent(ordered_json const& source, CDataSource::Description& description)
    {
        if (!source.contains(ManifestKeys::kComponent))
            return;
        std::string const* const uid = FindText(source, ManifestKeys::kComponent);
        if (!uid || !qorm::DbObjectId::IsUID(uid->c_str()))
            Report("key \"component\": it must be a UID; it is ignored.");
        else if (ClaimUid(*uid, ManifestKeys::kComponent))
            description.component = *uid;
    }

    bool ClaimUid(std::string const& uid, char const* key)
    {
        qorm::UID const claimed(uid.c_str());
        if (std::find(m_Uids.begin(), m_Uids.end(), claimed) != m_Uids.end()) {
            Report(QStringLiteral("key \"%1\": the uid %2 is used above already; give it one of "
                                  "its own.")
                       .arg(QLatin1String(key), QString::fromStdString(uid)));
            return false;
        }
        m_Uids.push_back(claimed);
        return true;
    }

    bool ReadFolder(ordered_json const& source, CDataSource::Description& description)
    {
        std::string const* const path = FindText(source, ManifestKeys::kPath);
        if (!path) {
            Report("key \"path\": a path relative to the library folder is needed; the data "
                   "source is left out.");
            return false;
        }
        QString const given = QString::fromStdString(*path);
        QFileInfo const folder(QDir(m_LibraryFolder), given);
        QString const canonical = folder.canonicalFilePath();
        // The path as it is written, and the real one: a link may lead out of the library folder.
        if (QDir::isAbsolutePath(given) || !IsWithin(m_LibraryFolder, WithoutDots(folder))
            || !(canonical.isEmpty() || IsWithin(m_LibraryFolder, canonical))) {
            ReportPath(given, "leads out of the library folder");
            return false;
        }
        if (!folder.isDir()) {
            ReportPath(given, "is no folder");
            return false;
        }
        description.folder = canonical;
        return IsApart(canonical, given);
    }

    static QString WithoutDots(QFileInfo const& path)
    {
        return QDir::cleanPath(path.absoluteFilePath());
    }

    /// A file belongs to one data source only.
    bool IsApart(QString const& folder, QString const& given)
    {
        for (auto const& other : m_Sources) {
            if (IsWithin(other.folder, folder) || IsWithin(folder, other.folder)) {
                ReportPath(given, "overlaps with the folder of another data source");
                return false;
            }
        }
        return true;
    }

    void ReadName(ordered_json const& source, CDataSource::Description& description)
    {
        std::string const* const name = FindText(source, ManifestKeys::kName);
        if (!name)
            Report("key \"name\": a text is needed; the folder's name is shown instead.");
        description.name =
            ToText8(name ? *name : QFileInfo(description.folder).fileName().toStdString());
    }

    void ReadAccess(ordered_json const& source, CDataSource::Description& description)
    {
        std::string const* const access = FindText(source, ManifestKeys::kAccess);
        description.isReadOnly = !access || *access != kReadWrite;
        if (description.isReadOnly && (!access || *access != kReadOnly)) {
            Report("key \"access\": it must be \"read-write\" or \"read-only\"; the data source "
                   "is taken as read-only.");
        }
    }

    void ReportPath(QString const& path, char const* reason) const
    {
        Report(QStringLiteral("key \"path\": \"%1\" %2; the data source is left out.")
                   .arg(path, QLatin1String(reason)));
    }

    void Report(QString const& reason) const
    {
        m_Faults.Report(m_Place, reason);
    }
    void Report(char const* reason) const
    {
        Report(QString::fromLatin1(reason));
    }

    QString const m_LibraryFolder;
    FaultReporter const& m_Faults;
    int m_Number = 0;
    QString m_Place;
    std::vector<qorm::UID> m_Uids;
    std::vector<CDataSource::Description> m_Sources;
};

/// Why the manifest cannot be used at all; empty if it can.
QString FindFatalFault(ordered_json const& manifest)
{
    if (!manifest.is_object())
        return QStringLiteral("the file must hold an object.");
    auto const format = manifest.find(ManifestKeys::kFormat);
    if (format == manifest.end() || !format->is_number_integer())
        return QStringLiteral("key \"format\": the format version, a whole number, is needed.");
    if (*format != kFormatVersion) {
        return QStringLiteral("key \"format\": version %1 is not known; this program reads "
                              "version %2.")
            .arg(QString::fromStdString(format->dump()))
            .arg(kFormatVersion);
    }
    auto const sources = manifest.find(ManifestKeys::kDataSources);
    if (sources == manifest.end() || !sources->is_array())
        return QStringLiteral("key \"dataSources\": an array is needed.");
    return QString();
}

} // namespace

QString const kManifestName = QStringLiteral("library.json");

QString GetManifestPath(QString const& folder)
{
    return folder + QLatin1Char('/') + kManifestName;
}

bool HasManifest(QString const& folder)
{
    return QFileInfo::exists(GetManifestPath(folder));
}

std::optional<Manifest> ReadManifest(QString const& folder, FaultReporter const& faults)
{
    ParsedFile const file = ParseFile(GetManifestPath(folder), folder, GetJsonFormat());
    QString const fault = file.fault.isEmpty() ? FindFatalFault(file.content) : file.fault;
    if (!fault.isEmpty()) {
        faults.ReportFatal(JoinPlace(GetManifestPath(folder), file.faultPlace), fault);
        return std::nullopt;
    }
    for (QString const& place : file.repeatedKeys)
        faults.Report(JoinPlace(kManifestName, place),
                      QStringLiteral("the key is there more than once; the last value counts."));
    std::string const* const name = FindText(file.content, ManifestKeys::kName);
    if (!name) {
        faults.Report(kManifestName, QStringLiteral("key \"name\": a text is needed; the "
                                                    "folder's name is shown instead."));
    }
    SourcesReader sources(folder, faults);
    for (ordered_json const& source : file.content[ManifestKeys::kDataSources])
        sources.Read(source);
    return Manifest{name ? QString::fromStdString(*name) : QFileInfo(folder).fileName(),
                    sources.GetSources()};
}

QByteArray MakeManifest(NewLibrary const& library)
{
    ordered_json sources = ordered_json::array();
    for (NewLibrary::DataSource const& source : library.sources) {
        ordered_json entry = {{ManifestKeys::kUid, source.uid},
                              {ManifestKeys::kName, source.name},
                              {ManifestKeys::kPath, source.path},
                              {ManifestKeys::kAccess, source.isReadOnly ? kReadOnly : kReadWrite}};
        if (!source.component.empty())
            entry[ManifestKeys::kComponent] = source.component;
        sources.push_back(std::move(entry));
    }
    ordered_json const manifest = {{ManifestKeys::kFormat, kFormatVersion},
                                   {ManifestKeys::kName, library.name},
                                   {ManifestKeys::kDataSources, std::move(sources)}};
    // Replaces invalid UTF-8, as a save does.
    return QByteArray::fromStdString(
        manifest.dump(4, ' ', false, ordered_json::error_handler_t::replace) + '\n');
}

} // namespace embeddedhost
