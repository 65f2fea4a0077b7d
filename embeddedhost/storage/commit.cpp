#include "storage/commit.h"

#include "base/text8.h"
#include "model/accessorcontext.h"
#include "model/libraryitem.h"
#include "storage/librarywriter.h"
#include "storage/memorylibrary.h"

namespace embeddedhost {

namespace {

std::vector<LibraryFile*> FindModifiedFiles(CLibrary const& library, char const* uid)
{
    std::vector<LibraryFile*> modified;
    if (uid) {
        CLibraryItem const* const item = library.FindItem(uid);
        if (item && item->GetFile().IsModified())
            modified.push_back(&item->GetFile());
        return modified;
    }
    for (auto const& file : library.GetFiles()) {
        if (file->IsModified())
            modified.push_back(file.get());
    }
    return modified;
}

void Report(CMessageChannel& channel, SaveResult const& result, std::list<std::string>* messages)
{
    for (QString const& failure : result.failures) {
        channel.Post(eSeverity::kError, failure);
        if (messages)
            messages->push_back(ToText8(failure));
    }
    for (QString const& kept : result.keptFiles)
        channel.Post(eSeverity::kWarning, kept);
    if (result.writtenFiles > 0)
        channel.Post(eSeverity::kInformation,
                     result.writtenFiles == 1
                         ? QStringLiteral("Saved 1 file.")
                         : QStringLiteral("Saved %1 files.").arg(result.writtenFiles));
}

} // namespace

bool CommitLibrary(CLibrary& library, char const* uid, std::list<std::string>* messages)
{
    tarno::datamodel::ItemLibraryAccessor const kept = library.GetAccessor();
    SaveResult result;
    if (!library.GetNotifier().PreCommit()) {
        result.failures.push_back(
            QStringLiteral("Another part of the program does not allow a save "
                           "now. Nothing was written; try again later."));
    } else if (kept.Revalidate()) {
        // Collected after PreCommit, in which listeners may still change items.
        result = library.IsInMemory() ? SaveMemoryLibrary(library)
                                      : SaveFiles(library, FindModifiedFiles(library, uid));
    }
    // A listener may have closed the library; its message channel may be gone with it.
    if (!kept.Revalidate())
        return false;
    Report(library.GetMessages(), result, messages);
    // Checked again: listeners to these messages may close the library, too.
    if (kept.Revalidate())
        kept.GetContext()->GetNotifier().PostCommit();
    return result.failures.empty();
}

} // namespace embeddedhost
