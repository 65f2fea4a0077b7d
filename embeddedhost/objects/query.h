#ifndef EMBEDDEDHOST_QUERY_H
#define EMBEDDEDHOST_QUERY_H

#include <qorm.h>

#include <QString>

#include <optional>

namespace embeddedhost {

/// All objects of a type: "select object where IS_OF_TYPE_VERSION( {<uid> } )". Keywords may be
/// in either case, blanks may stand between all words and signs.
struct TypeQuery
{
    qorm::UID type;
};

struct QueryError
{
    /// The position of the fault, counted from 0.
    int position = 0;
    QString expected;
};

std::optional<TypeQuery> ParseQuery(char const* query, QueryError& error);

/// One sentence for the user.
QString DescribeQueryError(char const* query, QueryError const& error);

} // namespace embeddedhost

#endif
