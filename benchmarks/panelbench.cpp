// What the panel costs, beside the toolkit's own list view with the same items, in one run.
//
//     panelbench [options of the benchmark library] [item counts]

#include "editorstyle.h"
#include "librarygenerator.h"
#include "listeditems.h"
#include "measurements.h"
#include "panelsubject.h"
#include "peersubject.h"
#include "windowpicture.h"
#include <embeddedhost/embeddedhost.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <iterator>
#include <malloc.h>
#include <sys/resource.h>

namespace {

typedef std::function<void(benchmark::State&, Subject&)> Operation;

benchmark::internal::Benchmark* SetUp(benchmark::internal::Benchmark* benchmark)
{
    return benchmark->Unit(benchmark::kMillisecond)->ReportAggregatesOnly();
}

void Register(std::string const& name, Operation const& operation, PanelSubject& panel,
              PeerSubject& peer)
{
    auto const add = [&](char const* side, Subject& subject) {
        SetUp(benchmark::RegisterBenchmark((name + side).c_str(), operation, std::ref(subject)));
    };
    add("/panel", panel);
    add("/peer", peer);
}

void RegisterKeystroke(QString const& before, QString const& after, PanelSubject& panel,
                       PeerSubject& peer)
{
    std::string const name =
        after.isEmpty() ? "key clears" : "key to '" + after.toStdString() + "'";
    auto const type = [before, after](benchmark::State& state, Subject& subject) {
        for (auto const _ : state) {
            (void)_;
            state.PauseTiming();
            subject.Type(before);
            state.ResumeTiming();
            subject.Type(after);
        }
    };
    Register(name, type, panel, peer);
}

void RegisterAdd(PanelSubject& panel, PeerSubject& peer)
{
    auto const add = [](benchmark::State& state, Subject& subject) {
        subject.Type(QString());
        for (auto const _ : state) {
            (void)_;
            subject.Add();
            state.PauseTiming();
            subject.RemoveAdded();
            state.ResumeTiming();
        }
    };
    Register("add an item", add, panel, peer);
}

/// The next search after a tag change has nothing to build on.
void RegisterTagsAndKeystroke(PanelSubject& panel, PeerSubject& peer)
{
    auto const tag = [](benchmark::State& state, Subject& subject) {
        for (auto const _ : state) {
            (void)_;
            state.PauseTiming();
            subject.Type(QStringLiteral("ad"));
            state.ResumeTiming();
            subject.ChangeTags();
            subject.Type(QStringLiteral("add"));
        }
    };
    Register("tags, key to 'add'", tag, panel, peer);
}

/// From nothing to the first frame.
void RegisterOpen(CEmbeddedHost& host, std::vector<ListedItem> const& items)
{
    auto const open = [](auto makeSubject) {
        return [makeSubject](benchmark::State& state) {
            for (auto const _ : state) {
                (void)_;
                auto const subject = makeSubject();
                subject->ShowFirstFrame();
                state.PauseTiming();
                delete subject;
                state.ResumeTiming();
            }
        };
    };
    SetUp(benchmark::RegisterBenchmark("open/panel",
                                       open([&] { return new PanelSubject(host, items); })));
    SetUp(benchmark::RegisterBenchmark("open/peer", open([&] { return new PeerSubject(items); })));
}

/// The host by itself, before anything shows its library.
void RegisterOpenLibrary(CEmbeddedHost& host, QString const& folder)
{
    auto const open = [&host, folder](benchmark::State& state) {
        for (auto const _ : state) {
            (void)_;
            state.PauseTiming();
            host.CloseLibrary();
            state.ResumeTiming();
            host.OpenLibrary(folder);
        }
    };
    // It may use threads of its own.
    SetUp(benchmark::RegisterBenchmark("OpenLibrary/panel", open))
        ->Repetitions(3)
        ->MeasureProcessCPUTime();
}

void RegisterAll(PanelSubject& panel, PeerSubject& peer)
{
    auto const repeat = [](void (Subject::*step)()) {
        return [step](benchmark::State& state, Subject& subject) {
            subject.Type(QString());
            for (auto const _ : state) {
                (void)_;
                (subject.*step)();
            }
        };
    };
    Register("rebuild", repeat(&Subject::Rebuild), panel, peer);
    Register("rename", repeat(&Subject::Rename), panel, peer);
    RegisterAdd(panel, peer);
    RegisterKeystroke("", "a", panel, peer);
    RegisterKeystroke("a", "ad", panel, peer);
    RegisterKeystroke("ad", "add", panel, peer);
    RegisterKeystroke("mul ad", "mul add", panel, peer);
    RegisterKeystroke("qq", "qqq", panel, peer);
    RegisterKeystroke("add", "", panel, peer);
    Register("scroll step", repeat(&Subject::Scroll), panel, peer);
    Register("press", repeat(&Subject::Press), panel, peer);
    Register("hover", repeat(&Subject::Hover), panel, peer);
    Register("tags notification", repeat(&Subject::ChangeTags), panel, peer);
    RegisterTagsAndKeystroke(panel, peer);
}

std::size_t GetHeapBytes()
{
    struct mallinfo2 const heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

/// What a panel takes beyond what the host holds.
void PrintMemory(CEmbeddedHost& host, std::vector<ListedItem> const& items)
{
    // Whatever is made on first use is made for this one.
    PanelSubject(host, items).ShowFirstFrame();
    std::size_t const before = GetHeapBytes();
    PanelSubject panel(host, items);
    panel.ShowFirstFrame();
    std::cout << items.size() << " items: the panel takes "
              << (GetHeapBytes() - before) / items.size() << " bytes an item\n";
}

/// Of the process, so far.
long GetPeakMiB()
{
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

/// Opens the library, paints the first frame and says how long that took.
void OpenAndPaint(CEmbeddedHost& host, QString const& folder)
{
    QElapsedTimer timer;
    timer.start();
    bool const isOpen = host.OpenLibrary(folder);
    qint64 const openTime = timer.elapsed();
    std::vector<ListedItem> const noItems;
    PanelSubject panel(host, noItems);
    panel.ShowFirstFrame();
    std::cout << qPrintable(host.GetLibraryName()) << ": "
              << (isOpen ? "read after " : "could not be read after ") << openTime
              << " ms, first frame after " << timer.elapsed() << " ms, " << GetPeakMiB()
              << " MiB of memory at the most" << std::endl;
}

void MeasureGenerated(CEmbeddedHost& host, unsigned long itemCount, Measurements& measurements)
{
    QTemporaryDir folder;
    GenerateLibrary(folder.path(), itemCount);
    OpenAndPaint(host, folder.path());
    measurements.SetItemCount(itemCount);
    auto const run = [&] {
        benchmark::RunSpecifiedBenchmarks(&measurements);
        benchmark::ClearRegisteredBenchmarks();
    };
    RegisterOpenLibrary(host, folder.path());
    run();

    std::vector<ListedItem> const items = ReadListedItems(host.GetLibrary());
    PrintMemory(host, items);
    RegisterOpen(host, items);
    run();

    PanelSubject panel(host, items);
    PeerSubject peer(items);
    panel.ShowFirstFrame();
    peer.ShowFirstFrame();
    RegisterAll(panel, peer);
    run();
}

/// Takes the options out of the arguments; given options come after the defaults and win.
std::vector<unsigned long> ReadArguments(int argc, char** argv)
{
    // Repetitions of panel and peer take turns, so that a busy machine slows both.
    char repetitions[] = "--benchmark_repetitions=9";
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char minTime[] = "--benchmark_min_time=0.05";
    std::vector<char*> arguments = {argv[0], repetitions, interleaving, minTime};
    std::copy(argv + 1, argv + argc, std::back_inserter(arguments));
    int count = int(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());

    std::vector<unsigned long> itemCounts;
    for (int i = 1; i < count; ++i)
        itemCounts.push_back(std::strtoul(arguments[std::size_t(i)], nullptr, 10));
    if (itemCounts.empty())
        itemCounts = {1000, 10000, 100000};
    return itemCounts;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    std::vector<unsigned long> const itemCounts = ReadArguments(argc, argv);
    QApplication application(argc, argv);
    // The platform warns of each window that is shown.
    QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, false);
    QApplication::setStyle(new CEditorStyle);
    PrepareForPictures();

    CEmbeddedHost host;
    OpenAndPaint(host, QStringLiteral(PANELBENCH_SAMPLE_LIBRARY));
    Measurements measurements;
    for (unsigned long const itemCount : itemCounts)
        MeasureGenerated(host, itemCount, measurements);
    measurements.Print(std::cout);
    return 0;
}
