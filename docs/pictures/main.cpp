// Renders the pictures of the documentation: docspictures LIBRARY FOLDER [KEPT]. With the folder
// where they are kept it tells whether these still look like that.

#include "comparison.h"

#include <mainwindow.h>
#include <windowpicture.h>

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/nodebrowser.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <cstdio>
#include <stdexcept>

using namespace tarno::datamodel;

namespace {

enum eExitCode
{
    kSuccess = 0,
    kFailure = 1,
    kSkipped = 77
};

char const* const kPictures[] = {"editor", "search", "menu"};

// The compound in the canvas, one with a body worth showing, and the texts for the panel.
char const kCompoundUid[] = "810C1EF4-3E28-4110-90A2-12AA9BC26148";
QString const kSearchText = QStringLiteral("light");
QString const kMenuItem = QStringLiteral("Café Lamp");

// Sizes of the window, in pixels.
QSize const kEditorSize(1320, 760);
QSize const kPanelSize(720, 360);

/// Where the panel's first row begins, and in it, pixels.
int const kHeaderHeight = 43;
QPoint const kInFirstRow(60, kHeaderHeight + 12);

QString GetFile(QString const& folder, char const* name)
{
    return folder + QLatin1Char('/') + QLatin1String(name) + QStringLiteral(".png");
}

class Pictures
{
public:
    Pictures(CEmbeddedHost& host, QString const& folder)
        : m_Host(host)
        , m_Folder(folder)
    {}

    void RenderEditor() const
    {
        CMainWindow window(m_Host);
        SaveWindowPicture(window, kEditorSize, File("editor"));
    }

    void RenderSearch() const
    {
        CMainWindow window(m_Host);
        window.Search(kSearchText);
        SaveWindowPicture(window, kPanelSize, File("search"));
    }

    void RenderMenu() const
    {
        CMainWindow window(m_Host);
        window.Search(kMenuItem);
        SaveWindowPicture(window, kPanelSize, File("menu"));
        QPixmap picture;
        // The menu runs an event loop of its own.
        QTimer::singleShot(0, &window, [&] { picture = GrabMenu(window); });
        ClickFirstRow(*window.findChild<CNodeBrowser*>());
        Save(picture, File("menu"));
    }

private:
    QString File(char const* name) const
    {
        return GetFile(m_Folder, name);
    }

    static void ClickFirstRow(CNodeBrowser& panel)
    {
        QMouseEvent press(QEvent::MouseButtonPress, kInFirstRow, panel.mapToGlobal(kInFirstRow),
                          Qt::RightButton, Qt::RightButton, Qt::NoModifier);
        QApplication::sendEvent(&panel, &press);
    }

    /// The window with the menu that is open over it, which is closed then; null without one.
    static QPixmap GrabMenu(QWidget& window)
    {
        QWidget* const menu = QApplication::activePopupWidget();
        if (!menu)
            return QPixmap();
        QPixmap picture = window.grab();
        QPainter(&picture).drawPixmap(window.mapFromGlobal(menu->pos()), menu->grab());
        menu->close();
        return picture;
    }

    static void Save(QPixmap const& picture, QString const& file)
    {
        if (!picture.save(file, "PNG"))
            throw std::runtime_error(file.toStdString() + " cannot be rendered");
    }

    CEmbeddedHost& m_Host;
    QString const m_Folder;
};

void OpenLibrary(CEmbeddedHost& host, QString const& folder)
{
    if (!host.OpenLibrary(folder))
        throw std::runtime_error(folder.toStdString() + " cannot be opened");
    CompoundAccessor compound;
    compound.SetFrom(host.GetLibrary().GetModel(host.FindItem(kCompoundUid), nullptr));
    if (!compound.IsValid())
        throw std::runtime_error("the library lacks the compound to be shown");
    host.SetCompoundTarget(compound);
}

void Render(QString const& library, QString const& folder)
{
    PrepareForPictures();
    CEmbeddedHost host;
    // Marks of git would come late, and depend on the state of the work tree.
    host.SetRevisionControlEnabled(false);
    OpenLibrary(host, library);
    Pictures const pictures(host, folder);
    pictures.RenderEditor();
    pictures.RenderSearch();
    pictures.RenderMenu();
    for (char const* name : kPictures)
        SignPicture(GetFile(folder, name));
}

eExitCode Compare(QString const& rendered, QString const& kept)
{
    eExitCode result = kSuccess;
    for (char const* name : kPictures) {
        QString const file = GetFile(kept, name);
        switch (ComparePictures(GetFile(rendered, name), file)) {
        case eComparison::kAlike:
            break;
        case eComparison::kDifferent:
            std::fprintf(stderr, "%s does not show the editor as it is; build docs-pictures\n",
                         qPrintable(file));
            result = kFailure;
            break;
        case eComparison::kNotComparable:
            std::fprintf(stderr, "%s was rendered with another toolkit or font\n",
                         qPrintable(file));
            if (result == kSuccess)
                result = kSkipped;
            break;
        }
    }
    return result;
}

eExitCode Run(QStringList const& arguments)
{
    if (arguments.size() != 3 && arguments.size() != 4)
        throw std::runtime_error("a library and a folder for the pictures are needed");
    Render(arguments[1], arguments[2]);
    return arguments.size() == 4 ? Compare(arguments[2], arguments[3]) : kSuccess;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    try {
        return Run(QApplication::arguments());
    } catch (std::exception const& error) {
        std::fprintf(stderr, "docspictures: %s\n", error.what());
        return kFailure;
    }
}
