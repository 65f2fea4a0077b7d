#include "require.h"

#include <QString>

#include <cstdio>
#include <cstdlib>

void Require(bool holds, std::string const& property)
{
    if (holds)
        return;
    std::fprintf(stderr, "\nBroken property: %s\n", property.c_str());
    std::abort();
}

namespace {

void RequireNoWarning(QtMsgType type, QMessageLogContext const&, QString const& text)
{
    Require(type == QtDebugMsg || type == QtInfoMsg, "no warning: " + text.toStdString());
}

} // namespace

void RequireNoWarnings()
{
    qInstallMessageHandler(RequireNoWarning);
}
