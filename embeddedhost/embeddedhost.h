#ifndef EMBEDDEDHOST_EMBEDDEDHOST_H
#define EMBEDDEDHOST_EMBEDDEDHOST_H

#include "embeddedhost_export.h"
#include "framework/commandmanager.h"
#include "framework/messagechannel.h"
#include "framework/serviceregistry.h"
#include "model/graphbody.h"
#include "model/memoryitem.h"
#include "model/newlibrary.h"

#include <nodebrowser/hostapi/datamodel.h>

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

/// The classes that the embedded host offers to programs in addition to CEmbeddedHost.
namespace embeddedhost {
class CLibrary;
}

/// The embedded host: a library folder on disk, or a list of items in memory, behind the interfaces
/// that the panel calls.
///
/// There is one at a time in a process. The contract's free functions use it, and return empty
/// values when there is none. It registers the services "RevisionControlUIHelper",
/// "RevisionControlPropertiesMgr" and "QormDBProxy"; they can be replaced or taken out through
/// the service registry. Accessors, handles and pointers may outlive the library and the host; they
/// return empty values then.
///
/// Everything runs on the GUI thread. Texts of items are UTF-8 here, whatever encoding those of the
/// contract have.
class EMBEDDEDHOST_EXPORT CEmbeddedHost : public QObject
{
    Q_OBJECT

public:
    /// Told how many of the library's files have been read, and how many there are.
    typedef std::function<void(int done, int total)> Progress;
    /// Saves the items of a library in memory: all of them as they are now, in the order in which
    /// they were opened, new ones last. Returns the reason of a failure, as a sentence without a
    /// full stop, or an empty text. An exception counts as a failure, too. It may run an event
    /// loop; changes made meanwhile stay unsaved.
    typedef std::function<QString(std::vector<embeddedhost::MemoryItem> const& items)> SaveItems;

    /// The encoding of the contract's 8-bit texts.
    enum eTextEncoding
    {
        /// With '?' for letters that Latin-1 lacks. Files keep them.
        eLatin1Texts,
        /// All letters.
        eUtf8Texts
    };
    /// For the whole process, before a library is opened; eLatin1Texts otherwise. The panel has a
    /// choice of its own, nodebrowser::SetTextEncoding, which must be the same.
    static void SetTextEncoding(eTextEncoding encoding);

    /// With no library open. The parent, which may be null, owns it.
    explicit CEmbeddedHost(QObject* parent = nullptr);
    /// Closes the library.
    ~CEmbeddedHost() override;

    /// Null when there is none.
    static CEmbeddedHost* GetInstance();

    /// Opens the library in the folder in place of the open one. Faults in it are reported on the
    /// message channel, and the rest is opened. False when the folder is no library that can be
    /// opened; the open one stays open then. `progress` is called while files are read; an attempt
    /// to open another library meanwhile is refused.
    bool OpenLibrary(QString const& folder, Progress const& progress = Progress());
    /// A library is being read or closed, so that no other can be opened now.
    bool IsOpening() const;
    /// Stops OpenLibrary while it reads; it returns false and leaves no library open.
    void CancelOpening();
    /// Whether it would be opened; otherwise the message channel says why not.
    bool CanOpenLibrary(QString const& folder);

    /// Whether the folder is meant to be a library, be it damaged: it has a manifest.
    static bool IsLibrary(QString const& folder);
    /// The name of the manifest, for messages.
    static QString GetManifestName();
    /// @{

    /// Makes a library in the folder, which is missing or empty; without `library` one with a
    /// writable data source and no items. Data sources need UIDs of their own, and paths within the
    /// library folder that do not overlap. False, with the path and the reason as a sentence
    /// without the full stop, when that fails; `fault` is not null.
    static bool MakeLibrary(QString const& folder, QString* fault);
    static bool MakeLibrary(QString const& folder, embeddedhost::NewLibrary const& library,
                            QString* fault);
    /// @}

    /// Opens the items as a library without a folder in place of the open one. They can be changed
    /// like those of a folder, with undo and notifications. False when one of them is invalid: the
    /// message channel says which and why, and the open library stays open. `save` is called
    /// by a save when something has changed; without it, saving is refused. The items' only data
    /// source is the library, so they cannot be moved; they have no files to check out or to show.
    bool OpenItems(QString const& name, std::vector<embeddedhost::MemoryItem> const& items,
                   SaveItems const& save = SaveItems());
    /// Closes the library without saving it. Another can be opened from LibraryChanged on. A
    /// listener to the undo stack, which is cleared before, may delete this host.
    void CloseLibrary();

