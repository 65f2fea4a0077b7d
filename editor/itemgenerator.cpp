#include "itemgenerator.h"

#include "librarywords.h"

#include <cstdio>
#include <set>

using nlohmann::ordered_json;

namespace {

/// The maximum number of signatures that get implementations: as many as a person could tell apart.
std::size_t const kMostSignatures = 64;

} // namespace

ordered_json ItemGenerator::MakeFactoryItem()
{
    std::uint32_t const percent = Below(100);
    if (percent < 64)
        return MakeItem("solver");
    if (percent < 74)
        return MakeItem("polymorphicSolver");
    if (percent < 83)
        return MakeCompound();
    if (percent < 86)
        return MakeSignature();
    return MakeItem(percent < 94 ? "constant" : "type");
}

ordered_json ItemGenerator::MakeCompound()
{
    ordered_json compound = MakeItem("compound");
    if (!m_Signatures.empty() && Chance(15))
        compound["implements"] = Pick(m_Signatures);
    if (Chance(10))
        compound["loop"] = true;
    return compound;
}

ordered_json ItemGenerator::MakeSignature()
{
    ordered_json signature = MakeItem("compound");
    signature["signature"] = true;
    if (m_Signatures.size() < kMostSignatures)
        m_Signatures.push_back(signature["uid"].get<std::string>());
    return signature;
}

ordered_json ItemGenerator::MakeItem(char const* kind)
{
    // One after the other: in a single expression the order of the draws would be the compiler's.
    ordered_json item;
    item["uid"] = MakeUid();
    item["kind"] = kind;
    item["name"] = MakeName();
    std::string const tags = MakeTags();
    if (!tags.empty())
        item["tags"] = {{"ApplicationTags", tags}};
    return item;
}

std::string ItemGenerator::MakeUid()
{
    unsigned const a = m_Engine(), b = m_Engine(), c = m_Engine(), d = m_Engine();
    char text[37];
    std::snprintf(text, sizeof text, "%08X-%04X-%04X-%04X-%04X%08X", a, b >> 16, b & 0xFFFF,
                  c >> 16, c & 0xFFFF, d);
    return text;
}

std::string ItemGenerator::MakeName()
{
    std::uint32_t const percent = Below(100);
    int const wordCount = percent < 5 ? 1 : percent < 35 ? 2 : percent < 75 ? 3 : 4;
    std::string name = Pick(NameWords());
    for (int i = 1; i < wordCount; ++i)
        name += ' ' + Pick(NameWords());
    unsigned const uses = ++m_Names[name];
    return uses == 1 ? name : name + ' ' + std::to_string(uses);
}

std::string ItemGenerator::MakeTags()
{
    // Two on average.
    std::uint32_t const percent = Below(100);
    std::size_t const count = percent < 10 ? 0 : percent < 30 ? 1 : percent < 60 ? 2 : 3;
    std::set<std::string> tags;
    while (tags.size() < count)
        tags.insert(Pick(TagWords()));
    std::string joined;
    for (std::string const& tag : tags)
        joined += (joined.empty() ? "" : ";") + tag;
    return joined;
}

std::uint32_t ItemGenerator::Below(std::uint32_t limit)
{
    return static_cast<std::uint32_t>(m_Engine() % limit);
}

bool ItemGenerator::Chance(std::uint32_t percent)
{
    return Below(100) < percent;
}

std::string const& ItemGenerator::Pick(std::vector<std::string> const& words)
{
    return words[Below(static_cast<std::uint32_t>(words.size()))];
}
