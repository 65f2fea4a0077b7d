#include "model/itemdeletion.h"

#include "base/text8.h"
#include "model/graphjson.h"
#include "model/itemkeys.h"
#include "model/librarycommands.h"
#include "model/libraryitem.h"

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

bool IsUser(ordered_json const& object, std::string const& uid)
{
    for (char const* const key : {Keys::kImplements, Keys::kParent, Keys::kSpecializes}) {
        auto const found = object.find(key);
        if (found != object.end() && *found == uid)
            return true;
    }
    // Its faults were reported when the library was read.
    GraphBody const body = ReadGraphBody(object, [](std::string const&, std::string const&) {});
    return std::any_of(body.nodes.begin(), body.nodes.end(),
                       [&uid](GraphNode const& node) { return node.item == uid; });
}

} // namespace

std::vector<CLibraryItem*> FindUsers(CLibrary const& library, CLibraryItem const& item)
{
    std::vector<CLibraryItem*> users;
    std::string const uid = item.GetIdentity().uid;
    for (KindIndex kind = 0; kind < kKindCount; ++kind)
        for (CLibraryItem* const other : library.GetItems(kind))
            if (other != &item && IsUser(other->CopyObject(), uid))
                users.push_back(other);
    return users;
}

bool DeleteItem(CLibrary& library, CLibraryItem& item, wek::fwk::ICommandManager* manager)
{
    if (item.IsReadOnly()) {
        library.GetMessages().Post(eSeverity::kWarning,
                                   QStringLiteral("Cannot delete \"%1\": it is read-only.")
                                       .arg(FromText8(item.GetName())));
        return false;
    }
    RunCommand(new CRemoveItemCommand(library, item, std::string("Delete ") + item.GetName()),
               manager);
    return true;
}

} // namespace embeddedhost
