#ifndef EDITOR_SETTINGS_H
#define EDITOR_SETTINGS_H

#include <QSettings>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>

class QMainWindow;

/// Settings that the editor keeps from one run to the next, in a file in the user's
/// configuration folder.
class CSettings
{
public:
    CSettings();

    /// Size, place and docks. False if none were kept.
    bool RestoreWindow(QMainWindow& window) const;
    void KeepWindow(QMainWindow const& window);

    /// Empty until the user has chosen.
    std::optional<bool> IsDark() const;
    void SetDark(bool isDark);

    bool AreMarksShown() const;
    void SetMarksShown(bool areShown);

    /// The order of search results.
    bool IsRankedByName() const;
    void SetRankedByName(bool isRanked);

    /// Folders, the one opened last first.
    QStringList GetRecentLibraries() const;
    void AddRecentLibrary(QString const& folder);
    void RemoveRecentLibrary(QString const& folder);

    /// The uid (UTF-8) of the compound last worked on in the library, one of the recent ones;
    /// empty if there is none.
    std::string GetCompound(QString const& library) const;
    void SetCompound(QString const& library, std::string const& uid);

private:
    QSettings m_Settings;
};

#endif
