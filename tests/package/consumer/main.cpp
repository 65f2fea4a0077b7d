#include <embeddedhost/embeddedhost.h>
#include <palette/nodepalette.h>

#include <QApplication>
#include <QFile>

// Names that a host may well have, which must not meet ones of the libraries.
class SearchIndex
{
public:
    SearchIndex()
        : m_Count(0x5ea)
    {}
    virtual ~SearchIndex() {}
    virtual int GetCount() const
    {
        return m_Count;
    }

private:
    int m_Count;
};

class Settings : public SearchIndex
{
public:
    int GetCount() const override
    {
        return 1;
    }
};

bool operator==(SearchIndex const& left, SearchIndex const& right)
{
    return left.GetCount() == right.GetCount();
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    CEmbeddedHost host;
    CNodePalette browser(CNodeBrowser::eConfigNodes);
    browser.SetCommandManager(&host.GetCommandManager());
    browser.grab();
    bool const distinct = !(SearchIndex() == Settings());
    // With an argument: an image that has to be linked in.
    bool const hasImage = argc < 2 || QFile::exists(QString::fromLocal8Bit(argv[1]));
    return browser.GetSelection().IsNull() && hasImage && distinct ? 0 : 1;
}
