#include "uidtext.h"

#include <array>

namespace hostkit {

namespace {

constexpr std::size_t kUidLength = 36;

/// The values of hexadecimal digits by character, -1 for all other characters.
std::array<signed char, 256> MakeDigitValues()
{
    std::array<signed char, 256> values;
    values.fill(-1);
    for (int i = 0; i < 10; ++i)
        values[std::size_t('0' + i)] = static_cast<signed char>(i);
    for (int i = 0; i < 6; ++i) {
        values[std::size_t('A' + i)] = static_cast<signed char>(10 + i);
        values[std::size_t('a' + i)] = static_cast<signed char>(10 + i);
    }
    return values;
}

bool HasUidForm(std::string_view text)
{
    return text.size() == kUidLength && text[8] == '-' && text[13] == '-' && text[18] == '-'
           && text[23] == '-';
}

} // namespace

bool ParseUid(std::string_view text, UidKey& key)
{
    static auto const digitValues = MakeDigitValues();
    if (!HasUidForm(text))
        return false;
    // Branchless per digit, because it runs for every item of a library at each rebuild of a list.
    int all = 0;
    auto const read = [&](std::size_t begin, std::size_t end, std::uint64_t value) {
        for (std::size_t i = begin; i < end; ++i) {
            int const digit = digitValues[static_cast<unsigned char>(text[i])];
            all |= digit;
            value = value << 4 | std::uint64_t(digit & 0xF);
        }
        return value;
    };
    key.high = read(14, 18, read(9, 13, read(0, 8, 0)));
    key.low = read(24, 36, read(19, 23, 0));
    return all >= 0;
}

} // namespace hostkit
