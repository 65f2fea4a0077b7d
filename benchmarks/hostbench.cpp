#include "gitlibrary.h"
#include "libraryuser.h"

#include <sourcecontrol.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

// What saves and source control cost on a library in a git work tree: medians, in milliseconds.

namespace {

int const kRuns = 5;
/// In milliseconds: until the watcher has read what there is to read.
int const kWatcherTime = 3000;

double GetMedian(std::vector<double> values)
{
    auto const middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double Measure(std::function<void()> const& action)
{
    QElapsedTimer time;
    time.start();
    action();
    return double(time.nsecsElapsed()) / 1e6;
}

void Check(bool isDone, char const* what)
{
    if (!isDone)
        qFatal("%s failed", what);
}

double SaveChanged(GitLibrary const& library, int count)
{
    std::vector<double> times;
    LibraryUser user(*library.host);
    for (int run = 0; run < kRuns; ++run) {
        std::string const tag = std::to_string(count) + "-" + std::to_string(run);
        for (int number = 0; number < count; ++number)
            Check(user.Tag(library.GetItem(number), tag.c_str()), "a change");
        times.push_back(Measure([&] { Check(user.Save(), "a save"); }));
    }
    return GetMedian(times);
}

struct StatusTimes
{
    double all;
    double longestHold;
};

/// `longestHold` is the longest time between two turns of the event loop.
StatusTimes RequestStates(ScsTask& task, StateRecorder& recorder, ObjectList const& objects)
{
    recorder.count = 0;
    QElapsedTimer sinceTurn;
    qint64 longest = 0;
    // Keeps the event loop turning.
    QTimer turns;
    turns.start(0);
    sinceTurn.start();
    double const all = Measure([&] {
        task.RequestObjectStates(objects);
        while (recorder.count < int(objects.size())) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            longest = std::max(longest, sinceTurn.nsecsElapsed());
            sinceTurn.restart();
        }
    });
    return {all, double(longest) / 1e6};
}

/// The saves have set the folder watcher going, which is measured apart from states.
void WaitForWatcher()
{
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < kWatcherTime)
        QCoreApplication::processEvents(QEventLoop::AllEvents, kWatcherTime);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication const application(argc, argv);
    QTemporaryDir const home;
    GitFolder::UseNoSettings(home.path());
    GitLibrary const library(20000);

    std::printf("save of 1 changed object      %8.1f ms\n", SaveChanged(library, 1));
    std::printf("save of 1,000 changed objects %8.1f ms\n", SaveChanged(library, 1000));

    WaitForWatcher();
    ObjectList const objects = library.GetObjects();
    StateRecorder recorder(library.host->GetLibrary());
    ScsTask* const task = new ScsTask(QStringLiteral("hostbench"));
    std::vector<double> all;
    std::vector<double> holds;
    for (int run = 0; run < kRuns; ++run) {
        StatusTimes const times = RequestStates(*task, recorder, objects);
        all.push_back(times.all);
        holds.push_back(times.longestHold);
    }
    task->DeleteMe();
    std::printf("states of 20,000 files        %8.1f ms\n", GetMedian(all));
    std::printf("  longest hold of the thread  %8.1f ms\n",
                *std::max_element(holds.begin(), holds.end()));
    return 0;
}
