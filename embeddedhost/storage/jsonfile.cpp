#include "storage/jsonfile.h"

#include "storage/filedigest.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

JsonFile Unreadable(QFile const& file)
{
    return {ordered_json(), QString(),
            QStringLiteral("the file cannot be read: %1.").arg(file.errorString())};
}

/// What the parser says is wrong, without its own account of the place.
JsonFile NotJson(QString const& place, ordered_json::exception const& error)
{
    QString const text = QString::fromUtf8(error.what());
    auto const column = text.indexOf(QLatin1String(", column "));
    auto const end = text.indexOf(column < 0 ? QLatin1String("] ") : QLatin1String(": "),
                                  std::max<decltype(column)>(column, 0));
    return {ordered_json(), place,
            QStringLiteral("this is not JSON: %1.").arg(text.mid(end + 2))};
}

/// Line and column, both counted from 1.
QString GetPlace(QByteArray const& text, std::size_t position)
{
    auto const end = text.begin() + std::ptrdiff_t(std::min(std::size_t(text.size()), position));
    auto const line = std::count(text.begin(), end, '\n') + 1;
    auto const lineBegin = std::find(std::make_reverse_iterator(end),
                                     std::make_reverse_iterator(text.begin()), '\n').base();
    return QStringLiteral("line %1, column %2").arg(line).arg(end - lineBegin + 1);
}

} // namespace

JsonFile ReadJsonFile(QString const& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Unreadable(file);
    QByteArray const text = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Unreadable(file);
    try {
        return {ordered_json::parse(text.begin(), text.end()), QString(), QString(),
                GetDigest(text)};
    } catch (ordered_json::parse_error const& error) {
        // The parser counts bytes from 1.
        return NotJson(GetPlace(text, error.byte > 0 ? error.byte - 1 : 0), error);
    } catch (ordered_json::exception const& error) {
        // A number that is too large to be kept.
        return NotJson(QString(), error);
    }
}

} // namespace embeddedhost
