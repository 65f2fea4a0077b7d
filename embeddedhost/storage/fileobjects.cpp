#include "storage/fileobjects.h"

#include "model/library.h"
#include "model/libraryitem.h"

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

void Ignore(QString const& /*key*/, QString const& /*reason*/) {}

} // namespace

bool MakesItem(ordered_json const& entry, IsUidTaken const& isTaken, ObjectFault const& fault)
{
    if (!entry.is_object()) {
        fault(QString(), QStringLiteral("it must be an object; it is left out."));
        return false;
    }
    return CheckObject(entry, fault) && IsUidFree(GetUid(entry).c_str(), isTaken, fault);
}

bool IsUidFree(char const* uid, IsUidTaken const& isTaken, ObjectFault const& fault)
{
    if (!isTaken(uid))
        return true;
    fault(QLatin1String(Keys::kUid),
          QStringLiteral("%1 is the uid of another object already; the object is left out.")
              .arg(QString::fromUtf8(uid)));
    return false;
}

void TakeInLeftOutEntries(CLibrary& library)
{
    tarno::datamodel::ItemLibraryAccessor const kept = library.GetAccessor();
    auto const isTaken = [&](char const* uid) {
        return library.HasUid(uid);
    };
    // Listeners may add files and entries meanwhile.
    for (std::size_t i = 0; i < library.GetFiles().size(); ++i) {
        LibraryFile& file = *library.GetFiles()[i];
        for (std::size_t k = 0; k < file.entries.size(); ++k) {
            if (file.entries[k].item || !MakesItem(file.entries[k].other, isTaken, Ignore))
                continue;
            library.AddLeftOutItem(file, k);
            if (!kept.Revalidate())
                return;
        }
    }
}

FileObjects::FileObjects(CLibrary const& library, QString const& path, ordered_json const& content)
{
    auto const isTaken = [&](char const* uid) {
        CLibraryItem const* const item = library.FindItem(uid);
        bool const isElsewhere = item && item->GetFile().path != path;
        return isElsewhere || m_ByUid.Find(uid) || library.GetDatabase().HasFixedObject(uid);
    };
    auto const add = [&](ordered_json const& entry) {
        bool const makesItem = MakesItem(entry, isTaken, Ignore);
        m_Entries.push_back({&entry, makesItem});
        if (makesItem)
            m_ByUid.Insert(GetUid(entry).c_str(), &entry);
    };
    if (content.is_array())
        std::for_each(content.begin(), content.end(), add);
    else
        add(content);
}

std::vector<FileObjects::Entry> const& FileObjects::GetEntries() const
{
    return m_Entries;
}

ordered_json const* FileObjects::Find(char const* uid) const
{
    return m_ByUid.Find(uid);
}

} // namespace embeddedhost
