#include "libraryfolder.h"

#include <QDir>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

/// Runs a fuzzer's function over the files of a folder. A broken property ends it with an abort.
int main(int, char** arguments)
{
    QFileInfoList const inputs = QDir(arguments[1]).entryInfoList(QDir::Files);
    for (QFileInfo const& input : inputs) {
        std::puts(qPrintable(input.fileName()));
        std::fflush(stdout);
        QByteArray const content = ReadFile(input.filePath());
        LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(content.constData()),
                               std::size_t(content.size()));
    }
    return inputs.isEmpty() ? 1 : 0;
}
