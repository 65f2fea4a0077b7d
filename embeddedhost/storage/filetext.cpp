#include "storage/filetext.h"

#include "storage/jsonparser.h"
#include "storage/jsontext.h"

#include <stdexcept>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Without spare capacity, since it is kept as long as the library.
QByteArray Squeezed(QByteArray text)
{
    text.squeeze();
    return text;
}

} // namespace

CFileText::CFileText(QByteArray const& text)
    : m_Text(Squeezed(text))
{}

std::vector<ObjectPlace> CFileText::FindPlaces(bool isArray) const
{
    std::string_view const whole(m_Text.constData(), std::size_t(m_Text.size()));
    std::vector<ObjectPlace> places;
    auto const add = [&](std::string_view object) {
        places.push_back(
            {std::uint32_t(object.data() - whole.data()), std::uint32_t(object.size())});
    };
    std::string_view const content = TrimJson(whole);
    if (!isArray) {
        add(content);
        return places;
    }
    for (JsonPart const& part : SplitJson(content).all)
        add(part.value);
    return places;
}

ordered_json CFileText::Read(ObjectPlace const& place) const
{
    ParsedJson parsed =
        ParseJson(QByteArray::fromRawData(m_Text.constData() + place.begin, int(place.size)));
    if (!parsed.content.is_object())
        throw std::runtime_error("an object cannot be read again");
    return std::move(parsed.content);
}

} // namespace embeddedhost
