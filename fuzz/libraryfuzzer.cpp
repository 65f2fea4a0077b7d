#include "libraryrun.h"
#include "require.h"

#include <QCoreApplication>

#include <cstddef>
#include <cstdint>

/// A library folder of unknown origin, changed by its user and by other programs in turn.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static int argumentCount = 1;
    static char name[] = "fuzz_library";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
    static CEmbeddedHost host;
    static FuzzFolder folder;
    RequireNoWarnings();

    LibraryRun run(host, folder);
    for (Step const& step : ParseScript(QByteArray(reinterpret_cast<char const*>(data), int(size))))
        run.Do(step);
    run.Finish();
    return 0;
}
