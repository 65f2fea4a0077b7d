#include "textencoding.h"

#include "qtcompat.h"
#include "stringutils.h"

namespace nodebrowser {

namespace {

bool gIsUtf8 = false;

// A byte that is not UTF-8 is kept as half of a surrogate pair, which occurs in no text.
ushort const kFirstByteMark = 0xDC80;
ushort const kLastByteMark = 0xDCFF;

bool IsByteMark(QString const& text, int place)
{
    ushort const unit = text.at(place).unicode();
    bool const isPair = place > 0 && text.at(place - 1).isHighSurrogate();
    return unit >= kFirstByteMark && unit <= kLastByteMark && !isPair;
}

QByteArray ToUtf8(QString const& text)
{
    QByteArray bytes;
    int begin = 0;
    int const end = static_cast<int>(text.size());
    for (int place = 0; place < end; ++place) {
        if (!IsByteMark(text, place))
            continue;
        bytes += text.mid(begin, place - begin).toUtf8();
        bytes += static_cast<char>(text.at(place).unicode() & 0xFF);
        begin = place + 1;
    }
    return bytes + text.mid(begin).toUtf8();
}

/// The toolkit would drop a byte order mark in front.
QString Decode(QByteArray const& utf8)
{
    QByteArray const bytes = 'x' + utf8;
    return QString::fromUtf8(bytes.constData(), static_cast<int>(bytes.size())).mid(1);
}

/// The character that the text begins with, or a mark for its first byte.
QString TakeCharacter(char const*& text)
{
    int const longest = static_cast<int>(qstrnlen(text, 4));
    for (int length = 1; length <= longest; ++length) {
        QByteArray const bytes(text, length);
        QString const character = Decode(bytes);
        if (character.toUtf8() == bytes) {
            text += length;
            return character;
        }
    }
    ushort const byte = static_cast<unsigned char>(*text++);
    return QString(QChar(static_cast<ushort>(kFirstByteMark - 0x80 + byte)));
}

QString FromUtf8(char const* text)
{
    QString const all = Decode(text);
    if (all.toUtf8() == text)
        return all;
    QString characters;
    while (*text)
        characters += TakeCharacter(text);
    return characters;
}

} // namespace

void SetTextEncoding(eTextEncoding encoding)
{
    gIsUtf8 = encoding == eUtf8Texts;
    qtcompat::SetCStringsUtf8(gIsUtf8);
}

eTextEncoding GetTextEncoding()
{
    return qtcompat::AreCStringsUtf8(gIsUtf8) ? eUtf8Texts : eLatin1Texts;
}

QString ToQString(char const* text)
{
    return GetTextEncoding() == eUtf8Texts ? FromUtf8(text) : qtcompat::FromAscii(text);
}

std::string ToSearchForm(QString const& lowerText)
{
    if (GetTextEncoding() != eUtf8Texts)
        return QStringToStdString(lowerText);
    // Lower case is not enough: there are two lower-case sigmas.
    QString text = lowerText.toCaseFolded().normalized(QString::NormalizationForm_C);
    for (QString::iterator character = text.begin(); character != text.end(); ++character) {
        if (character->isSpace())
            *character = QLatin1Char(' ');
    }
    return QStringToStdString(text);
}

std::locale GetTextLocale()
{
    return GetTextEncoding() == eUtf8Texts ? std::locale::classic() : std::locale();
}

} // namespace nodebrowser

std::string QStringToStdString(QString const& text)
{
    using namespace nodebrowser;
    return std::string(
        (GetTextEncoding() == eUtf8Texts ? ToUtf8(text) : qtcompat::ToAscii(text)).constData());
}
