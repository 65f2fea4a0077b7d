#include "itempayload.h"

#include <nodebrowser/stringutils.h>
#include <nodebrowser/textencoding.h>

#include <QByteArray>
#include <QDataStream>
#include <QMimeData>
#include <QString>

#include <algorithm>

char const* const kItemMimeType = "tarno/toc.key";

namespace {

/// Identifiers are short. A payload that claims a greater length is refused unread.
int const kLongestPayload = 64 * 1024;

/// Without characters that control, or that 8-bit texts cannot have.
bool IsPrintableText(QString const& text)
{
    bool const isPrintable = std::all_of(text.begin(), text.end(), [](QChar character) {
        return character.unicode() >= 0x20 && character.unicode() != 0x7F;
    });
    return isPrintable && nodebrowser::ToQString(QStringToStdString(text).c_str()) == text;
}

} // namespace

std::string ReadItemPayload(QMimeData const* data)
{
    QString const format = QString::fromLatin1(kItemMimeType);
    if (!data || !data->hasFormat(format))
        return std::string();
    QByteArray const bytes = data->data(format);
    if (bytes.size() > kLongestPayload)
        return std::string();
    QDataStream stream(bytes);
    QString text;
    stream >> text;
    if (stream.status() != QDataStream::Ok || !stream.atEnd() || !IsPrintableText(text))
        return std::string();
    return QStringToStdString(text);
}

std::string GetPayloadUid(std::string const& serialized)
{
    std::size_t const colon = serialized.find(':');
    return colon == std::string::npos || colon == 0 ? std::string() : serialized.substr(colon + 1);
}
