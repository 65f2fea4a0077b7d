#include "model/itemkinds.h"

#include <string>

namespace embeddedhost {

KindIndex GetKindIndex(char const* kind)
{
    hostkit::Kind const* const found = hostkit::FindKind(kind);
    return found ? KindIndex(found - hostkit::GetKinds().data()) : kNoKind;
}

char const* FindItemKind(std::string_view text)
{
    for (hostkit::Kind const& kind : hostkit::GetKinds()) {
        if (text == kind.constant)
            return kind.constant;
    }
    return nullptr;
}

char const* GetKindList()
{
    static std::string const list = [] {
        std::string joined;
        for (hostkit::Kind const& kind : hostkit::GetKinds())
            joined += (joined.empty() ? "" : ", ") + std::string(kind.constant);
        return joined;
    }();
    return list.c_str();
}

} // namespace embeddedhost
