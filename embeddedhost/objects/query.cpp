#include "objects/query.h"

#include "base/text8.h"

#include <cctype>
#include <cstring>

namespace embeddedhost {

namespace {

/// Parses a query from its beginning. After the first fault, all further steps do nothing.
class QueryReader
{
public:
    QueryReader(char const* query, QueryError& error)
        : m_Begin(query)
        , m_At(query)
        , m_Error(error)
    {}

    void TakeKeyword(char const* keyword)
    {
        char const* const at = SkipBlanks();
        if (EqualIgnoringAsciiCase(ReadWord().c_str(), keyword))
            return;
        Fail(at, Quoted(keyword));
    }

    void TakeSign(char const* sign)
    {
        char const* const at = SkipBlanks();
        if (*at == *sign)
            ++m_At;
        else
            Fail(at, Quoted(sign));
    }

    std::string TakeUid()
    {
        char const* const at = SkipBlanks();
        std::string const word = ReadWord();
        if (!qorm::DbObjectId::IsUID(word.c_str()))
            Fail(at, QStringLiteral("the UID of a type"));
        return word;
    }

    void TakeEnd()
    {
        char const* const at = SkipBlanks();
        if (*at != '\0')
            Fail(at, QStringLiteral("the end of the query"));
    }

    bool HasFailed() const
    {
        return m_HasFailed;
    }

private:
    char const* SkipBlanks()
    {
        while (std::isspace(static_cast<unsigned char>(*m_At)))
            ++m_At;
        return m_At;
    }

    std::string ReadWord()
    {
        char const* const begin = m_At;
        while (std::isalnum(static_cast<unsigned char>(*m_At)) || *m_At == '_' || *m_At == '-')
            ++m_At;
        return std::string(begin, m_At);
    }

    static QString Quoted(char const* text)
    {
        return QStringLiteral("\"%1\"").arg(QString::fromLatin1(text));
    }

    void Fail(char const* at, QString const& expected)
    {
        if (m_HasFailed)
            return;
        m_HasFailed = true;
        m_Error.position = int(at - m_Begin);
        m_Error.expected = expected;
    }

    char const* const m_Begin;
    char const* m_At;
    QueryError& m_Error;
    bool m_HasFailed = false;
};

} // namespace

std::optional<TypeQuery> ParseQuery(char const* query, QueryError& error)
{
    QueryReader reader(query ? query : "", error);
    reader.TakeKeyword("select");
    reader.TakeKeyword("object");
    reader.TakeKeyword("where");
    reader.TakeKeyword("IS_OF_TYPE_VERSION");
    reader.TakeSign("(");
    reader.TakeSign("{");
    std::string const type = reader.TakeUid();
    reader.TakeSign("}");
    reader.TakeSign(")");
    reader.TakeEnd();
    if (reader.HasFailed())
        return std::nullopt;
    return TypeQuery{qorm::UID(type.c_str())};
}

QString DescribeQueryError(char const* query, QueryError const& error)
{
    QString const text = FromText8(query ? query : "");
    // In one call of arg: the query may contain a text like "%1".
    return QStringLiteral("The query \"%1\" cannot be run: %2 is expected at character %3.")
        .arg(text, error.expected, QString::number(error.position + 1));
}

} // namespace embeddedhost
