#include "commandline.h"

#include <QCommandLineParser>
#include <QRegularExpression>

namespace {

unsigned long const kMostItems = 10000000;
int const kLongestSide = 10000;
double const kLargestScale = 8;

/// Raised with a sentence about the fault in the command line.
struct SFault
{
    QString text;
};

void AddOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(
        QStringLiteral("A small graph editor around the node browser."));
    parser.addPositionalArgument(
        QStringLiteral("folder"),
        QStringLiteral("The library to open; the one that was open last, at first a copy of the "
                       "sample library, when there is none."),
        QStringLiteral("[FOLDER]"));
    parser.addOptions({
        {QStringLiteral("new"),
         QStringLiteral("Make an empty library in an empty or new folder and open it."),
         QStringLiteral("FOLDER")},
        {QStringLiteral("dark"), QStringLiteral("Start with the dark palette.")},
        {QStringLiteral("render"),
         QStringLiteral("Render the window to a picture and end; needs no display."),
         QStringLiteral("FILE.png")},
        {QStringLiteral("size"),
         QStringLiteral("With --render: size of the window, 1100x700 by default."),
         QStringLiteral("WxH")},
        {QStringLiteral("scale"), QStringLiteral("With --render: scale of the display, such as 2."),
         QStringLiteral("N")},
        {QStringLiteral("search"), QStringLiteral("With --render: what is searched for."),
         QStringLiteral("TEXT")},
        {QStringLiteral("generate"),
         QStringLiteral("Write a library of N made-up items into an empty or new folder and end: "
                        "--generate FOLDER N."),
         QStringLiteral("FOLDER")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")},
        {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version.")},
    });
}

/// Raises a fault if one of the named options is set.
void RefuseOptions(QCommandLineParser const& parser, QStringList const& names,
                   QString const& reason)
{
    for (QString const& name : names)
        if (parser.isSet(name))
            throw SFault{QStringLiteral("--%1 %2.").arg(name, reason)};
}

QSize ParseSize(QString const& text)
{
    static QRegularExpression const expression(QStringLiteral("\\A([0-9]{1,6})x([0-9]{1,6})\\z"));
    QRegularExpressionMatch const match = expression.match(text);
    QSize const size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.isEmpty() || qMax(size.width(), size.height()) > kLongestSide)
        throw SFault{QStringLiteral("--size takes width x height, such as 1100x700, each at most "
                                    "%1; not \"%2\".")
                         .arg(kLongestSide)
                         .arg(text)};
    return size;
}

double ParseScale(QString const& text)
{
    bool isNumber = false;
    double const scale = text.toDouble(&isNumber);
    if (!isNumber || !(scale > 0) || scale > kLargestScale)
        throw SFault{QStringLiteral("--scale takes a number above 0 and at most %1; not \"%2\".")
                         .arg(kLargestScale)
                         .arg(text)};
    return scale;
}

unsigned long ParseItemCount(QStringList const& positional)
{
    if (positional.size() != 1)
        throw SFault{QStringLiteral("--generate takes a folder and a number of items.")};
    bool isNumber = false;
    unsigned long const count = positional.first().toULong(&isNumber);
    if (!isNumber || count == 0 || count > kMostItems)
        throw SFault{QStringLiteral("The number of items must be between 1 and %1; not \"%2\".")
                         .arg(kMostItems)
                         .arg(positional.first())};
    return count;
}

void ParseGenerate(QCommandLineParser const& parser, CommandLine& line)
{
    RefuseOptions(parser,
                  {QStringLiteral("render"), QStringLiteral("size"), QStringLiteral("scale"),
                   QStringLiteral("search"), QStringLiteral("dark"), QStringLiteral("new")},
                  QStringLiteral("does not go with --generate"));
    line.action = eAction::kGenerate;
    line.itemCount = ParseItemCount(parser.positionalArguments());
    line.libraryFolder = parser.value(QStringLiteral("generate"));
    if (line.libraryFolder.isEmpty())
        throw SFault{QStringLiteral("--generate needs the name of a folder.")};
}

void ParseRender(QCommandLineParser const& parser, CommandLine& line)
{
    line.action = eAction::kRender;
    line.pictureFile = parser.value(QStringLiteral("render"));
    if (line.pictureFile.isEmpty())
        throw SFault{QStringLiteral("--render needs the name of a file.")};
    if (parser.isSet(QStringLiteral("size")))
        line.pictureSize = ParseSize(parser.value(QStringLiteral("size")));
    if (parser.isSet(QStringLiteral("scale")))
        line.pictureScale = ParseScale(parser.value(QStringLiteral("scale")));
    line.searchText = parser.value(QStringLiteral("search"));
}

void ParseNew(QCommandLineParser const& parser, CommandLine& line)
{
    if (!line.libraryFolder.isEmpty())
        throw SFault{QStringLiteral("One library at a time; unexpected argument \"%1\".")
                         .arg(line.libraryFolder)};
    line.isNew = true;
    line.libraryFolder = parser.value(QStringLiteral("new"));
    if (line.libraryFolder.isEmpty())
        throw SFault{QStringLiteral("--new needs the name of a folder.")};
}

void ParseEdit(QCommandLineParser const& parser, CommandLine& line)
{
    QStringList const positional = parser.positionalArguments();
    if (positional.size() > 1)
        throw SFault{QStringLiteral("One library at a time; unexpected argument \"%1\".")
                         .arg(positional.at(1))};
    if (!positional.isEmpty())
        line.libraryFolder = positional.first();
    line.isDark = parser.isSet(QStringLiteral("dark"));
    if (parser.isSet(QStringLiteral("new")))
        ParseNew(parser, line);
    if (parser.isSet(QStringLiteral("render")))
        ParseRender(parser, line);
    else
        RefuseOptions(parser,
                      {QStringLiteral("size"), QStringLiteral("scale"), QStringLiteral("search")},
                      QStringLiteral("goes with --render only"));
}

void Parse(QStringList const& arguments, CommandLine& line)
{
    QCommandLineParser parser;
    AddOptions(parser);
    if (!parser.parse(arguments))
        throw SFault{parser.errorText()};
    if (parser.isSet(QStringLiteral("help")))
        line.action = eAction::kShowHelp;
    else if (parser.isSet(QStringLiteral("version")))
        line.action = eAction::kShowVersion;
    else if (parser.isSet(QStringLiteral("generate")))
        ParseGenerate(parser, line);
    else
        ParseEdit(parser, line);
}

} // namespace

CommandLine ParseCommandLine(QStringList const& arguments)
{
    CommandLine line;
    try {
        Parse(arguments, line);
    } catch (SFault const& fault) {
        line.fault = fault.text;
    }
    return line;
}

QString GetCommandLineHelp()
{
    QCommandLineParser parser;
    AddOptions(parser);
    return parser.helpText();
}
