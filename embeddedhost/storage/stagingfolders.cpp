#include "storage/stagingfolders.h"

#include "base/text8.h"
#include "storage/faults.h"
#include "storage/folderscan.h"

namespace embeddedhost {

CStagingFolders::CStagingFolders(CLibrary const& library, int patience)
    : m_Library(library)
    , m_Patience(patience)
{}

QString CStagingFolders::FindRoot(QString const& realPath, QString* fault) const
{
    // Files are staged in the folder of their data source, because a rename works within one file
    // system only, and a data source may be mounted.
    for (DataSourcePtr const& source : m_Library.GetSources()) {
        CDataSource::Description const& description = source->GetDescription();
        if (!IsWithin(description.folder, realPath))
            continue;
        if (!description.isReadOnly)
            return description.folder;
        *fault = QStringLiteral("it leads into the data source \"%1\", which is read-only")
                     .arg(FromText8(description.name.c_str()));
        return QString();
    }
    return m_Library.GetFolder();
}

CStagingFolder* CStagingFolders::Get(QString const& root, QString* fault)
{
    auto found = m_Opened.find(root);
    if (found == m_Opened.end()) {
        Opened opened;
        opened.staging = CStagingFolder::Open(root, &m_Patience, &opened.fault);
        if (opened.staging)
            opened.staging->TidyUp();
        found = m_Opened.emplace(root, std::move(opened)).first;
    }
    *fault = found->second.fault;
    return found->second.staging.get();
}

QStringList CStagingFolders::DescribeKept() const
{
    QStringList kept;
    for (auto const& [root, opened] : m_Opened) {
        if (opened.staging)
            kept << opened.staging->FindKept();
    }
    QStringList sentences;
    for (QString const& path : kept.mid(0, kMaxReportedFaults)) {
        sentences << QStringLiteral("%1 holds what another program wrote while a save was at work. "
                                    "Take from it what is needed, then remove it.")
                         .arg(GetShownPath(m_Library.GetFolder(), path));
    }
    int const rest = kept.size() - sentences.size();
    if (rest > 0)
        sentences << QStringLiteral("Beside these there are %1 more such files.").arg(rest);
    return sentences;
}

void TidyUpStagingFolders(CLibrary const& library)
{
    QStringList roots{library.GetFolder()};
    for (DataSourcePtr const& source : library.GetSources()) {
        if (!source->GetDescription().isReadOnly)
            roots << source->GetDescription().folder;
    }
    CStagingFolders staging(library, 0);
    for (QString const& root : roots) {
        // On failure, another save is running, or the next save will report the reason.
        QString unsaid;
        if (CStagingFolder::IsIn(root))
            staging.Get(root, &unsaid);
    }
    QStringList const kept = staging.DescribeKept();
    for (QString const& sentence : kept)
        library.GetMessages().Post(eSeverity::kWarning, sentence);
}

} // namespace embeddedhost
