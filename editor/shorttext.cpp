#include "shorttext.h"

#include <QCoreApplication>

namespace {

int const kMostLetters = 2000;
int const kMostLines = 200;

} // namespace

QString ShortenText(QString const& text)
{
    if (text.size() <= kMostLetters)
        return text;
    int const length = kMostLetters - (text[kMostLetters - 1].isHighSurrogate() ? 1 : 0);
    return text.left(length)
           + QCoreApplication::translate("ShortText", "... (%L1 more letters)")
                 .arg(text.size() - length);
}

QString ListSome(QStringList const& lines)
{
    QStringList some = lines.mid(0, kMostLines);
    if (some.size() < lines.size())
        some << QCoreApplication::translate("ShortText", "and %L1 more")
                    .arg(lines.size() - some.size());
    return some.join(QLatin1Char('\n'));
}

QString EscapeMnemonics(QString text)
{
    return text.replace(QLatin1Char('&'), QStringLiteral("&&"));
}
