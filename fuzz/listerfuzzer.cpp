#include "require.h"

#include "storage/jsonformat.h"
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
void RequireListed(ListedObject const& listed, ordered_json const& tree, ObjectSource const& text,
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
    static ObjectFormat const& format = GetJsonFormat();
    static std::unique_ptr<ObjectLister> const lister = format.MakeLister();
    QByteArray const content(reinterpret_cast<char const*>(data), int(size));
    if (!lister->Read(content))
        return 0;
    ParsedText const parsed = format.Parse(content);
    Require(parsed.fault.isEmpty() && parsed.repeatedKeys.empty(), "the parser has no fault");
    bool const isArray = lister->IsArray();
    Require(parsed.content.is_array() == isArray, "both find an array, or both do not");

    KeptText const text = format.Keep(content);
    auto const& listed = lister->GetObjects();
    std::size_t const count = isArray ? parsed.content.size() : 1;
    Require(listed.size() == count && text.places.size() == count, "all objects are listed");
    for (std::size_t i = 0; i < count; ++i)
        RequireListed(listed[i], isArray ? parsed.content[i] : parsed.content, *text.source,
                      text.places[i]);
    return 0;
}
