#include "testhost.h"
#include <palette/nodepalette.h>

#include <QApplication>

/// A window with a palette, for a screen reader in another process. Says which item was activated.
int main(int argc, char** argv)
{
    using namespace tarno::datamodel;
    QApplication application(argc, argv);
    TestHost host;
    TestLibrary library;
    library.Add(TarnoType::gCompound, "Gaussian Blur", "Soft");
    library.Add(TarnoType::gSolver, "Blur");
    for (int number = 0; number < 300; ++number)
        library.Add(TarnoType::gSolver, "Node " + std::to_string(number));
    CNodePalette palette(CNodeBrowser::eConfigNodes);
    QObject::connect(&palette, &CNodePalette::ItemActivated, [&](ItemID const& id) {
        palette.setWindowTitle(
            QString::fromStdString(library.GetAccessor().GetItemName(id, true, nullptr)));
    });
    palette.SetItemLibrary(library.GetAccessor());
    palette.resize(300, 400);
    palette.setWindowTitle(QStringLiteral("Palette"));
    palette.show();
    palette.setFocus();
    return application.exec();
}
