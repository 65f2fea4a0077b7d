#include "stringutils.h"

#include "textencoding.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/finder.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

namespace {

template <class Predicate>
void SplitAt(std::string const& text, Predicate const& isSeparator, std::set<std::string>& words)
{
    typedef boost::algorithm::split_iterator<std::string::const_iterator> Pieces;
    Pieces piece(text,
                 boost::algorithm::token_finder(isSeparator, boost::algorithm::token_compress_on));
    for (; piece != Pieces(); ++piece) {
        std::string word = boost::copy_range<std::string>(*piece);
        boost::algorithm::trim_if(word, boost::algorithm::is_space(nodebrowser::GetTextLocale()));
        if (!word.empty())
            words.insert(word);
    }
}

} // namespace

void SplitString(std::string const& text, std::set<std::string>& words)
{
    SplitAt(text, boost::algorithm::is_space(nodebrowser::GetTextLocale()), words);
}

void SplitString(std::string const& text, std::string const& delimiters,
                 std::set<std::string>& words)
{
    SplitAt(text, boost::algorithm::is_any_of(delimiters), words);
}
