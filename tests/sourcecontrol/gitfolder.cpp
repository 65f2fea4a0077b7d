#include "gitfolder.h"

#include <QFile>
#include <QProcess>

void GitFolder::UseNoSettings(QString const& home)
{
    qputenv("HOME", QFile::encodeName(home));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home));
    qputenv("GIT_CONFIG_NOSYSTEM", "1");
    // `git status` holds the lock of the index only where a test wants it to.
    qputenv("GIT_OPTIONAL_LOCKS", "0");
    for (char const* const role : {"AUTHOR", "COMMITTER"}) {
        qputenv(QByteArray("GIT_") + role + "_NAME", "Ada Example");
        qputenv(QByteArray("GIT_") + role + "_EMAIL", "ada@example.org");
    }
}

GitFolder::GitFolder(QString const& name)
    : TestFolder(name)
{
    Git({"-c", "init.defaultBranch=main", "init", "-q"});
}

QString GitFolder::Git(QStringList const& arguments, bool mayFail) const
{
    QProcess git;
    git.setWorkingDirectory(GetPath());
    if (mayFail)
        git.setStandardErrorFile(QProcess::nullDevice());
    else
        git.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    git.start(QStringLiteral("git"), arguments);
    bool const hasRun = git.waitForFinished() && git.exitStatus() == QProcess::NormalExit;
    if (!hasRun || (git.exitCode() != 0 && !mayFail))
        qFatal("git %s failed", qPrintable(arguments.join(' ')));
    QString output = QString::fromUtf8(git.readAllStandardOutput());
    if (output.endsWith('\n'))
        output.chop(1);
    return output;
}

void GitFolder::Commit(QString const& subject) const
{
    Git({"add", "-A"});
    Git({"commit", "-q", "--allow-empty", "-m", subject});
}
