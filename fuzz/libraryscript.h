#ifndef FUZZ_LIBRARYSCRIPT_H
#define FUZZ_LIBRARYSCRIPT_H

#include <QByteArray>

#include <string>
#include <vector>

/// Something done with a library or its folder: a line "%% VERB NUMBER" and the lines that follow.
struct Step
{
    std::string verb;
    int number;
    QByteArray text;
};

/// The steps of a script. Lines before the first step are ignored.
std::vector<Step> ParseScript(QByteArray const& script);

#endif
