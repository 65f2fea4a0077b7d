#ifndef EDITOR_RECENTMENU_H
#define EDITOR_RECENTMENU_H

#include <QMenu>
#include <QStringList>

/// Lists the libraries that were open before.
class CRecentMenu : public QMenu
{
    Q_OBJECT

public:
    explicit CRecentMenu(QWidget* parent = nullptr);

    /// Folders, the one opened last first. The menu is disabled without any.
    void SetFolders(QStringList const& folders);

Q_SIGNALS:
    void FolderChosen(QString const& folder);
};

#endif
