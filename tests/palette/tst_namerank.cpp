#include "loggedtest.h"
#include "namerank.h"
#include "palettetext.h"
#include "rankindex.h"

#include <algorithm>
#include <map>
#include <random>

#include <strings.h>

using namespace nodepalette;

namespace {

/// A list of items as the panel has it: sorted by name.
class Names : public RankIndex::Source
{
public:
    struct SItem
    {
        std::string name;
        std::string tags;
        std::string uid;
    };

    explicit Names(std::vector<SItem> const& items)
        : m_Items(items)
    {
        std::stable_sort(m_Items.begin(), m_Items.end(), [](SItem const& left, SItem const& right) {
            return strcasecmp(left.name.c_str(), right.name.c_str()) < 0;
        });
    }

    std::size_t GetCount() const override
    {
        return m_Items.size();
    }
    std::string GetName(std::size_t item) const override
    {
        return m_Items[item].name;
    }
    std::string GetTags(std::size_t item) const override
    {
        return m_Items[item].tags;
    }
    std::string GetUid(std::size_t item) const override
    {
        return m_Items[item].uid;
    }

    /// All items in their order for the text, as "name/uid".
    std::vector<std::string> Rank(std::string const& text) const
    {
        std::vector<unsigned long> rows(m_Items.size());
        for (std::size_t item = 0; item < rows.size(); ++item)
            rows[item] = item;
        RankIndex index;
        index.Rank(*this, ToSearchForm(text), rows);
        std::vector<std::string> ranked;
        for (unsigned long const item : rows)
            ranked.push_back(m_Items[item].name + "/" + m_Items[item].uid);
        return ranked;
    }

private:
    std::vector<SItem> m_Items;
};

} // namespace

class TestNameRank : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void ordersAsPeopleExpect()
    {
        // A text, and names in the order it gives them; "Soft" is tagged "Blurred".
        std::pair<char const*, char const*> const rows[] = {
            // Both words before one, and the text as a whole, if without its blank.
            {"rgb noise", "Add RGB Noise|RGB|Noise|Noise Bands"},
            {"motion blur", "Linear Motion Blur|Blur|Motion|Blur Image|Motion Vectors"},
            {"audio mixer",
             "audiomixer|Audio Mixer Two|Audio Channel Mixer|Mixer of Audio|Audio|Mixer"},
            // A word's start, which comes after marks, digits and humps, before its inside.
            {"blur", "Blur|Blurring|Blur Mask|Box Blur|Gaussian Blur|Unblur|Deblurring|Soft"},
            {"noise", "-noise|_noise|9noise|bNoise|anoise"},
            {"noise", "RGBNoise|rgbnoise"},
            {"zoom", "xxxZoom|xazoom"},
            {"arc", "xxxArc|xaarc"},
            {"interpolate", "xinterpolate|interpolite"},
            {"add noise", "Add Noise|Add Big Noise|Noise Add"},
            // A letter of any language has no order.
            {"ab é", "é x ab|x ab é x"},
            // The list's order, which takes both letters for others.
            {"b", "bÃ|bã"},
            {"  ADD   noise ", "add NOISE|Add Noise Also|X Add Noise"}};
        for (auto const& [text, expected] : rows) {
            std::vector<Names::SItem> items;
            for (QString const& name : QString(expected).split('|'))
                items.push_back(
                    {name.toLatin1().toStdString(), name == "Soft" ? "Blurred" : "", ""});
            std::string ranked;
            for (std::string const& name :
                 Names(items).Rank(QString(text).toLatin1().toStdString()))
                ranked += '|' + name;
            QCOMPARE(QString::fromLatin1(ranked.c_str()).mid(1).remove('/'), QString(expected));
        }
    }

    void keepsItsPropertiesForAnyTexts()
    {
        std::mt19937 engine(20);
        auto const number = [&](std::size_t below) {
            return engine() % below;
        };
        auto const pick = [&](std::vector<std::string> const& parts, std::size_t most) {
            std::string text;
            for (std::size_t count = number(most) + 1; count > 0; --count)
                text += parts[number(parts.size())];
            return text;
        };
        std::vector<std::string> const parts = {"a", "b", "ab", "Ab", "B", " ", "_", "2", "\xC9"};
        for (int round = 0; round < 300; ++round) {
            std::vector<Names::SItem> items;
            for (int item = 0; item < 40; ++item)
                items.push_back(
                    {pick(parts, 6), number(3) == 0 ? pick(parts, 3) : "", std::to_string(item)});
            std::vector<std::string> const words = {pick({"a", "b"}, 3), pick({"a", "b"}, 3), "2"};
            std::string const text = words[0] + " " + words[1] + " " + words[2];
            items.push_back({text, "", "equal"});

            Names const names(items);
            std::vector<std::string> const ranked = names.Rank(text);
            QCOMPARE(ranked.front(), text + "/equal");

            std::shuffle(items.begin(), items.end(), engine);
            Names const shuffled(items);
            QVERIFY2(shuffled.Rank(text) == ranked, "items were read in another order");

            std::vector<std::string> const distinct = NameRank(text).GetWords();
            std::size_t before = distinct.size();
            // How many of the words are in an item's name or tags, told the plain way.
            std::map<std::string, std::size_t> found;
            for (Names::SItem const& item : items) {
                std::string const all = ToSearchForm(item.name) + ';' + ToSearchForm(item.tags);
                for (std::string const& word : distinct)
                    found[item.name + "/" + item.uid] += all.find(word) != std::string::npos;
            }
            for (std::string const& row : ranked) {
                QVERIFY2(found[row] <= before, "more of the words come first");
                before = found[row];
            }
        }
    }
};

NODEBROWSER_TEST(TestNameRank)

#include "tst_namerank.moc"
