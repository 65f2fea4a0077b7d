#ifndef EMBEDDEDHOST_FILEOBJECTS_H
#define EMBEDDEDHOST_FILEOBJECTS_H

#include "base/uidmap.h"
#include "storage/objectreader.h"

#include <QString>

#include <nlohmann/json.hpp>

#include <functional>
#include <vector>

namespace embeddedhost {

class CLibrary;
struct LibraryFile;

/// Whether something else has the uid.
typedef std::function<bool(char const* uid)> IsUidTaken;

/// Whether an entry of a library file makes an item: an object with what an item needs and a uid
/// that nothing else has. Used by everything that reads files, for the same result. Faults are
/// reported with their key, which is empty for the entry as a whole.
bool MakesItem(nlohmann::ordered_json const& entry, IsUidTaken const& isTaken,
               ObjectFault const& fault);

/// The check of the uid alone.
bool IsUidFree(char const* uid, IsUidTaken const& isTaken, ObjectFault const& fault);

/// Makes items of entries that were left out because of a uid that has become free since, with
/// notifications. A listener may close the library.
void TakeInLeftOutEntries(CLibrary& library);

/// The entries of a file's content, and which of them make items beside the library's other
/// files. Refers to the content.
class FileObjects
{
public:
    struct Entry
    {
        nlohmann::ordered_json const* object;
        bool makesItem;
    };

    FileObjects(CLibrary const& library, QString const& path,
                nlohmann::ordered_json const& content);

    std::vector<Entry> const& GetEntries() const;
    /// The object that makes the item with the uid; null when there is none.
    nlohmann::ordered_json const* Find(char const* uid) const;

private:
    std::vector<Entry> m_Entries;
    UidMap<nlohmann::ordered_json const> m_ByUid;
};

} // namespace embeddedhost

#endif
