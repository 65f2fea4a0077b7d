#include "commandline.h"
#include "editorapplication.h"
#include "librarygenerator.h"
#include "mainwindow.h"
#include "windowpicture.h"

#include <embeddedhost.h>

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QTimer>

#include <cstdio>
#include <exception>

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

QString GetLibraryFolder(CommandLine const& line)
{
    return line.libraryFolder.isEmpty() ? FindSampleLibrary() : line.libraryFolder;
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

int Render(CommandLine const& line, CMainWindow& window)
{
    if (!window.OpenLibrary(GetLibraryFolder(line)))
        return kFailure;
    window.Search(line.searchText);
    SaveWindowPicture(window, line.pictureSize, line.pictureFile);
    return kSuccess;
}

int Edit(CommandLine const& line, CMainWindow& window)
{
    window.resize(line.pictureSize);
    window.show();
    // From the event loop, so that the window is there while a large library is read.
    QTimer::singleShot(0, &window, [&] { window.OpenLibrary(GetLibraryFolder(line)); });
    return QApplication::exec();
}

int RunWindow(CommandLine const& line, int& argc, char** argv)
{
    PrepareDisplay(line);
    CEditorApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":nodeeditor.png")));
    if (line.action == eAction::kRender)
        PrepareForPictures();
    CEmbeddedHost host;
    CMessageChannel& messages = host.GetMessages();
    application.ReportTo(messages);
    CMainWindow window(host);
    if (line.isDark)
        window.SetDark(true);
    if (line.action == eAction::kEdit)
        return Edit(line, window);
    QObject::connect(&messages, &CMessageChannel::MessagePosted, &window,
                     [](eSeverity, QString const& text) { Print(stderr, text); });
    return Render(line, window);
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
        return kFailure;
    }
}
