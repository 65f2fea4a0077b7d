// The panel in a dock widget, over a list of parts in memory. With an argument, the window is
// rendered into that picture file and the program ends.

#include "parts.h"

#include <nodebrowser/nodebrowser.h>

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QTabBar>

using namespace tarno::datamodel;

namespace {

/// The panel has no width of its own; in pixels.
int const kPanelWidth = 240;

void AddPanel(QMainWindow& window, QLabel& work)
{
    auto* const panel = new CNodeBrowser(CNodeBrowser::eConfigNodes);
    panel->SetItemLibrary(GetPartsLibrary());
    // The panel has room for that height; most styles have higher tabs, over the first row.
    panel->findChild<QTabBar*>()->setStyleSheet(QStringLiteral("QTabBar::tab { height: 23px; }"));
    QObject::connect(panel, &CNodeBrowser::SelectionChanged, &work, [panel, &work] {
        Part const* const part = ItemIDUnlock::GetIdentity(panel->GetSelection());
        work.setText(part ? QString::fromLatin1(part->name.c_str()) : QString());
    });
    SetCompoundOpener([&work](Part const& part) {
        work.setText(QStringLiteral("Working on %1").arg(QString::fromLatin1(part.name.c_str())));
    });

    auto* const dock = new QDockWidget(QStringLiteral("Nodes"), &window);
    dock->setWidget(panel);
    window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    window.resizeDocks({dock}, {kPanelWidth}, Qt::Horizontal);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto* const work = new QLabel(QStringLiteral("Select a part, or double-click a compound."));
    work->setAlignment(Qt::AlignCenter);
    window.setCentralWidget(work);
    window.resize(720, 420);
    AddPanel(window, *work);

    window.show();
    if (argc > 1) {
        QApplication::processEvents();
        return window.grab().save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
    }
    return QApplication::exec();
}
