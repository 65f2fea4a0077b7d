#include "sourcecontrol/tooltip.h"

#include "sourcecontrol/statebits.h"

#include <QStringList>

namespace embeddedhost {

namespace {

/// A tool tip has no line breaks of its own; subjects beyond this are cut.
constexpr int kMaxSubjectLength = 80;

struct Word
{
    unsigned state;
    char const* text;
};

constexpr Word kWords[] = {
    {StateBits::kConflicted, "in conflict after a merge"},
    {StateBits::kUnknown, "unknown, because git cannot or will not read the work tree"},
    {StateBits::kAdded, "added"},
    {StateBits::kModified, "modified"},
    {StateBits::kUntracked, "not tracked by git"},
    {StateBits::kIgnored, "ignored by git"},
    {StateBits::kClean, "unchanged"},
    {StateBits::kCheckedOut, "checked out"},
    {StateBits::kWaiting, "being looked up"},
};

QString ShortenSubject(QString const& subject)
{
    return subject.size() > kMaxSubjectLength ? subject.left(kMaxSubjectLength - 1) + QChar(0x2026)
                                              : subject;
}

QStringList DescribeCommit(GitCommit const& commit)
{
    return {QStringLiteral("Last commit: %1, %2, %3")
                .arg(commit.shortHash, commit.author,
                     commit.date.toString(QStringLiteral("yyyy-MM-dd HH:mm"))),
            ShortenSubject(commit.subject)};
}

QStringList DescribeFacts(FileFacts const& facts)
{
    QStringList lines;
    if (facts.state != 0)
        lines << QStringLiteral("State: ") + DescribeState(facts.state);
    if (facts.lastCommit)
        lines << DescribeCommit(*facts.lastCommit);
    else if (!facts.path.isEmpty())
        lines << QStringLiteral("Not committed yet");
    return lines;
}

QString ToRichText(QString const& icon, QString const& name, QStringList const& lines)
{
    QString text = QStringLiteral("<p style='white-space:pre'>");
    if (!icon.isEmpty())
        text += QStringLiteral("<img src=\"%1\"> ").arg(icon.toHtmlEscaped());
    text += QStringLiteral("<b>") + name.toHtmlEscaped() + QStringLiteral("</b>");
    for (QString const& line : lines)
        text += QStringLiteral("<br>") + line.toHtmlEscaped();
    return text + QStringLiteral("</p>");
}

} // namespace

QString DescribeState(unsigned state)
{
    QStringList words;
    for (Word const& word : kWords) {
        if (state & word.state)
            words << QString::fromLatin1(word.text);
    }
    return words.join(QStringLiteral(", "));
}

QString BuildToolTip(QString const& icon, QString const& name, QString const& path,
                     std::optional<FileFacts> const& facts)
{
    if (!facts)
        return ToRichText(icon, name, {path, QStringLiteral("Looking up the last commit...")});
    return ToRichText(icon, name,
                      QStringList(facts->path.isEmpty() ? path : facts->path)
                          + DescribeFacts(*facts));
}

QString BuildPlainToolTip(QString const& icon, QString const& name, QString const& path)
{
    return ToRichText(icon, name, path.isEmpty() ? QStringList() : QStringList(path));
}

} // namespace embeddedhost
