#include <embeddedhost.h>
#include <nodebrowser.h>

#include <QApplication>
#include <QFile>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    CEmbeddedHost host;
    CNodeBrowser browser(CNodeBrowser::eConfigNodes);
    browser.SetCommandManager(&host.GetCommandManager());
    browser.grab();
    return browser.GetSelection().IsNull() && QFile::exists(":solver.png") ? 0 : 1;
}
