#include "recentmenu.h"

#include "shorttext.h"

#include <QDir>

namespace {

/// With "~" for the user's home, which makes most paths short enough to be told apart.
QString GetShownFolder(QString const& folder)
{
    QString const home = QDir::homePath();
    bool const isAtHome = folder.startsWith(home + QLatin1Char('/'));
    QString const shown = isAtHome ? QLatin1Char('~') + folder.mid(home.size()) : folder;
    return QDir::toNativeSeparators(shown);
}

} // namespace

CRecentMenu::CRecentMenu(QWidget* parent)
    : QMenu(tr("Open &Recent"), parent)
{
    SetFolders(QStringList());
}

void CRecentMenu::SetFolders(QStringList const& folders)
{
    clear();
    int number = 0;
    for (QString const& folder : folders) {
        QAction* const entry = addAction(
            QStringLiteral("&%1  %2").arg(++number).arg(EscapeMnemonics(GetShownFolder(folder))));
        connect(entry, &QAction::triggered, this, [this, folder] { Q_EMIT FolderChosen(folder); });
    }
    setEnabled(!folders.isEmpty());
}

#include "moc_recentmenu.cpp"
