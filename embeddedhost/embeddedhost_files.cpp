// Library folders, and the files of the open one.

#include "embeddedhost_p.h"
#include "sourcecontrol/newworktree.h"
#include "storage/fileconflict.h"
#include "storage/filedigest.h"
#include "storage/folderlayout.h"
#include "storage/manifest.h"
#include "storage/unsavedchanges.h"

#include <algorithm>

using namespace embeddedhost;

bool CEmbeddedHost::Private::RequireFolder()
{
    if (library && library->IsInMemory())
        messages.Post(eSeverity::kError,
                      QStringLiteral("\"%1\" is not kept in a folder.").arg(library->GetName()));
    return library && !library->IsInMemory();
}

bool CEmbeddedHost::IsLibrary(QString const& folder)
{
    return HasManifest(folder);
}

QString CEmbeddedHost::GetManifestName()
{
    return kManifestName;
}

bool CEmbeddedHost::MakeLibrary(QString const& folder, QString* fault)
{
    return MakeLibrary(folder, MakeEmptyLibrary(folder), fault);
}

bool CEmbeddedHost::MakeLibrary(QString const& folder, NewLibrary const& library, QString* fault)
{
    return MakeLibraryFolder(folder, library, fault);
}

bool CEmbeddedHost::IsModified() const
{
    if (!m_Private->library)
        return false;
    auto const& files = m_Private->library->GetFiles();
    return std::any_of(files.begin(), files.end(),
                       [](auto const& file) { return file->IsModified(); });
}

QByteArray CEmbeddedHost::GetUnsavedChanges() const
{
    if (!m_Private->library || m_Private->library->IsInMemory())
        return QByteArray();
    return CollectUnsavedChanges(*m_Private->library);
}

bool CEmbeddedHost::RestoreUnsavedChanges(QByteArray const& changes)
{
    if (m_Private->library && !m_Private->RequireFolder())
        return false;
    QString fault;
    auto const document = ParseUnsavedChanges(changes, GetLibraryFolder(), &fault);
    if (!m_Private->library || document.is_null()) {
        m_Private->messages.Post(
            eSeverity::kError, QStringLiteral("The changes cannot be made again: %1.").arg(fault));
        return false;
    }
    QStringList const leftOut = embeddedhost::RestoreUnsavedChanges(*m_Private->library, document,
                                                                    &m_Private->commandManager);
    for (QString const& text : leftOut)
        m_Private->messages.Post(eSeverity::kWarning, text);
    return leftOut.isEmpty();
}

QStringList CEmbeddedHost::FindConflicts() const
{
    QStringList paths;
    if (!m_Private->library || m_Private->library->IsInMemory())
        return paths;
    for (auto const& file : m_Private->library->GetFiles()) {
        if (file->IsModified() && GetDigestOnDisk(file->path, GetLibraryFolder()) != file->digest)
            paths << file->path;
    }
    return paths;
}

bool CEmbeddedHost::MakeWorkTree(QString const& folder, QString* fault)
{
    return MakeGitWorkTree(folder, fault);
}

void CEmbeddedHost::CheckFolder()
{
    if (m_Private->watcher)
        m_Private->watcher->Check();
}

bool CEmbeddedHost::TakeFileFromDisk(QString const& path)
{
    return m_Private->RequireFolder()
           && embeddedhost::TakeFileFromDisk(m_Private->library, path, &m_Private->commandManager);
}

bool CEmbeddedHost::OverwriteFileOnDisk(QString const& path)
{
    return m_Private->RequireFolder()
           && embeddedhost::OverwriteFileOnDisk(*m_Private->library, path);
}
