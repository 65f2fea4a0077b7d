#include "require.h"

#include "objects/query.h"

#include <QRegularExpression>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

using namespace embeddedhost;

namespace {

/// The type of a query, found by another parser, a regular expression. Empty for other texts.
QString FindType(std::string const& query)
{
    // Only ASCII blanks; \s would accept more.
    static QString const pattern =
        QStringLiteral("^ select +object +where +is_of_type_version "
                       "\\( \\{ ([-0-9a-f]{36}) \\} \\) \\z")
            .replace(QStringLiteral(" +"), QStringLiteral("[\\t-\\r\\x20]+"))
            .replace(QLatin1Char(' '), QStringLiteral("[\\t-\\r\\x20]*"));
    static QRegularExpression const form(pattern, QRegularExpression::CaseInsensitiveOption);
    QString const type = form.match(QString::fromLatin1(query.c_str())).captured(1);
    return qorm::DbObjectId::IsUID(type.toLatin1().constData()) ? type : QString();
}

} // namespace

/// A query is understood exactly when it has the form, and otherwise the error tells where it
/// stops to have it.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const query(reinterpret_cast<char const*>(data), size);
    QueryError error;
    auto const parsed = ParseQuery(query.c_str(), error);
    QString const type = FindType(query);
    Require(parsed.has_value() == !type.isEmpty(), "a query is understood if it has the form");
    if (parsed) {
        Require(parsed->type == qorm::UID(type.toLatin1().constData()), "its type is the one");
        return 0;
    }
    Require(error.position >= 0 && std::size_t(error.position) <= std::strlen(query.c_str()),
            "the error lies within the query");
    Require(!error.expected.isEmpty(), "the error names the expected token");
    Require(DescribeQueryError(query.c_str(), error)
                .endsWith(QStringLiteral(": %1 is expected at character %2.")
                              .arg(error.expected, QString::number(error.position + 1))),
            "the description says it, too");
    // The text before the error must be a query, or one that ends too early.
    QueryError again;
    std::string const begin = query.substr(0, std::size_t(error.position));
    Require(ParseQuery(begin.c_str(), again) || again.position == error.position,
            "the error is at its place");
    return 0;
}
