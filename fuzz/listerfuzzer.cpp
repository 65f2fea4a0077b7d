#include "require.h"

#include "storage/filetext.h"
#include "storage/jsonparser.h"
#include "storage/objectlister.h"
#include "storage/objectreader.h"

#include <cstddef>
#include <cstdint>

using namespace embeddedhost;
using nlohmann::ordered_json;

namespace {

void RequireNoFault(ordered_json const& object)
{
    bool const makesItem = CheckObject(object, [](QString const& key, QString const& reason) {
        Require(false, "nothing is wrong with " + key.toStdString() + ": " + reason.toStdString());
    });
    Require(makesItem, "the object makes an item");
}

void RequireSame(ListedObject const& listed, ListedObject const& expected)
{
    Require(listed.kind == expected.kind, "the kind is the same");
    Require(listed.uid == expected.uid && listed.name == expected.name, "uid and name are");
    Require(listed.category == expected.category, "the category is");
    Require(listed.parent == expected.parent && listed.specializes == expected.specializes
                && listed.implements == expected.implements,
            "references are");
    Require(listed.tags == expected.tags, "tags are, in their order");
    Require(listed.isSignature == expected.isSignature && listed.isLoop == expected.isLoop
                && listed.isLocked == expected.isLocked,
            "flags are");
}

/// The object that the parser has made a tree of, and its place in the text.
void RequireListed(ListedObject const& listed, ordered_json const& tree, CFileText const& text,
                   ObjectPlace const& place)
{
    Require(tree.is_object(), "an object is listed");
    RequireNoFault(tree);
    RequireSame(listed, ListObject(tree));
    Require(text.Read(place) == tree, "the text at its place is the object");
}

} // namespace

/// For a text that the lister accepts, the parser and the checks find the same objects and report
/// nothing.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static CObjectLister lister;
    QByteArray const content(reinterpret_cast<char const*>(data), int(size));
    if (!lister.Read(content))
        return 0;
    ParsedJson const parsed = ParseJson(content);
    Require(parsed.fault.isEmpty() && parsed.repeatedKeys.empty(), "the parser has no fault");
    Require(parsed.content.is_array() == lister.IsArray(), "both find an array, or both do not");

    CFileText const text(content);
    auto const places = text.FindPlaces(lister.IsArray());
    auto const& listed = lister.GetObjects();
    std::size_t const count = lister.IsArray() ? parsed.content.size() : 1;
    Require(listed.size() == count && places.size() == count, "all objects are listed");
    for (std::size_t i = 0; i < count; ++i)
        RequireListed(listed[i], lister.IsArray() ? parsed.content[i] : parsed.content, text,
                      places[i]);
    return 0;
}
