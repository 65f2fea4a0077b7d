#ifndef EDITOR_LIBRARYWORDS_H
#define EDITOR_LIBRARYWORDS_H

#include <string>
#include <vector>

/// The words that names of generated items are made of.
std::vector<std::string> const& NameWords();
/// The tags of generated items: about 200 words.
std::vector<std::string> const& TagWords();

#endif
