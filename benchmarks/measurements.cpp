#include "measurements.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace {

int const kNameWidth = 26;
int const kColumnWidth = 12;

void PrintHeading(std::ostream& out)
{
    out << std::left << std::setw(kNameWidth) << "operation" << std::right;
    for (char const* const column : {"items", "panel ms", "peer ms", "peer/panel", "growth"})
        out << std::setw(kColumnWidth) << column;
    out << '\n';
}

} // namespace

/// Blank for an operation without a peer.
void Measurements::PrintPeer(std::ostream& out, STimes const& times)
{
    out << std::setw(kColumnWidth);
    if (times.peer > 0)
        out << times.peer << std::setprecision(2) << std::setw(kColumnWidth)
            << times.peer / times.panel;
    else
        out << "" << std::setprecision(2) << std::setw(kColumnWidth) << "";
}

void Measurements::SetItemCount(unsigned long itemCount)
{
    m_ItemCount = itemCount;
}

bool Measurements::ReportContext(Context const& /*context*/)
{
    return true;
}

void Measurements::ReportRuns(std::vector<Run> const& runs)
{
    for (Run const& run : runs) {
        std::string const name = run.run_name.function_name;
        std::size_t const slash = name.rfind('/');
        if (run.aggregate_name != "median" || slash == std::string::npos)
            continue;
        STimes& times = TimesOf(name.substr(0, slash))[m_ItemCount];
        (name.substr(slash + 1) == "panel" ? times.panel : times.peer) = run.GetAdjustedCPUTime();
    }
}

Measurements::TimesByItemCount& Measurements::TimesOf(std::string const& operation)
{
    auto const known = std::find_if(m_Operations.begin(), m_Operations.end(),
                                    [&](auto const& entry) { return entry.first == operation; });
    if (known != m_Operations.end())
        return known->second;
    m_Operations.emplace_back(operation, TimesByItemCount());
    return m_Operations.back().second;
}

void Measurements::Print(std::ostream& out) const
{
    PrintHeading(out);
    out << std::fixed;
    for (auto const& operation : m_Operations) {
        double previousPerItem = 0;
        for (auto const& entry : operation.second) {
            STimes const& times = entry.second;
            double const perItem = times.panel / double(entry.first);
            out << std::left << std::setw(kNameWidth) << operation.first << std::right
                << std::setw(kColumnWidth) << entry.first << std::setprecision(3)
                << std::setw(kColumnWidth) << times.panel;
            PrintPeer(out, times);
            if (previousPerItem > 0)
                out << std::setw(kColumnWidth) << perItem / previousPerItem;
            out << '\n';
            previousPerItem = perItem;
        }
    }
    out << "Medians of processor time; growth is the panel's time per item beside the row above, "
           "1 is linear.\n";
}
