#include "settings.h"

#include <QMainWindow>
#include <QStandardPaths>
#include <QUrl>

namespace {

int const kMostLibraries = 8;
/// Changes whenever docks or tool bars do, so that an old state is not applied to them.
int const kStateVersion = 1;

QString const kGeometry = QStringLiteral("window/geometry");
QString const kState = QStringLiteral("window/state");
QString const kDark = QStringLiteral("view/dark");
QString const kMarks = QStringLiteral("view/sourceControlMarks");
QString const kRanking = QStringLiteral("view/rankedByName");
QString const kLibraries = QStringLiteral("libraries/recent");

/// The key for the last compound of the library. Slashes are encoded, since QSettings takes them
/// for separators of groups.
QString GetCompoundKey(QString const& library)
{
    return QStringLiteral("compounds/") + QString::fromLatin1(QUrl::toPercentEncoding(library));
}

QString GetFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
           + QStringLiteral("/nodeeditor/nodeeditor.ini");
}

} // namespace

CSettings::CSettings()
    : m_Settings(GetFile(), QSettings::IniFormat)
{}

bool CSettings::RestoreWindow(QMainWindow& window) const
{
    return window.restoreGeometry(m_Settings.value(kGeometry).toByteArray())
           && window.restoreState(m_Settings.value(kState).toByteArray(), kStateVersion);
}

void CSettings::KeepWindow(QMainWindow const& window)
{
    m_Settings.setValue(kGeometry, window.saveGeometry());
    m_Settings.setValue(kState, window.saveState(kStateVersion));
}

std::optional<bool> CSettings::IsDark() const
{
    if (!m_Settings.contains(kDark))
        return std::nullopt;
    return m_Settings.value(kDark).toBool();
}

void CSettings::SetDark(bool isDark)
{
    m_Settings.setValue(kDark, isDark);
}

bool CSettings::AreMarksShown() const
{
    return m_Settings.value(kMarks, true).toBool();
}

void CSettings::SetMarksShown(bool areShown)
{
    m_Settings.setValue(kMarks, areShown);
}

bool CSettings::IsRankedByName() const
{
    return m_Settings.value(kRanking, true).toBool();
}

void CSettings::SetRankedByName(bool isRanked)
{
    m_Settings.setValue(kRanking, isRanked);
}

QStringList CSettings::GetRecentLibraries() const
{
    return m_Settings.value(kLibraries).toStringList().mid(0, kMostLibraries);
}

void CSettings::AddRecentLibrary(QString const& folder)
{
    QStringList libraries = GetRecentLibraries();
    libraries.removeAll(folder);
    libraries.prepend(folder);
    while (libraries.size() > kMostLibraries)
        m_Settings.remove(GetCompoundKey(libraries.takeLast()));
    m_Settings.setValue(kLibraries, libraries);
}

void CSettings::RemoveRecentLibrary(QString const& folder)
{
    QStringList libraries = GetRecentLibraries();
    libraries.removeAll(folder);
    m_Settings.setValue(kLibraries, libraries);
    m_Settings.remove(GetCompoundKey(folder));
}

std::string CSettings::GetCompound(QString const& library) const
{
    return m_Settings.value(GetCompoundKey(library)).toString().toStdString();
}

void CSettings::SetCompound(QString const& library, std::string const& uid)
{
    m_Settings.setValue(GetCompoundKey(library), QString::fromStdString(uid));
}
