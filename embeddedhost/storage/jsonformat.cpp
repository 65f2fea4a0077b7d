#include "storage/jsonformat.h"

#include "storage/jsonlister.h"
#include "storage/jsonparser.h"
#include "storage/jsonsource.h"
#include "storage/jsonwriter.h"

namespace embeddedhost {

namespace {

class JsonFormat final : public ObjectFormat
{
public:
    QString GetSuffix() const override
    {
        return QStringLiteral(".json");
    }

    std::unique_ptr<ObjectLister> MakeLister() const override
    {
        return MakeJsonLister();
    }

    ParsedText Parse(QByteArray const& text) const override
    {
        return ParseJson(text);
    }

    KeptText Keep(QByteArray const& text) const override
    {
        return KeepJson(text);
    }

    QByteArray Write(LibraryFile const& file, QByteArray const& oldText) const override
    {
        return WriteJson(file, oldText);
    }
};

} // namespace

ObjectFormat const& GetJsonFormat()
{
    static JsonFormat const format;
    return format;
}

} // namespace embeddedhost
