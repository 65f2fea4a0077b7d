#ifndef EDITOR_COMMANDLINE_H
#define EDITOR_COMMANDLINE_H

#include <QSize>
#include <QString>
#include <QStringList>

enum class eAction
{
    kEdit,
    kRender,
    kGenerate,
    kShowHelp,
    kShowVersion
};

/// The command line, parsed.
struct CommandLine
{
    /// The error as a sentence for the user; the other members are valid only if this is empty.
    QString fault;
    eAction action = eAction::kEdit;

    /// The library to open, empty for the user's last one or the sample library; the one to make
    /// for kGenerate.
    QString libraryFolder;
    /// It has to be made first, an empty one.
    bool isNew = false;
    unsigned long itemCount = 0;
    bool isDark = false;

    /// The picture to render, its size in device-independent pixels and its pixels for each.
    QString pictureFile;
    QSize pictureSize = QSize(1100, 700);
    double pictureScale = 1;
    QString searchText;
};

/// The first argument is the program itself.
CommandLine ParseCommandLine(QStringList const& arguments);
/// Needs an application object, whose name it shows.
QString GetCommandLineHelp();

#endif
