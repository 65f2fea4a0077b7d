#ifndef FUZZ_FILEVALUES_H
#define FUZZ_FILEVALUES_H

#include <QByteArray>

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// In capital letters: their case makes no difference to a UID.
std::string FoldUid(std::string uid);

/// An entry of a file, usually an object.
struct EntryValues
{
    /// Folded; empty for none.
    std::string uid;
    /// The values of the keys, in their order, as texts that are equal if the values are, numbers
    /// to their last digit; one without a key for an entry that is not an object.
    std::vector<std::pair<std::string, std::string>> members;
    /// A key is there twice, so that one of the values has to be lost.
    bool hasTwinKeys = false;
};

/// The entries of a file, read without the library's own reader.
struct FileValues
{
    bool isArray = false;
    std::vector<EntryValues> entries;
};

/// Nothing if the text is not JSON, or neither an array nor an object.
std::optional<FileValues> ReadFileValues(QByteArray const& text);

#endif
