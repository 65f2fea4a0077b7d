#include "storage/jsonparser.h"

#include "storage/jsontext.h"
#include "storage/jsontreebuilder.h"

#include <algorithm>
#include <string_view>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Line and column, both counted from 1.
QString GetPlace(std::string_view text, std::size_t position)
{
    std::string_view const before = text.substr(0, position);
    auto const line = std::count(before.begin(), before.end(), '\n') + 1;
    // Without a line break, npos + 1 is the beginning of the text.
    std::size_t const column = before.size() - (before.rfind('\n') + 1) + 1;
    return QStringLiteral("line %1, column %2").arg(line).arg(column);
}

ParsedText MakeFault(std::string_view text, std::size_t position, QString const& reason)
{
    return {ordered_json(), GetPlace(text, position), reason, {}};
}

} // namespace

ParsedText ParseJson(QByteArray const& bytes, int levelsAround)
{
    std::string_view const text(bytes.constData(), std::size_t(bytes.size()));
    // The parser would silently stop there.
    if (std::size_t const zero = text.find('\0'); zero != text.npos)
        return MakeFault(text, zero, QStringLiteral("this is not JSON: there is a zero byte."));
    JsonTreeBuilder builder(kMaxObjectDepth + levelsAround);
    if (ordered_json::sax_parse(text.begin(), text.end(), &builder))
        return {builder.TakeTree(), QString(), QString(), builder.GetRepeatedKeys()};
    if (builder.IsTooDeep()) {
        return MakeFault(text, FindJsonDepth(text, builder.GetMaxDepth()),
                         QStringLiteral("it nests deeper than %1 levels; the file is left out.")
                             .arg(kMaxObjectDepth));
    }
    return MakeFault(text, builder.GetFaultPosition(), builder.GetFault());
}

} // namespace embeddedhost
