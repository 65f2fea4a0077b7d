#include "storage/jsonsource.h"

#include "storage/jsonparser.h"
#include "storage/jsontext.h"

#include <stdexcept>

namespace embeddedhost {

namespace {

class JsonSource final : public ObjectSource
{
public:
    explicit JsonSource(QByteArray const& text)
        : m_Text(text)
    {
        // No spare capacity, since it is kept as long as the library.
        m_Text.squeeze();
    }

    /// The places of an array's entries, or of the single object.
    std::vector<ObjectPlace> FindPlaces() const
    {
        std::string_view const whole(m_Text.constData(), std::size_t(m_Text.size()));
        std::vector<ObjectPlace> places;
        auto const add = [&](std::string_view object) {
            places.push_back(
                {std::uint32_t(object.data() - whole.data()), std::uint32_t(object.size())});
        };
        std::string_view const content = TrimJson(whole);
        if (content.front() != '[') {
            add(content);
            return places;
        }
        for (JsonPart const& part : SplitJson(content).all)
            add(part.value);
        return places;
    }

    ItemObject Read(ObjectPlace const& place) const override
    {
        ParsedText parsed =
            ParseJson(QByteArray::fromRawData(m_Text.constData() + place.begin, int(place.size)));
        if (!parsed.content.is_object())
            throw std::runtime_error("an object cannot be read again");
        return std::move(parsed.content);
    }

private:
    QByteArray m_Text;
};

} // namespace

KeptText KeepJson(QByteArray const& text)
{
    auto source = std::make_unique<JsonSource>(text);
    std::vector<ObjectPlace> places = source->FindPlaces();
    return {std::move(source), std::move(places)};
}

} // namespace embeddedhost
