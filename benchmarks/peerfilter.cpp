#include "peerfilter.h"

#include "peermodel.h"
#include "stringutils.h"

#include <algorithm>

namespace {

unsigned const kTagMatch = 1000;
unsigned const kNoMatch = 10000;

} // namespace

PeerFilter::PeerFilter(PeerModel& model)
    : m_Model(model)
{
    setSourceModel(&model);
    sort(0);
}

void PeerFilter::SetText(QString const& text)
{
    std::set<std::string> words;
    SplitString(QStringToStdString(text.toLower()), words);
    m_Words.assign(words.begin(), words.end());
    invalidate();
}

bool PeerFilter::filterAcceptsRow(int row, QModelIndex const& /*parent*/) const
{
    unsigned const score = Score(row);
    m_Model.SetScore(row, score);
    return score != kNoMatch;
}

bool PeerFilter::lessThan(QModelIndex const& left, QModelIndex const& right) const
{
    // The sort is stable and starts from the order of the source.
    return m_Model.GetScore(left.row()) < m_Model.GetScore(right.row());
}

unsigned PeerFilter::Score(int row) const
{
    std::string const& name = m_Model.GetSearchName(row);
    unsigned const wordCount = unsigned(m_Words.size());
    unsigned score = m_Words.empty() ? 0 : kNoMatch;
    for (unsigned word = 0; word < wordCount; ++word) {
        std::size_t const found = name.find(m_Words[word]);
        if (found == 0)
            return word;
        if (found != std::string::npos)
            score = word + wordCount;
        else if (score == kNoMatch && HasTagWith(row, m_Words[word]))
            score = kTagMatch;
    }
    return score;
}

bool PeerFilter::HasTagWith(int row, std::string const& word) const
{
    std::vector<std::string> const& tags = m_Model.GetSearchTags(row);
    return std::any_of(tags.begin(), tags.end(),
                       [&](std::string const& tag) { return tag.find(word) != std::string::npos; });
}
