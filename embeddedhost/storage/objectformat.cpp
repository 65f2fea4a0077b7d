#include "storage/objectformat.h"

#include "storage/jsonformat.h"

namespace embeddedhost {

namespace {

/// The format whose suffix the name has; null for none.
ObjectFormat const* FindFormat(QString const& name)
{
    for (ObjectFormat const* const format : {&GetJsonFormat()}) {
        if (name.endsWith(format->GetSuffix()))
            return format;
    }
    return nullptr;
}

} // namespace

bool IsObjectFile(QString const& name)
{
    return FindFormat(name);
}

ObjectFormat const& GetFormat(QString const& path)
{
    ObjectFormat const* const format = FindFormat(path);
    return format ? *format : GetFormatOfNewFiles();
}

ObjectFormat const& GetFormatOfNewFiles()
{
    return GetJsonFormat();
}

} // namespace embeddedhost
