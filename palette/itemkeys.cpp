#include "itemkeys.h"

#include <algorithm>

namespace nodepalette {

namespace {

/// A position behind all places.
std::uint8_t const kNowhere = kPlaceCount;

} // namespace

template <class Visit>
void ItemKeys::ForEachItem(Visit visit) const
{
    if (m_AreMany) {
        for (std::size_t item = 0; item < m_Names->GetCount(); ++item)
            visit(item);
    } else {
        for (unsigned long const item : *m_Items)
            visit(item);
    }
}

void ItemKeys::Begin(NameTable const& names, NameRank const& rank, Items const& items)
{
    m_Names = &names;
    m_Rank = &rank;
    m_Items = &items;
    m_AreMany = items.size() > names.GetCount() / 3;
    m_IsLastSingle = false;
    m_Keys.resize(names.GetCount());
    m_Found.resize(names.GetCount());
    m_Ends.assign(names.GetCount(), kNowhere);
    m_EndsBefore.resize(names.GetCount());
    ForEachItem([&](std::size_t item) {
        m_Keys[item] = rank.RankWhole(names.GetShape(item), [&] { return names.GetText(item); });
    });
}

void ItemKeys::FindInNames(SSearchWord const& word)
{
    std::fill(m_Found.begin(), m_Found.end(), std::uint8_t(0));
    m_EndsBefore.swap(m_Ends);
    std::fill(m_Ends.begin(), m_Ends.end(), kNowhere);
    if (word.isSingle || m_IsLastSingle)
        std::fill(m_EndsBefore.begin(), m_EndsBefore.end(), kNowhere);
    m_IsLastSingle = word.isSingle;
    auto const note = [&](std::size_t item, std::size_t place) {
        NoteHit(word, item, place);
    };
    if (word.isLetter)
        FindLetter(word);
    else if (m_AreMany)
        m_Names->ForEachPlaceOf(word, 0, m_Names->GetCount(), note);
    else
        ForEachItem([&](std::size_t item) {
            if ((word.letters & ~m_Names->GetLetters(item)) == 0)
                m_Names->ForEachPlaceOf(word, item, item + 1, note);
        });
}

void ItemKeys::FindLetter(SSearchWord const& word)
{
    NameRank::SGains const gains = m_Rank->GetGains();
    NameRank::Key* const keys = m_Keys.data();
    std::uint8_t* const found = m_Found.data();
    LetterMask const letter = word.letters;
    ForEachItem([=, names = m_Names](std::size_t item) {
        bool const isFound = (names->GetLetters(item) & letter) != 0;
        bool const isStart = (names->GetStartLetters(item) & letter) != 0;
        keys[item] -= isFound * gains.inName + isStart * gains.atStart;
        found[item] = isFound;
    });
}

/// Nearly without branches, which could not be predicted here. A word is in order at any place
/// behind the previous word: "rgb noise" is in order in "noise rgb noise".
void ItemKeys::NoteHit(SSearchWord const& word, std::size_t item, std::size_t place)
{
    unsigned const found = m_Found[item];
    unsigned const isNew = !found;
    std::size_t const end = place + word.text.size();
    unsigned isStart = 0;
    unsigned isInOrder = 0;
    if (end <= kPlaceCount) {
        isStart = (m_Names->GetWordStarts(item) >> place & 1) & ((found & eAtStart) == 0);
        isInOrder = (place >= m_EndsBefore[item]) & ((found & eInOrder) == 0);
        // The end at the first word start, or else at the first place.
        m_Ends[item] = isNew | isStart ? static_cast<std::uint8_t>(end) : m_Ends[item];
    }
    NameRank::SGains const& gains = m_Rank->GetGains();
    m_Keys[item] -= isNew * gains.inName + isStart * gains.atStart + isInOrder * gains.inOrder;
    m_Found[item] =
        static_cast<std::uint8_t>(found | eAnywhere | isStart * eAtStart | isInOrder * eInOrder);
}

/// Skips items whose name has the word.
void ItemKeys::AddTagged(std::vector<std::uint32_t> const& items)
{
    NameRank::Key const gain = m_Rank->GetGains().inTag;
    NameRank::Key* const keys = m_Keys.data();
    std::uint8_t* const found = m_Found.data();
    for (std::uint32_t const item : items) {
        keys[item] -= (found[item] == 0) * gain;
        found[item] |= eAnywhere;
    }
}

} // namespace nodepalette
