#include "storage/jsonfile.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// What the parser says is wrong, without its own account of the place.
QString GetReason(ordered_json::parse_error const& error)
{
    QString const text = QString::fromUtf8(error.what());
    int const column = text.indexOf(QLatin1String(", column "));
    int const reason = column < 0 ? -1 : text.indexOf(QLatin1String(": "), column);
    return reason < 0 ? text : text.mid(reason + 2);
}

QString DescribeParseError(QByteArray const& text, ordered_json::parse_error const& error)
{
    // The parser counts bytes from 1.
    auto const byte = std::min(std::size_t(text.size()), error.byte > 0 ? error.byte - 1 : 0);
    auto const end = text.begin() + std::ptrdiff_t(byte);
    auto const line = std::count(text.begin(), end, '\n') + 1;
    auto const lineBegin = std::find(std::make_reverse_iterator(end),
                                     std::make_reverse_iterator(text.begin()), '\n').base();
    return QStringLiteral("line %1, column %2: this is not JSON: %3.")
        .arg(line)
        .arg(end - lineBegin + 1)
        .arg(GetReason(error));
}

} // namespace

JsonFile ReadJsonFile(QString const& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {ordered_json(),
                QStringLiteral("the file cannot be read: %1.").arg(file.errorString())};
    }
    QByteArray const text = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return {ordered_json(),
                QStringLiteral("the file cannot be read: %1.").arg(file.errorString())};
    }
    try {
        return {ordered_json::parse(text.begin(), text.end()), QString()};
    } catch (ordered_json::parse_error const& error) {
        return {ordered_json(), DescribeParseError(text, error)};
    }
}

} // namespace embeddedhost
