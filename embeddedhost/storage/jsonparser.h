#ifndef EMBEDDEDHOST_JSONPARSER_H
#define EMBEDDEDHOST_JSONPARSER_H

#include <QByteArray>
#include <QString>

#include <nlohmann/json.hpp>

#include <vector>

namespace embeddedhost {

/// An object nests up to this many levels, itself the first: {"nodes": [{"position": [0, 0]}]}
/// has four. An array around the objects of a file does not count. It limits the
/// recursion of comparing, copying, writing and destroying trees.
constexpr int kMaxJsonDepth = 100;

/// A JSON text as a tree, or why it is not one.
struct ParsedJson
{
    nlohmann::ordered_json content;
    /// The place of the fault, "line 3, column 7".
    QString faultPlace;
    /// A sentence; empty when the text was read.
    QString fault;
    /// Keys that an object has more than once, as `object 3, key "tags.colour"`, the first
    /// hundred of them. The last value counts.
    std::vector<QString> repeatedKeys;
};

/// `levelsAround` is the number of levels that the text has around each object.
ParsedJson ParseJson(QByteArray const& text, int levelsAround = 0);

} // namespace embeddedhost

#endif
