#ifndef EMBEDDEDHOST_TOOLTIP_H
#define EMBEDDEDHOST_TOOLTIP_H

#include "sourcecontrol/gitworktree.h"

#include <QString>

#include <optional>

namespace embeddedhost {

/// The facts of one file under source control.
struct FileFacts
{
    /// Relative to the work tree; empty outside of one and for one that is not readable.
    QString path;
    unsigned state = 0;
    /// Nothing for a file that was never committed.
    std::optional<GitCommit> lastCommit;
};

/// The state bits in words, "modified, checked out"; empty for none.
QString DescribeState(unsigned state);

/// Rich text; texts from outside are escaped. `icon` names a resource and may be empty, `path`
/// is used where the facts have none. No facts stand for ones that are still being looked up.
QString BuildToolTip(QString const& icon, QString const& name, QString const& path,
                     std::optional<FileFacts> const& facts);
/// The same without source control.
QString BuildPlainToolTip(QString const& icon, QString const& name, QString const& path);

} // namespace embeddedhost

#endif
