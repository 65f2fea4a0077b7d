#include "commandline.h"
#include "editorapplication.h"
#include "libraryfiles.h"
#include "librarygenerator.h"
#include "mainwindow.h"
#include "samplelibrary.h"
#include "settings.h"
#include "windowpicture.h"

#include <embeddedhost/embeddedhost.h>
#include <embeddedhost/journal.h>
#include <nodebrowser/textencoding.h>

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>
#include <QTimer>

#include <cstdio>
#include <exception>
#include <stdexcept>

using namespace embeddedhost;

namespace {

enum eExitCode
{
    kSuccess = 0,
    kFailure = 1,
    kWrongArguments = 2
};

void Print(FILE* stream, QString const& text)
{
    std::fprintf(stream, "%s\n", qPrintable(text));
}

CommandLine ReadCommandLine(int& argc, char** argv)
{
    // An application for the parser alone: scale and platform have to be set before the real one is
    // made, and depend on the arguments.
    QCoreApplication const application(argc, argv);
    CommandLine const line = ParseCommandLine(QCoreApplication::arguments());
    if (line.action == eAction::kShowHelp)
        std::fputs(qPrintable(GetCommandLineHelp()), stdout);
    return line;
}

/// Next to the installed program, otherwise in the source tree.
QString FindSampleLibrary()
{
    QString const installed = QDir::cleanPath(QCoreApplication::applicationDirPath()
                                              + QStringLiteral("/" NODEEDITOR_INSTALLED_LIBRARY));
    return QFileInfo(installed).isDir() ? installed : QStringLiteral(NODEEDITOR_SOURCE_LIBRARY);
}

QString GetDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

int Generate(CommandLine const& line)
{
    GenerateLibrary(line.libraryFolder, line.itemCount);
    Print(stdout,
          QStringLiteral("%1 items are in %2.").arg(line.itemCount).arg(line.libraryFolder));
    return kSuccess;
}

/// Has to be called before there is an application.
void PrepareDisplay(CommandLine const& line)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    if (line.action != eAction::kRender)
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (line.pictureScale != 1)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(line.pictureScale));
}

int Render(CommandLine const& line, CEmbeddedHost& host)
{
    CMainWindow window(host);
    if (line.isDark)
        window.SetDark(true);
    QObject::connect(&host.GetMessages(), &CMessageChannel::MessagePosted, &window,
                     [](eSeverity, QString const& text) { Print(stderr, text); });
    if (!window.OpenLibrary(line.libraryFolder.isEmpty() ? FindSampleLibrary()
                                                         : line.libraryFolder))
        return kFailure;
    window.Search(line.searchText);
    SaveWindowPicture(window, line.pictureSize, line.pictureFile);
    return kSuccess;
}

void OpenSampleLibrary(CMainWindow& window, CMessageChannel& messages)
{
    QString const copy = GetDataFolder() + QStringLiteral("/sample-library");
    QString fault;
    try {
        PrepareSampleLibrary(FindSampleLibrary(), copy, &fault);
    } catch (std::runtime_error const& error) {
        messages.Post(eSeverity::kError, QStringLiteral("The sample library cannot be copied: %1.")
                                             .arg(QString::fromUtf8(error.what())));
        return;
    }
    window.OpenLibrary(copy);
    if (!fault.isEmpty())
        messages.Post(
            eSeverity::kWarning,
            QStringLiteral("The sample library is not under source control: %1.").arg(fault));
}

void OpenAtStart(CommandLine const& line, CSettings const& settings, CMainWindow& window,
                 CMessageChannel& messages)
{
    QString const last = settings.GetRecentLibraries().value(0);
    if (!line.libraryFolder.isEmpty())
        window.OpenLibrary(line.libraryFolder);
    else if (!CEmbeddedHost::IsLibrary(last) || !window.OpenLibrary(last))
        OpenSampleLibrary(window, messages);
}

int Edit(CommandLine const& line, CEmbeddedHost& host)
{
    // Declared before the window, which uses both until it is destroyed.
    CSettings settings;
    CJournal journal(host, GetDataFolder() + QStringLiteral("/journal"));
    CMainWindow window(host);
    window.resize(line.pictureSize);
    window.UseSettings(settings);
    window.UseJournal(journal);
    if (line.isDark)
        window.SetDark(true);
    window.show();
    // From the event loop, so that the window is there while a large library is read.
    QTimer::singleShot(0, &window,
                       [&] { OpenAtStart(line, settings, window, host.GetMessages()); });
    return QApplication::exec();
}

int RunWindow(CommandLine const& line, int& argc, char** argv)
{
    PrepareDisplay(line);
    CEditorApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":nodeeditor.png")));
    if (line.action == eAction::kRender)
        PrepareForPictures();
    nodebrowser::SetTextEncoding(nodebrowser::eUtf8Texts);
    CEmbeddedHost::SetTextEncoding(CEmbeddedHost::eUtf8Texts);
    CEmbeddedHost host;
    application.ReportTo(host.GetMessages());
    return line.action == eAction::kRender ? Render(line, host) : Edit(line, host);
}

/// Runs before there is a window, so that the fault is printed in the terminal of the command.
void CheckLibrary(CommandLine const& line)
{
    QString fault;
    if (line.isNew)
        CEmbeddedHost::MakeLibrary(line.libraryFolder, &fault);
    else if (!line.libraryFolder.isEmpty() && !CEmbeddedHost::IsLibrary(line.libraryFolder))
        fault = QStringLiteral("%1: there is no library, a folder with a file %2; make an empty "
                               "one with --new")
                    .arg(line.libraryFolder, CEmbeddedHost::GetManifestName());
    if (!fault.isEmpty())
        throw std::runtime_error(fault.toStdString());
}

int Run(int argc, char** argv)
{
    CommandLine const line = ReadCommandLine(argc, argv);
    if (!line.fault.isEmpty()) {
        Print(stderr, QStringLiteral("nodeeditor: %1 See nodeeditor --help.").arg(line.fault));
        return kWrongArguments;
    }
    switch (line.action) {
    case eAction::kShowHelp:
        return kSuccess;
    case eAction::kShowVersion:
        Print(stdout, QStringLiteral("nodeeditor " NODEEDITOR_VERSION));
        return kSuccess;
    case eAction::kGenerate:
        return Generate(line);
    case eAction::kRender:
    case eAction::kEdit:
        break;
    }
    CheckLibrary(line);
    return RunWindow(line, argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("nodeeditor"));
    QCoreApplication::setApplicationVersion(QStringLiteral(NODEEDITOR_VERSION));
    try {
        return Run(argc, argv);
    } catch (std::exception const& exception) {
        Print(stderr, QStringLiteral("nodeeditor: %1").arg(QString::fromUtf8(exception.what())));
    } catch (...) {
        Print(stderr, QStringLiteral("nodeeditor: unknown reason"));
    }
    return kFailure;
}
