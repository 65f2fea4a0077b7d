#include "nodeids.h"

#include "graphedits.h"

#include <QString>

#include <algorithm>
#include <cctype>

namespace {

/// "Vector Length" -> "vector-length".
std::string MakeIdStem(std::string const& name)
{
    QString stem;
    for (QChar const character : QString::fromStdString(name).toLower()) {
        if (character.isLetterOrNumber())
            stem += character;
        else if (!stem.isEmpty() && !stem.endsWith(QLatin1Char('-')))
            stem += QLatin1Char('-');
    }
    while (stem.endsWith(QLatin1Char('-')))
        stem.chop(1);
    return stem.isEmpty() ? "node" : stem.toStdString();
}

/// Without the number that an earlier copy got.
std::string StripNumber(std::string const& id)
{
    std::size_t const dash = id.find_last_of('-');
    bool const isNumbered =
        dash != std::string::npos && dash > 0 && dash + 1 < id.size()
        && std::all_of(id.begin() + static_cast<std::ptrdiff_t>(dash) + 1, id.end(),
                       [](unsigned char digit) { return std::isdigit(digit); });
    return isNumbered ? id.substr(0, dash) : id;
}

} // namespace

CNodeIds::CNodeIds(embeddedhost::GraphBody const& body)
    : m_Taken{kInputsNode, kOutputsNode}
{
    for (embeddedhost::GraphNode const& node : body.nodes)
        m_Taken.insert(node.id);
}

std::string CNodeIds::TakeFor(std::string const& itemName)
{
    return Take(MakeIdStem(itemName));
}

std::string CNodeIds::TakeLike(std::string const& id)
{
    return Take(StripNumber(id));
}

std::string CNodeIds::Take(std::string const& stem)
{
    if (m_Taken.insert(stem).second)
        return stem;
    // Ids are never given back, so a number that was not free will not be.
    int& number = m_Numbers.emplace(stem, 2).first->second;
    for (;;) {
        std::string id = stem + '-' + std::to_string(number++);
        if (m_Taken.insert(id).second)
            return id;
    }
}
