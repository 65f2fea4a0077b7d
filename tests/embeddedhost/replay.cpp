#include "libraryfolder.h"

#include <QDir>

#include <cstdint>
#include <cstdio>

// Each of them defines a function of this name.
#define LLVMFuzzerTestOneInput RunBody
#include "bodyfuzzer.cpp"
#undef LLVMFuzzerTestOneInput
#define LLVMFuzzerTestOneInput RunLibrary
#include "libraryfuzzer.cpp"
#undef LLVMFuzzerTestOneInput
#define LLVMFuzzerTestOneInput RunLister
#include "listerfuzzer.cpp"
#undef LLVMFuzzerTestOneInput
#define LLVMFuzzerTestOneInput RunQuery
#include "queryfuzzer.cpp"
#undef LLVMFuzzerTestOneInput
#define LLVMFuzzerTestOneInput RunUnsavedChanges
#include "unsavedchangesfuzzer.cpp"

/// Runs the named fuzzer's function over the files of a folder. A broken property ends it with an
/// abort.
int main(int, char** arguments)
{
    QMap<QByteArray, decltype(&RunBody)> const fuzzers = {{"body", RunBody},
                                                          {"library", RunLibrary},
                                                          {"lister", RunLister},
                                                          {"query", RunQuery},
                                                          {"unsavedchanges", RunUnsavedChanges}};
    auto const run = fuzzers[arguments[1]];
    QFileInfoList const inputs = QDir(arguments[2]).entryInfoList(QDir::Files);
    for (QFileInfo const& input : inputs) {
        std::puts(qPrintable(input.fileName()));
        std::fflush(stdout);
        QByteArray const content = ReadFile(input.filePath());
        run(reinterpret_cast<std::uint8_t const*>(content.constData()),
            std::size_t(content.size()));
    }
    return inputs.isEmpty() ? 1 : 0;
}
