#include "filevalues.h"

#include <nlohmann/json.hpp>

#include <cctype>
#include <cstdlib>
#include <set>

using nlohmann::json;

namespace {

/// One form for all ways to write the same number: "-1.50E+2" is "-15e1".
std::string NormalizeNumber(std::string const& raw)
{
    auto const exponentAt = raw.find_first_of("eE");
    std::string const mantissa = raw.substr(0, exponentAt);
    long exponent =
        exponentAt == std::string::npos ? 0 : std::strtol(&raw[exponentAt + 1], nullptr, 10);
    auto const point = mantissa.find('.');
    if (point != std::string::npos)
        exponent -= long(mantissa.size() - point - 1);
    std::string digits;
    for (char const character : mantissa) {
        bool const isDigit = std::isdigit(static_cast<unsigned char>(character));
        if (isDigit && !(digits.empty() && character == '0'))
            digits += character;
    }
    for (; !digits.empty() && digits.back() == '0'; ++exponent)
        digits.pop_back();
    if (digits.empty())
        return "0";
    return (mantissa[0] == '-' ? "-" : "") + digits + 'e' + std::to_string(exponent);
}

/// Collects the values as they are parsed, without a tree that could be too deep.
class ValueCollector : public nlohmann::json_sax<json>
{
public:
    FileValues const& GetValues() const
    {
        return m_Values;
    }

    bool null() override
    {
        return AddValue("null");
    }
    bool boolean(bool value) override
    {
        return AddValue(value ? "true" : "false");
    }
    bool number_integer(number_integer_t value) override
    {
        return AddValue(NormalizeNumber(std::to_string(value)));
    }
    bool number_unsigned(number_unsigned_t value) override
    {
        return AddValue(NormalizeNumber(std::to_string(value)));
    }
    bool number_float(number_float_t, string_t const& raw) override
    {
        return AddValue(NormalizeNumber(raw));
    }
    bool string(string_t& value) override
    {
        bool const isUid = IsAtMember() && !m_Values.entries.back().members.empty()
                           && m_Values.entries.back().members.back().first == "uid";
        if (isUid)
            m_Values.entries.back().uid = FoldUid(value);
        return AddValue('"' + value);
    }
    bool binary(binary_t&) override
    {
        return false;
    }

    bool start_object(std::size_t) override
    {
        if (m_Keys.size() == m_Base)
            m_Values.entries.emplace_back();
        else
            Append("{");
        m_Keys.emplace_back();
        return true;
    }
    bool key(string_t& key) override
    {
        m_Values.entries.back().hasTwinKeys |= !m_Keys.back().insert(key).second;
        if (m_Keys.size() == m_Base + 1)
            m_Values.entries.back().members.emplace_back(key, std::string());
        else
            Append(key + ':');
        return true;
    }
    bool end_object() override
    {
        return End("}");
    }

    bool start_array(std::size_t) override
    {
        if (m_Keys.empty()) {
            m_Base = 1;
            m_Values.isArray = true;
        } else {
            AddValue("[");
        }
        m_Keys.emplace_back();
        return true;
    }
    bool end_array() override
    {
        return End("]");
    }

    bool parse_error(std::size_t, std::string const&, json::exception const&) override
    {
        return false;
    }

private:
    bool IsAtMember() const
    {
        return m_Keys.size() == m_Base + 1;
    }

    bool AddValue(std::string const& text)
    {
        // A file of a single primitive value has no objects.
        if (m_Keys.empty())
            return false;
        if (m_Keys.size() == m_Base) {
            m_Values.entries.emplace_back();
            m_Values.entries.back().members.emplace_back();
        }
        Append(text);
        return true;
    }

    bool End(char const* sign)
    {
        m_Keys.pop_back();
        if (m_Keys.size() > m_Base)
            Append(sign);
        return true;
    }

    void Append(std::string const& text)
    {
        m_Values.entries.back().members.back().second += text + '\n';
    }

    FileValues m_Values;
    /// The open objects and arrays, outermost first.
    std::vector<std::set<std::string>> m_Keys;
    /// How many of them are around an object of the file.
    std::size_t m_Base = 0;
};

} // namespace

std::string FoldUid(std::string text)
{
    for (char& character : text)
        character = char(std::toupper(static_cast<unsigned char>(character)));
    return text;
}

std::optional<FileValues> ReadFileValues(QByteArray const& text)
{
    ValueCollector collector;
    if (!json::sax_parse(text.begin(), text.end(), &collector))
        return std::nullopt;
    return collector.GetValues();
}
