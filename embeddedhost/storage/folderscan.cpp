#include "storage/folderscan.h"

#include <QDir>
#include <QFileInfo>

namespace embeddedhost {

namespace {

class FolderScan
{
public:
    FolderScan(QString const& libraryFolder, FaultReporter const& faults)
        : m_LibraryFolder(libraryFolder)
        , m_Faults(faults)
    {
    }

    void Visit(QString const& folder)
    {
        QDir const dir(folder);
        if (!dir.isReadable()) {
            Report(folder, QStringLiteral("the folder cannot be read; its files are left out."));
            return;
        }
        auto const entries = dir.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot
                                                   | QDir::System,
                                               QDir::Name);
        for (QFileInfo const& entry : entries) {
            if (entry.isDir())
                VisitFolder(entry);
            else if (entry.fileName().endsWith(QLatin1String(".json")))
                VisitFile(entry);
        }
    }

    QStringList const& GetFiles() const
    {
        return m_Files;
    }

private:
    void VisitFolder(QFileInfo const& entry)
    {
        if (entry.isSymLink()) {
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
        if (!entry.isFile()) {
            Report(entry.filePath(), QStringLiteral("there is no file behind the name."));
        } else if (isLink && !IsWithin(m_LibraryFolder, entry.canonicalFilePath())) {
            Report(entry.filePath(), QStringLiteral("the link leads out of the library folder; "
                                                    "the file is left out."));
        } else if (entry.filePath() != m_LibraryFolder + QLatin1String("/library.json")) {
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

bool IsWithin(QString const& folder, QString const& path)
{
    return path == folder || path.startsWith(folder.endsWith('/') ? folder : folder + '/');
}

QString GetShownPath(QString const& libraryFolder, QString const& path)
{
    return QDir(libraryFolder).relativeFilePath(path);
}

QStringList ListJsonFiles(QString const& libraryFolder, QString const& sourceFolder,
                          FaultReporter const& faults)
{
    FolderScan scan(libraryFolder, faults);
    scan.Visit(sourceFolder);
    return scan.GetFiles();
}

} // namespace embeddedhost