    /// Invalid when none is open.
    tarno::datamodel::ItemLibraryAccessor GetLibrary() const;
    /// The name of the open library; empty when there is none.
    QString GetLibraryName() const;
    /// Its canonical folder; empty when there is none, and for a library in memory.
    QString GetLibraryFolder() const;

    /// The items of the open library as they are now, for programs that keep them: in the order in
    /// which they were opened, those of a folder file by file. Keys of a library file for which
    /// MemoryItem has no member are left out, such as "parent".
    std::vector<embeddedhost::MemoryItem> GetItems() const;
    /// The item of the open library with the uid (UTF-8); null for none.
    tarno::datamodel::ItemID FindItem(std::string const& uid) const;
    /// Ports, nodes and connections of the item; empty for an unknown one.
    embeddedhost::GraphBody GetBody(tarno::datamodel::ItemID const& id) const;

    /// The category of the item, in UTF-8; empty for none.
    std::string GetCategory(tarno::datamodel::ItemID const& id) const;

    /// Changes an item's ports, nodes and connections as one command, which the undo menu calls
    /// by the 8-bit text. False when it is refused, as positions are that are not finite and
    /// texts that are not UTF-8; the message channel says why.
    bool SetBody(tarno::datamodel::ItemID const& id, embeddedhost::GraphBody const& body,
                 std::string const& text);

    /// Takes the item out of the library as one command; its file goes with the next save, or its
    /// place in a file that it shares. False when it is refused; the message channel says why.
    bool DeleteItem(tarno::datamodel::ItemID const& id);
    /// The items that have it among their nodes, implement it or derive from it.
    std::vector<tarno::datamodel::ItemID> FindUsers(tarno::datamodel::ItemID const& id) const;

    /// The library has unsaved changes.
    bool IsModified() const;
    /// The unsaved changes as a text for RestoreUnsavedChanges, also of another process; empty when
    /// there are none, and for a library in memory.
    QByteArray GetUnsavedChanges() const;
    /// Applies the changes again, as one command; they are unsaved as before. False when some could
    /// not be applied; the message channel says which and why.
    bool RestoreUnsavedChanges(QByteArray const& changes);

    /// The files, with absolute paths, that a save would leave alone because another program has
    /// changed them since they were read.
    QStringList FindConflicts() const;
    /// Reads changes that other programs have made in the folder, now instead of after a delay.
    void CheckFolder();
    /// Resolves a conflict, a file that another program has changed while it has unsaved changes:
    /// takes the file's content, undoably. The path is absolute. If the file is gone, its items are
    /// removed. False when that cannot be done; the message channel says why.
    bool TakeFileFromDisk(QString const& path);
    /// Resolves it the other way: lets the next save replace the file. Does nothing to one without
    /// unsaved changes.
    bool OverwriteFileOnDisk(QString const& path);

    /// Makes the folder a git work tree whose first commit holds all that is in it. False, with
    /// git's reason, when that fails.
    static bool MakeWorkTree(QString const& folder, QString* fault);

    /// For the panel, and for undo and redo; lives as long as the host.
    embeddedhost::CCommandManager& GetCommandManager();
    /// The messages for the user; lives as long as the host.
    embeddedhost::CMessageChannel& GetMessages();
    /// The services of the process, which outlive the host.
    embeddedhost::CServiceRegistry& GetServices();

    /// Whether the user wants to see source control, where there is a work tree; true at first.
    bool IsRevisionControlEnabled() const;
    /// Panels follow at once.
    void SetRevisionControlEnabled(bool isEnabled);

    /// The compound that the editor works on; invalid when none was chosen in the open library.
    tarno::datamodel::CompoundAccessor GetCompoundTarget() const;
    /// As a double click in the panel does. An invalid accessor chooses none.
    void SetCompoundTarget(tarno::datamodel::CompoundAccessor const& compound);

Q_SIGNALS:
    /// Another library is open, or none. A listener may close it, open another one, which is
    /// refused while one is being opened, or delete the host.
    void LibraryChanged();
    /// Items or their files changed; sent from the event loop, once for a burst of changes.
    void ContentChanged();
    /// Sent for each choice, even of the same compound again.
    void CompoundTargetChanged();
    /// The user wants to see the files, given with their absolute paths.
    void ShowFilesRequested(QStringList const& paths);

private:
    class Private;

    bool CanOpenAnother();
    /// Closes the open library, and opens the one that `read` makes. False when that is null, or a
    /// listener has deleted this host.
    bool Replace(std::function<std::shared_ptr<embeddedhost::CLibrary>()> const& read);
    /// Shows the library that was opened. False when a listener has closed it or deleted this host.
    bool Announce();

    /// Shared with calls in which a listener may delete this host.
    std::shared_ptr<Private> const m_Private;
};

#endif
