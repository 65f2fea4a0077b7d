#include "storage/stagingfolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace embeddedhost {

namespace {

QString const kFolderName = QStringLiteral(".nodebrowser");
QString const kMarkName = QStringLiteral(".gitignore");
QString const kLockName = QStringLiteral("lock");
/// The content of .gitignore, which identifies the folder as one of this program.
QByteArray const kMark = "# Made by a save of the node browser, which removes it.\n*\n";
/// The maximum of attempts: another process may remove the folder between two steps.
constexpr int kMakeAttempts = 5;
/// In bytes; the limit of a whole name is 255.
constexpr int kLongestShownName = 60;

QRegularExpression const& GetNewPattern()
{
    static QRegularExpression const pattern(QStringLiteral("^(\\d+)\\.new$"));
    return pattern;
}

QRegularExpression const& GetStagedPattern()
{
    static QRegularExpression const pattern(
        QStringLiteral("^(\\d+)-([0-9a-f]*)-([0-9a-f]*)-(.*)\\.staged$"));
    return pattern;
}

QString ToHex(QByteArray const& digest)
{
    return QString::fromLatin1(digest.toHex());
}

QByteArray FromHex(QString const& digest)
{
    return QByteArray::fromHex(digest.toLatin1());
}

/// The end of the name, which has the suffix.
QString CutFront(QString const& name)
{
    QString shown = name;
    while (shown.toUtf8().size() > kLongestShownName)
        shown.remove(0, shown.at(0).isHighSurrogate() ? 2 : 1);
    return shown;
}

} // namespace

CStagingFolder::CStagingFolder(QString const& parent, std::unique_ptr<CHeldFolder> folder)
    : m_Parent(parent)
    , m_Folder(std::move(folder))
    , m_Lock(*m_Folder, kLockName)
{}

CStagingFolder::~CStagingFolder()
{
    if (!m_Lock.IsLocked())
        return;
    m_Lock.Unlock();
    // Another process may enter meanwhile. It makes the mark or the folder again if it finds them
    // missing, and rmdir fails if its lock is in the folder already.
    if (m_Folder->GetNames() == QStringList{kMarkName} && m_Folder->Remove(kMarkName).IsDone())
        QDir(m_Parent).rmdir(kFolderName);
}

bool CStagingFolder::IsIn(QString const& parent)
{
    return QFileInfo::exists(parent + QLatin1Char('/') + kFolderName);
}

std::unique_ptr<CStagingFolder> CStagingFolder::Open(QString const& parent, int* patience,
                                                     QString* fault)
{
    QElapsedTimer time;
    time.start();
    std::unique_ptr<CStagingFolder> staging;
    for (int attempt = 0; attempt < kMakeAttempts && !staging; ++attempt) {
        int const left = *patience - int(time.elapsed());
        if (attempt > 0 && left <= 0)
            break;
        staging = TryOpen(parent, left, fault);
    }
    *patience = qMax(0, *patience - int(time.elapsed()));
    return staging;
}

std::unique_ptr<CStagingFolder> CStagingFolder::TryOpen(QString const& parent, int patience,
                                                        QString* fault)
{
    std::unique_ptr<CHeldFolder> folder =
        CHeldFolder::Open(parent, parent + QLatin1Char('/') + kFolderName, true, fault);
    if (!folder)
        return nullptr;
    std::unique_ptr<CStagingFolder> staging(new CStagingFolder(parent, std::move(folder)));
    // Before waiting for the lock, and again after it: its last holder may have removed it.
    bool const isReady =
        staging->Mark(fault) && staging->m_Lock.Lock(patience, fault) && staging->Mark(fault);
    if (!isReady)
        return nullptr;
    return staging;
}

bool CStagingFolder::Mark(QString* fault) const
{
    FileContent const mark = m_Folder->Read(kMarkName);
    if (mark.exists && mark.fault.isEmpty() && mark.bytes == kMark)
        return true;
    // A process may be writing it, or was killed while it did.
    if (!mark.fault.isEmpty() || !kMark.startsWith(mark.bytes) || HasOthers()) {
        *fault =
            QStringLiteral("the folder %1 was not made by this program; rename it or remove it")
                .arg(m_Folder->GetPath());
        return false;
    }
    if (mark.exists && !m_Lock.IsLocked())
        return true;
    if (mark.exists)
        m_Folder->Remove(kMarkName);
    FileResult const made = m_Folder->Create(kMarkName, kMark, QString());
    *fault =
        QStringLiteral("nothing can be written to %1: %2").arg(m_Folder->GetPath(), made.reason);
    return made.IsDone() || made.error == eFileError::kExists;
}

/// Files that no save has made.
bool CStagingFolder::HasOthers() const
{
    QStringList const names = m_Folder->GetNames();
    return std::any_of(names.begin(), names.end(), [](QString const& name) {
        return name != kMarkName && !name.startsWith(kLockName)
               && !GetNewPattern().match(name).hasMatch()
               && !GetStagedPattern().match(name).hasMatch();
    });
}

CHeldFolder const& CStagingFolder::GetFolder() const
{
    return *m_Folder;
}

QString CStagingFolder::MakeNewName()
{
    return QStringLiteral("%1.new").arg(++m_LastNumber);
}

QString CStagingFolder::MakeStagedName(QString const& name, QByteArray const& oldDigest,
                                       QByteArray const& newDigest)
{
    return QStringLiteral("%1-%2-%3-%4.staged")
        .arg(QString::number(++m_LastNumber), ToHex(oldDigest), ToHex(newDigest), CutFront(name));
}

void CStagingFolder::TidyUp()
{
    QStringList const names = m_Folder->GetNames();
    for (QString const& name : names) {
        auto const unfinished = GetNewPattern().match(name);
        if (unfinished.hasMatch()) {
            m_Folder->Remove(name);
            continue;
        }
        auto const staged = GetStagedPattern().match(name);
        if (!staged.hasMatch())
            continue;
        // Files that are kept must not get the names of new ones.
        m_LastNumber = qMax(m_LastNumber, quint64(staged.captured(1).toULongLong()));
        // A file with one of these digests is the old or the new version of an interrupted save.
        // Any other content was written by another program, and stays.
        int patience = 0;
        m_Folder->RemoveUnchanged(name, {FromHex(staged.captured(2)), FromHex(staged.captured(3))},
                                  &patience);
    }
}

QStringList CStagingFolder::FindKept() const
{
    QStringList kept;
    QStringList const names = m_Folder->GetNames();
    for (QString const& name : names) {
        if (GetStagedPattern().match(name).hasMatch())
            kept << m_Folder->GetPath() + QLatin1Char('/') + name;
    }
    return kept;
}

} // namespace embeddedhost
