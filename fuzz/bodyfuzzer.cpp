#include "bodies.h"
#include "require.h"

#include "model/graphjson.h"
#include "model/graphwriter.h"

#include <cstddef>
#include <cstdint>

using namespace embeddedhost;
using nlohmann::ordered_json;

namespace {

/// Keys of an object that belong to its body.
bool IsBodyKey(std::string const& key)
{
    return key == "inputs" || key == "outputs" || key == "nodes" || key == "connections"
           || key == "portNodes";
}

GraphBody Read(ordered_json const& object)
{
    return ReadGraphBody(object, [](std::string const& key, std::string const& reason) {
        Require(IsBodyKey(key.substr(0, key.find_first_of("[."))), "a fault names its key");
        Require(!reason.empty(), "a fault has a reason");
    });
}

GraphBody ReadGood(ordered_json const& object)
{
    return ReadGraphBody(object, [](std::string const& key, std::string const& reason) {
        Require(false, "a written body has no fault: " + key + ' ' + reason);
    });
}

void RequireSameOtherKeys(ordered_json const& before, ordered_json const& after)
{
    for (auto const& [key, value] : before.items())
        Require(IsBodyKey(key) || (after.contains(key) && after[key] == value), "other keys stay");
}

/// Writes the body into a copy of `object` and reads it again.
void RequireRoundTrip(GraphBody const& body, ordered_json const& object)
{
    ordered_json written = object;
    WriteGraphBody(body, written);
    Require(AreEqual(ReadGood(written), body), "a written body is read the same");
    Require(AreEqual(ReadGood(ordered_json::parse(written.dump())), body), "and so is its text");
    RequireSameOtherKeys(object, written);
    ordered_json again = written;
    WriteGraphBody(body, again);
    Require(again == written, "a body that is written again changes nothing");
}

} // namespace

/// A body that was read is written so that it is read again the same, and writing it once more
/// changes nothing.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    auto const object = ordered_json::parse(data, data + size, nullptr, false);
    if (!object.is_object())
        return -1;
    GraphBody const body = Read(object);
    RequireRoundTrip(body, object);
    RequireRoundTrip(body, ordered_json::object());
    return 0;
}
