#include "storage/saveleftovers.h"

#include <QDateTime>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

namespace embeddedhost {

namespace {

/// In seconds. A save that is slower than that and loses a file to another process only fails.
constexpr int kLongestSave = 60;

/// As QSaveFile names them: six random letters after the name of the file. A few of these look
/// like a word, which may be a copy that somebody has put there ("glow.json.backup").
bool IsRandom(QString const& ending)
{
    static QRegularExpression const letters(QStringLiteral("^[A-Za-z]{6}$"));
    static QRegularExpression const word(QStringLiteral("^(?:[A-Z]?[a-z]+|[A-Z]+)$"));
    return letters.match(ending).hasMatch() && !word.match(ending).hasMatch();
}

} // namespace

void RemoveSaveLeftovers(QString const& folder)
{
    QDateTime const now = QDateTime::currentDateTime();
    QDirIterator files(folder, {QStringLiteral("*.json.??????")},
                       QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (files.hasNext()) {
        QString const path = files.next();
        QFileInfo const info = files.fileInfo();
        if (IsRandom(info.suffix()) && info.lastModified().secsTo(now) > kLongestSave)
            QFile::remove(path);
    }
}

} // namespace embeddedhost
