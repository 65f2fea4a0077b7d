#ifndef EDITOR_LIBRARYWORDS_H
#define EDITOR_LIBRARYWORDS_H

#include <string>
#include <vector>

/// What names of generated items are put together from.
std::vector<std::string> const& NameWords();
/// What generated items are tagged with: about 200 words.
std::vector<std::string> const& TagWords();

#endif
