#include "storage/folderscan.h"

#include "storage/manifest.h"
#include "storage/objectformat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <type_traits>

namespace embeddedhost {

namespace {

/// A name with each byte that is not ASCII as "\\xE9".
QString Escape(QByteArray const& name)
{
    QString text;
    for (char const byte : name) {
        if (byte >= ' ' && byte <= '~')
            text += QLatin1Char(byte);
        else
            text += QStringLiteral("\\x%1").arg(uint(uchar(byte)), 2, 16, QLatin1Char('0'));
    }
    return text;
}

class FolderScan
{
public:
    FolderScan(QString const& libraryFolder, FaultReporter const& faults)
        : m_LibraryFolder(libraryFolder)
        , m_Faults(faults)
    {}

    void Visit(QString const& folder)
    {
        QDir const dir(folder);
        if (!dir.isReadable()) {
            Report(folder, QStringLiteral("the folder cannot be read; its files are left out."));
            return;
        }
        auto const entries = dir.entryInfoList(
            QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name);
        ReportLostNames(folder);
        for (QFileInfo const& entry : entries) {
            if (entry.isDir())
                VisitFolder(entry);
            else if (IsObjectFile(entry.fileName()))
                VisitFile(entry);
        }
    }

    QStringList const& GetFiles() const
    {
        return m_Files;
    }

private:
    /// The toolkit does not list names that it cannot make a text of. Where the system's names are
    /// wide characters there are none.
    void ReportLostNames(QString const& folder) const
    {
        if constexpr (!std::is_same_v<std::filesystem::path::value_type, char>)
            return;
        std::error_code error;
        std::filesystem::directory_iterator const entries(QFile::encodeName(folder).toStdString(),
                                                          error);
        for (std::filesystem::directory_entry const& entry : entries) {
            QByteArray const name = QByteArray::fromStdString(entry.path().filename().string());
            bool const isWanted =
                IsObjectFile(QString::fromLatin1(name)) || entry.is_directory(error);
            if (isWanted && QFile::encodeName(QFile::decodeName(name)) != name)
                Report(folder + QLatin1Char('/') + Escape(name),
                       QStringLiteral("the name is not UTF-8; what it names is left out. Give it "
                                      "another name."));
        }
    }

    void VisitFolder(QFileInfo const& entry)
    {
        if (!IsRealFolder(entry.filePath())) {
            Report(entry.filePath(),
                   QStringLiteral("the link to a folder is not followed; put the files into the "
                                  "data source's folder instead."));
        } else {
            Visit(entry.filePath());
        }
    }

    void VisitFile(QFileInfo const& entry)
    {
        bool const isLink = entry.isSymLink();
        if (!entry.exists()) {
            Report(entry.filePath(), QStringLiteral("there is no file behind the name."));
        } else if (!entry.isFile()) {
            Report(entry.filePath(), QStringLiteral("it is not a regular file; it is left out."));
        } else if (isLink && !IsWithin(m_LibraryFolder, entry.canonicalFilePath())) {
            Report(entry.filePath(), QStringLiteral("the link leads out of the library folder; "
                                                    "the file is left out."));
        } else if (entry.filePath() != GetManifestPath(m_LibraryFolder)) {
            m_Files.push_back(entry.filePath());
        }
    }

    void Report(QString const& path, QString const& reason) const
    {
        m_Faults.Report(GetShownPath(m_LibraryFolder, path), reason);
    }

    QString const m_LibraryFolder;
    FaultReporter const& m_Faults;
    QStringList m_Files;
};

} // namespace

bool LiesInReadOnlySource(std::vector<DataSourcePtr> const& sources, QString const& realPath)
{
    return std::any_of(sources.begin(), sources.end(), [&](DataSourcePtr const& source) {
        CDataSource::Description const& description = source->GetDescription();
        return description.isReadOnly && IsWithin(description.folder, realPath);
    });
}

bool IsWithin(QString const& folder, QString const& path)
{
    return path == folder || path.startsWith(folder.endsWith('/') ? folder : folder + '/');
}

bool IsRealFolder(QString const& folder)
{
    QFileInfo const info(folder);
    return info.isDir() && info.canonicalFilePath() == folder;
}

QString GetShownPath(QString const& libraryFolder, QString const& path)
{
    return QDir(libraryFolder).relativeFilePath(path);
}

QStringList ListObjectFiles(QString const& libraryFolder, QString const& sourceFolder,
                            FaultReporter const& faults)
{
    FolderScan scan(libraryFolder, faults);
    scan.Visit(sourceFolder);
    return scan.GetFiles();
}

} // namespace embeddedhost
