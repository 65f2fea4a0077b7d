// The panel over fifty items of the program's own, with undo, and saving into a text file. With an
// argument, the window is rendered into that picture file and the program ends.

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/nodebrowser.h>

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QSaveFile>
#include <QStatusBar>
#include <QTabBar>

/// What the program has: ten filters for each of five media.
std::vector<embeddedhost::MemoryItem> MakeItems()
{
    std::vector<embeddedhost::MemoryItem> items;
    for (std::string medium : {"Image", "Sound", "Text", "Mesh", "Light"})
        for (std::string filter : {"Add", "Blend", "Blur", "Clamp", "Invert", "Mask", "Mix",
                                   "Noise", "Scale", "Threshold"})
            items.push_back(
                {"compound", medium + filter, medium + ' ' + filter, medium + ";filter"});
    return items;
}

/// Called by a save with the items as they are then. Answers what went wrong.
QString SaveItems(std::vector<embeddedhost::MemoryItem> const& items)
{
    QSaveFile file("items.txt");
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    for (embeddedhost::MemoryItem const& item : items)
        file.write((item.uid + '\t' + item.name + '\t' + item.tags + '\n').c_str());
    return file.commit() ? QString() : file.errorString();
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    CEmbeddedHost host;
    QMainWindow window;
    // Such as why something was refused or not saved.
    QObject::connect(&host.GetMessages(), &embeddedhost::CMessageChannel::MessagePosted, &window,
                     [&](auto, QString const& text) { window.statusBar()->showMessage(text); });
    host.OpenItems("Filters", MakeItems(), SaveItems);

    auto* const panel = new CNodeBrowser(CNodeBrowser::eConfigNodes);
    panel->SetCommandManager(&host.GetCommandManager());
    panel->SetItemLibrary(host.GetLibrary());
    panel->findChild<QTabBar*>()->setStyleSheet("QTabBar::tab { height: 23px; }");
    window.setCentralWidget(panel);
    QMenu* const menu = window.menuBar()->addMenu("&Items");
    menu->addAction(host.GetCommandManager().GetUndoStack().createUndoAction(menu));
    menu->addAction(host.GetCommandManager().GetUndoStack().createRedoAction(menu));
    panel->CreateMenuCommand(CNodeBrowser::eMenuSaveGraphLibrary, menu);
    window.resize(280, 480);
    window.show();
    return argc > 1 ? !window.grab().save(argv[1]) : application.exec();
}
