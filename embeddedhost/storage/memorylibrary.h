#ifndef EMBEDDEDHOST_MEMORYLIBRARY_H
#define EMBEDDEDHOST_MEMORYLIBRARY_H

#include "model/memoryitem.h"
#include "storage/librarywriter.h"

#include <QString>

#include <nlohmann/json.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace embeddedhost {

class CLibrary;

/// How a library without a folder is saved.
struct MemoryStore
{
    /// Takes all items, and answers why they could not be saved; empty when they were. Without it,
    /// nothing is saved.
    std::function<QString(std::vector<MemoryItem> const& items)> save;
    /// The function is being called; it may run an event loop.
    bool isSaving = false;
};

typedef std::vector<nlohmann::ordered_json> MemoryObjects;

/// The items as objects. Nothing, and the reason with the place of the first item that is at fault,
/// "item 3 ...", when they cannot be opened.
std::optional<MemoryObjects> MakeMemoryObjects(std::vector<MemoryItem> const& items,
                                               QString* fault);

/// A library of the objects. It has one data source, without a resource: items cannot be moved.
/// Each is in a file of its own whose path is only a name.
std::shared_ptr<CLibrary> MakeMemoryLibrary(QString const& name, MemoryObjects objects,
                                            MemoryStore const& store, CMessageChannel& messages);

/// The items as they are now: those of a folder file by file, new ones last.
std::vector<MemoryItem> ListItems(CLibrary const& library);

/// Hands all items to the store of a library without a folder, unless nothing was changed. The
/// store may close the library.
SaveResult SaveMemoryLibrary(CLibrary& library);

} // namespace embeddedhost

#endif
