#ifndef NODEBROWSER_TESTS_SEARCHREFERENCE_H
#define NODEBROWSER_TESTS_SEARCHREFERENCE_H

#include <random>
#include <set>
#include <string>

/// How well one item matches a search text, told the plain way: word by word, in their order.
/// 10000 is no match.
unsigned long ReferenceScore(std::string const& name, std::set<std::string> const& tags,
                             std::string const& searchText);

/// Names, tags and texts made of few letters, so that they match each other often.
class RandomTexts
{
public:
    explicit RandomTexts(unsigned int seed);

    std::size_t Number(std::size_t below);
    /// Up to that many characters, possibly none.
    std::string Text(std::size_t maximum);
    /// Tags separated by ";".
    std::string Tags();
    /// Up to five words.
    std::string SearchText();

private:
    std::mt19937 m_Engine;
};

#endif
