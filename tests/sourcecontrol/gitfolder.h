#ifndef NODEBROWSER_TESTS_GITFOLDER_H
#define NODEBROWSER_TESTS_GITFOLDER_H

#include "libraryfolder.h"

/// A temporary folder that the git command works in.
class GitFolder : public TestFolder
{
public:
    /// Keeps the settings of the user who runs the test away from git; before anything else.
    static void UseNoSettings(QString const& home);

    /// A new work tree without a commit, in the folder below a temporary one.
    explicit GitFolder(QString const& name = QStringLiteral("tree"));

    /// Runs git in the work tree; what it prints, without the last line break. A failure ends
    /// the test program, unless it is expected.
    QString Git(QStringList const& arguments, bool mayFail = false) const;
    /// Stages everything and commits it.
    void Commit(QString const& subject) const;
};

#endif
