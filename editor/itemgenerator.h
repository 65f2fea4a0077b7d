#ifndef EDITOR_ITEMGENERATOR_H
#define EDITOR_ITEMGENERATOR_H

#include <nlohmann/json.hpp>

#include <random>
#include <string>
#include <unordered_map>
#include <vector>

/// Makes up items, the same sequence in every run and on every machine.
class ItemGenerator
{
public:
    nlohmann::ordered_json MakeFactoryItem();
    nlohmann::ordered_json MakeCompound();
    std::string MakeUid();

private:
    nlohmann::ordered_json MakeItem(char const* kind);
    nlohmann::ordered_json MakeSignature();
    std::string MakeName();
    std::string MakeTags();

    std::uint32_t Below(std::uint32_t limit);
    bool Chance(std::uint32_t percent);
    std::string const& Pick(std::vector<std::string> const& words);

    /// The seed is the engine's default, and its sequence is fixed by the language; the standard
    /// distributions are not, so they are not used.
    std::mt19937 m_Engine;
    /// How often a name has come up.
    std::unordered_map<std::string, unsigned> m_Names;
    /// Uids of signatures to implement.
    std::vector<std::string> m_Signatures;
};

#endif
