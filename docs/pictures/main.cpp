// Renders the pictures of the documentation: docspictures LIBRARY FOLDER.

#include <mainwindow.h>
#include <windowpicture.h>

#include <embeddedhost.h>
#include <nodebrowser.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <cstdio>
#include <stdexcept>

using namespace tarno::datamodel;

namespace {

// The compound that is worked on, one with a body worth showing, and what the panel shows.
char const kCompoundUid[] = "810C1EF4-3E28-4110-90A2-12AA9BC26148";
QString const kSearchText = QStringLiteral("light");
QString const kMenuItem = QStringLiteral("Café Lamp");

// Sizes of the window, in pixels.
QSize const kEditorSize(1320, 760);
QSize const kPanelSize(720, 360);

/// Where the panel's first row begins, and in it, pixels.
int const kHeaderHeight = 43;
QPoint const kInFirstRow(60, kHeaderHeight + 12);

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
        return m_Folder + QLatin1Char('/') + QLatin1String(name) + QStringLiteral(".png");
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

void Render(QStringList const& arguments)
{
    if (arguments.size() != 3)
        throw std::runtime_error("a library and a folder for the pictures are needed");
    PrepareForPictures();
    CEmbeddedHost host;
    OpenLibrary(host, arguments[1]);
    Pictures const pictures(host, arguments[2]);
    pictures.RenderEditor();
    pictures.RenderSearch();
    pictures.RenderMenu();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    try {
        Render(QApplication::arguments());
    } catch (std::exception const& error) {
        std::fprintf(stderr, "docspictures: %s\n", error.what());
        return 1;
    }
    return 0;
}
