#include "librarystate.h"

#include "filevalues.h"

#include "model/graphwriter.h"

using namespace tarno::datamodel;

namespace {

ItemState GetItemState(CEmbeddedHost const& host, ItemAccessor item)
{
    ItemID const id = item.GetItemID();
    ItemLibraryAccessor const library = host.GetLibrary();
    nlohmann::ordered_json body = nlohmann::ordered_json::object();
    embeddedhost::WriteGraphBody(host.GetBody(id), body);
    LoopCompoundAccessor loop;
    loop.SetFrom(item);
    return {{"kind", id.GetType()},
            {"signature", Helpers::IsAbstractFunction(item) ? "yes" : "no"},
            {"loop", loop.IsValid() ? "yes" : "no"},
            {"name", library.GetItemName(id, true, nullptr)},
            {"tags", library.GetItemTags(id, "ApplicationTags")},
            {"other tags", library.GetItemTags(id, "Other")},
            {"read-only", library.ItemIsReadOnly(id) ? "yes" : "no"},
            {"parent", item.GetValue("Parent").GetText()},
            {"specializes", item.GetValue("Specializes").GetText()},
            {"body", body.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::ignore)}};
}

std::string GetFoldedUid(ItemAccessor const& item)
{
    return FoldUid(ItemIDUnlock::GetItemIDUID(item.GetItemID()));
}

template <class Use>
void ForEachItem(CEmbeddedHost const& host, Use const& use)
{
    ItemTOCAccessor const toc = GetTOC(host.GetLibrary());
    for (char const* const kind :
         {TarnoType::gCompound, TarnoType::gSolver, TarnoType::gPolymorphicSolver,
          TarnoType::gGlobalConstant, LibType::gType}) {
        for (auto items = toc.GetItems(kind); !items.IsDone(); items.Next())
            use(items.GetCurrent());
    }
}

} // namespace

LibraryState GetState(CEmbeddedHost const& host)
{
    LibraryState state;
    ForEachItem(host, [&](ItemAccessor const& item) {
        state[GetFoldedUid(item)] = GetItemState(host, item);
    });
    return state;
}

ItemID FindItem(CEmbeddedHost const& host, std::string const& foldedUid)
{
    ItemID found;
    ForEachItem(host, [&](ItemAccessor const& item) {
        if (GetFoldedUid(item) == foldedUid)
            found = item.GetItemID();
    });
    return found;
}

std::multiset<std::string> GetEntries(QByteArray const& unsavedChanges)
{
    std::multiset<std::string> entries;
    if (unsavedChanges.isEmpty())
        return entries;
    auto const document =
        nlohmann::ordered_json::parse(unsavedChanges.begin(), unsavedChanges.end());
    for (char const* const list : {"objects", "removedFiles"}) {
        for (auto const& entry : document[list])
            entries.insert(entry.dump());
    }
    return entries;
}

std::multiset<std::string> GetObjects(QByteArray const& unsavedChanges)
{
    std::multiset<std::string> objects;
    for (std::string const& entry : GetEntries(unsavedChanges)) {
        auto const change = nlohmann::ordered_json::parse(entry);
        if (change.contains("object"))
            objects.insert(change["object"].dump());
    }
    return objects;
}

std::string Describe(LibraryState const& left, LibraryState const& right)
{
    std::string text;
    for (auto const& [uid, item] : left) {
        auto const other = right.find(uid);
        if (other == right.end()) {
            text += "\n  " + uid + " is gone";
            continue;
        }
        for (auto const& [question, answer] : item) {
            if (other->second.at(question) != answer)
                text += "\n  " + uid + ' ' + question + ": " + answer + " / "
                        + other->second.at(question);
        }
    }
    for (auto const& [uid, item] : right) {
        if (!left.count(uid))
            text += "\n  " + uid + " is new";
    }
    return text;
}
