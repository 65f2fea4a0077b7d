#include "sourcecontrol/gitactions.h"

#include "sourcecontrol/checkouts.h"

#include <QDir>
#include <QFileInfo>

namespace embeddedhost {

namespace {

/// Relative to the work tree; empty when it is in another one. The file need not be there.
std::string GetPathInTree(CGitWorkTree const& tree, QString const& file)
{
    QFileInfo const info(file);
    return tree.GetRelativePath(QFileInfo(info.path()).canonicalFilePath() + '/' + info.fileName());
}

/// A sentence for the user; empty when git knows the file in its new place, or never knew it.
QString MoveInIndex(QString const& from, QString const& to)
{
    CGitWorkTree tree(QFileInfo(to).path());
    std::string const source = GetPathInTree(tree, from);
    std::string const target = GetPathInTree(tree, to);
    if (source.empty() || target.empty() || !tree.IsTracked(source)
        || tree.MoveEntry(source, target))
        return QString();
    return QStringLiteral("%1 was moved on disk, but not for git: %2. Stage both the old and the "
                          "new file to make up for it.")
        .arg(QDir::toNativeSeparators(to), tree.GetError());
}

} // namespace

CGitActions::CGitActions(CGitWorkers& workers)
    : m_Workers(workers)
{}

QString CGitActions::CheckOut(QString const& file)
{
    auto const ask = [file](CancelFlag const& cancel) {
        return CheckOutFile(file, cancel);
    };
    return m_Workers.Ask(CGitWorkers::kActions, ask)
        .value_or(QStringLiteral("git does not answer"));
}

void CGitActions::FollowMove(QString const& from, QString const& to)
{
    auto const fault = std::make_shared<QString>();
    m_Workers.Run(
        CGitWorkers::kActions, std::make_shared<CancelFlag>(),
        [from, to, fault] { *fault = MoveInIndex(from, to); },
        [this, fault] { Q_EMIT MoveFollowed(*fault); });
}

} // namespace embeddedhost

#include "moc_gitactions.cpp"
