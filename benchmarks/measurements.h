#ifndef BENCHMARKS_MEASUREMENTS_H
#define BENCHMARKS_MEASUREMENTS_H

#include <benchmark/benchmark.h>

#include <iosfwd>
#include <map>
#include <string>
#include <utility>

/// Collects the medians of benchmarks that are named "operation/panel" and "operation/peer",
/// and prints them beside each other.
class Measurements : public benchmark::BenchmarkReporter
{
public:
    /// Of the library that the following benchmarks run on.
    void SetItemCount(unsigned long itemCount);

    bool ReportContext(Context const& context) override;
    void ReportRuns(std::vector<Run> const& runs) override;

    void Print(std::ostream& out) const;

private:
    /// Milliseconds of processor time.
    struct STimes
    {
        double panel = 0;
        double peer = 0;
    };

    typedef std::map<unsigned long, STimes> TimesByItemCount;

    static void PrintPeer(std::ostream& out, STimes const& times);
    TimesByItemCount& TimesOf(std::string const& operation);

    unsigned long m_ItemCount = 0;
    /// In the order in which they came first.
    std::vector<std::pair<std::string, TimesByItemCount>> m_Operations;
};

#endif
