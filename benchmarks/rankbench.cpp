// What the palette's order of results costs on top of the panel's own search.
//
//     rankbench [item count]

#include "librarygenerator.h"
#include <embeddedhost/embeddedhost.h>
#include <palette/nodepalette.h>

#include <QApplication>
#include <QLineEdit>
#include <QTabBar>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

int const kRounds = 41;

/// Of the running thread, in milliseconds.
double ProcessorTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

class SearchedPanel : public CNodeBrowser
{
public:
    SearchedPanel()
        : CNodeBrowser(eConfigNodes)
    {}

    using CNodeBrowser::UpdateVisibleItems;
};

void Filter(SearchedPanel& panel)
{
    panel.UpdateVisibleItems();
}

void Filter(CNodePalette& palette)
{
    palette.GetRowCount();
}

/// The time from one text to the next, which may be narrower; without painting.
template <class Browser>
double MeasureSearch(Browser& browser, QString const& before, QString const& text)
{
    auto* const field = browser.template findChild<QLineEdit*>();
    field->setText(before);
    Filter(browser);
    double const start = ProcessorTime();
    field->setText(text);
    Filter(browser);
    return ProcessorTime() - start;
}

double Median(std::vector<double>& times)
{
    std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
    return times[kRounds / 2];
}

/// The same library in a panel, and in a palette with the order of each.
class Contest
{
public:
    explicit Contest(tarno::datamodel::ItemLibraryAccessor const& library)
    {
        m_Ranked.SetRanking(CNodePalette::eNameRanking);
        for (CNodeBrowser* const browser :
             {static_cast<CNodeBrowser*>(&m_Panel), static_cast<CNodeBrowser*>(&m_Plain),
              static_cast<CNodeBrowser*>(&m_Ranked)}) {
            browser->findChild<QTabBar*>()->setCurrentIndex(CNodeBrowser::eConfigAll);
            browser->SetItemLibrary(library);
            browser->resize(300, 700);
            browser->show();
        }
        // Paints, and lets the index ask for names and tags.
        for (int round = 0; round < 200; ++round)
            QCoreApplication::processEvents();
    }

    void Run(QString const& before, QString const& text)
    {
        std::array<std::vector<double>, 3> times;
        for (int round = 0; round < kRounds; ++round) {
            times[0].push_back(MeasureSearch(m_Panel, before, text));
            times[1].push_back(MeasureSearch(m_Plain, before, text));
            times[2].push_back(MeasureSearch(m_Ranked, before, text));
        }
        double const panel = Median(times[0]);
        double const ranked = Median(times[2]);
        std::printf("%-16s %8d %10.2f %10.2f %10.2f %+8.0f %%\n", qPrintable("'" + text + "'"),
                    m_Ranked.GetRowCount(), panel, Median(times[1]), ranked,
                    100 * (ranked / panel - 1));
        std::fflush(stdout);
    }

private:
    SearchedPanel m_Panel;
    CNodePalette m_Plain{CNodeBrowser::eConfigNodes};
    CNodePalette m_Ranked{CNodeBrowser::eConfigNodes};
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    unsigned long const itemCount = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100000;
    QTemporaryDir folder;
    GenerateLibrary(folder.path(), itemCount);
    CEmbeddedHost host;
    host.OpenLibrary(folder.path());

    Contest contest(host.GetLibrary());
    std::printf("%-16s %8s %10s %10s %10s %10s\n", "text", "rows", "panel ms", "palette ms",
                "ranked ms", "on top");
    struct SStroke
    {
        char const* before;
        char const* text;
    };
    for (SStroke const stroke : {SStroke{"", "a"},
                                 {"", "e"},
                                 {"", "a e i"},
                                 {"a e", "a e i"},
                                 {"", "er"},
                                 {"e", "er"},
                                 {"", "in"},
                                 {"", "te no"},
                                 {"", "ar e s"},
                                 {"a", "ad"},
                                 {"ad", "add"},
                                 {"", "add noise"},
                                 {"mul ad", "mul add"},
                                 {"", "node"},
                                 {"", "qq"},
                                 {"a", ""}})
        contest.Run(stroke.before, stroke.text);
    return 0;
}
