#include "searchreference.h"

#include <QString>

#include <algorithm>
#include <locale>
#include <sstream>

namespace {

std::string Lower(std::string const& text)
{
    return QString::fromLatin1(text.c_str()).toLower().toLatin1().toStdString();
}

bool EqualIgnoringCase(char a, char b)
{
    std::locale const& plain = std::locale::classic();
    return std::toupper(a, plain) == std::toupper(b, plain);
}

bool AnyTagContains(std::set<std::string> const& tags, std::string const& word)
{
    return std::any_of(tags.begin(), tags.end(), [&](std::string const& tag) {
        return std::search(tag.begin(), tag.end(), word.begin(), word.end(), EqualIgnoringCase)
               != tag.end();
    });
}

std::set<std::string> Words(std::string const& text)
{
    std::istringstream stream(Lower(text));
    std::set<std::string> words;
    for (std::string word; stream >> word;)
        words.insert(word);
    return words;
}

} // namespace

unsigned long ReferenceScore(std::string const& name, std::set<std::string> const& tags,
                             std::string const& searchText)
{
    std::set<std::string> const words = Words(searchText);
    if (words.empty())
        return 0;
    unsigned long score = 10000;
    unsigned long number = 0;
    for (std::string const& word : words) {
        std::size_t const place = Lower(name).find(word);
        if (place == 0)
            return number;
        if (place != std::string::npos)
            score = number + words.size();
        else if (score == 10000 && AnyTagContains(tags, word))
            score = 1000;
        ++number;
    }
    return score;
}

RandomTexts::RandomTexts(unsigned int seed)
    : m_Engine(seed)
{}

std::size_t RandomTexts::Number(std::size_t below)
{
    return m_Engine() % below;
}

std::string RandomTexts::Text(std::size_t maximum)
{
    // With a blank, a letter outside ASCII in both cases, and what is special elsewhere.
    std::string const letters = "aabbcABC_* \xE4\xC4";
    std::string text(Number(maximum + 1), ' ');
    for (char& letter : text)
        letter = letters[Number(letters.size())];
    return text;
}

std::string RandomTexts::Tags()
{
    std::string tags;
    for (std::size_t count = Number(4); count > 0; --count)
        tags += Text(4) + ";";
    return tags;
}

std::string RandomTexts::SearchText()
{
    std::string text;
    for (std::size_t count = Number(5); count > 0; --count)
        text += Text(3) + " ";
    return text;
}
