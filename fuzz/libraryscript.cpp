#include "libraryscript.h"

namespace {

/// `step` begins behind the "%%".
Step ParseStep(QByteArray const& step)
{
    auto const lineEnd = step.indexOf('\n');
    QByteArray const line = (lineEnd < 0 ? step : step.left(lineEnd)).simplified();
    auto const blank = line.indexOf(' ');
    QByteArray const verb = blank < 0 ? line : line.left(blank);
    int const number = blank < 0 ? 0 : line.mid(blank + 1).toInt();
    return {verb.toStdString(), number < 0 ? 0 : number,
            lineEnd < 0 ? QByteArray() : step.mid(lineEnd + 1)};
}

} // namespace

std::vector<Step> ParseScript(QByteArray const& script)
{
    QByteArray const separator("\n%%");
    QByteArray const text = '\n' + script;
    std::vector<Step> steps;
    for (auto at = text.indexOf(separator); at >= 0;) {
        auto const begin = at + separator.size();
        at = text.indexOf(separator, begin);
        steps.push_back(ParseStep(at < 0 ? text.mid(begin) : text.mid(begin, at - begin)));
    }
    return steps;
}
