#include "storage/jsontext.h"

#include <algorithm>

namespace embeddedhost {

namespace {

constexpr char const* kBlanks = " \t\r\n";

bool Opens(char character)
{
    return character == '{' || character == '[';
}

bool Closes(char character)
{
    return character == '}' || character == ']';
}

/// Walks a text. At its end everything is empty, also if the text was not JSON.
class JsonWalk
{
public:
    explicit JsonWalk(std::string_view text)
        : m_Text(text)
    {}

    bool IsAtEnd() const
    {
        return m_Position >= m_Text.size();
    }

    std::size_t GetPosition() const
    {
        return m_Position;
    }

    char GetCharacter() const
    {
        return IsAtEnd() ? '\0' : m_Text[m_Position];
    }

    /// All of these characters that come next.
    std::string_view TakeAny(char const* characters)
    {
        return TakeTo(m_Text.find_first_not_of(characters, m_Position));
    }

    /// The next string, bracket or anything between them.
    std::string_view TakeToken()
    {
        if (GetCharacter() == '"')
            return TakeString();
        if (Opens(GetCharacter()) || Closes(GetCharacter()))
            return TakeTo(m_Position + 1);
        return TakeTo(m_Text.find_first_of("\"{}[]", m_Position));
    }

    std::string_view TakeString()
    {
        std::size_t end = m_Text.find('"', m_Position + 1);
        while (end != m_Text.npos && IsEscaped(end))
            end = m_Text.find('"', end + 1);
        return TakeTo(end == m_Text.npos ? end : end + 1);
    }

    std::string_view TakeValue()
    {
        if (GetCharacter() == '"')
            return TakeString();
        if (!Opens(GetCharacter()))
            return TakeTo(m_Text.find_first_of(",]} \t\r\n", m_Position));
        std::size_t const begin = m_Position;
        int depth = 0;
        do {
            char const first = TakeToken().front();
            depth += int(Opens(first)) - int(Closes(first));
        } while (depth > 0 && !IsAtEnd());
        return m_Text.substr(begin, m_Position - begin);
    }

private:
    /// There is an odd number of backslashes before the quote of a string that begins before it.
    bool IsEscaped(std::size_t quote) const
    {
        std::size_t first = quote;
        while (first > m_Position + 1 && m_Text[first - 1] == '\\')
            --first;
        return (quote - first) % 2 == 1;
    }

    std::string_view TakeTo(std::size_t end)
    {
        std::size_t const begin = m_Position;
        m_Position = std::min(end, m_Text.size());
        return m_Text.substr(begin, m_Position - begin);
    }

    std::string_view const m_Text;
    std::size_t m_Position = 0;
};

} // namespace

std::string_view TrimJson(std::string_view text)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark)
        text.remove_prefix(kByteOrderMark.size());
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

JsonParts SplitJson(std::string_view text)
{
    JsonParts parts;
    bool const isObject = text.substr(0, 1) == "{";
    // Without the closing bracket, so that the walk ends after the last child.
    JsonWalk walk(text.substr(0, text.size() - 1));
    walk.TakeToken();
    while (true) {
        JsonPart part;
        part.separator = walk.TakeAny(" \t\r\n,");
        if (walk.IsAtEnd()) {
            parts.end = part.separator;
            return parts;
        }
        if (isObject) {
            part.key = walk.TakeString();
            part.colon = walk.TakeAny(" \t\r\n:");
        }
        part.value = walk.TakeValue();
        parts.all.push_back(part);
    }
}

std::size_t FindJsonDepth(std::string_view text, int levels)
{
    JsonWalk walk(text);
    for (int depth = 0; !walk.IsAtEnd();) {
        std::size_t const position = walk.GetPosition();
        char const first = walk.TakeToken().front();
        depth += int(Opens(first)) - int(Closes(first));
        if (depth > levels)
            return position;
    }
    return text.size();
}

} // namespace embeddedhost
