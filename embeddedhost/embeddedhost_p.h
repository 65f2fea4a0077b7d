#ifndef EMBEDDEDHOST_EMBEDDEDHOST_P_H
#define EMBEDDEDHOST_EMBEDDEDHOST_P_H

// Not installed: what the host consists of, for its own files.

#include "embeddedhost.h"
#include "framework/databaseproxy.h"
#include "model/library.h"
#include "sourcecontrol/libraryobserver.h"
#include "sourcecontrol/revisioncontrolhelper.h"
#include "sourcecontrol/sourcecontrolservice.h"
#include "storage/librarywatcher.h"

#include <QTimer>

#include <memory>

class CEmbeddedHost::Private
{
public:
    /// False, and a message says so, unless the library that is open has a folder.
    bool RequireFolder();
    /// Closes the open library. None can be opened meanwhile: it would be torn down with this one.
    void Release(embeddedhost::CLibrary& closed);

    /// Shared with OpenLibrary, which goes on using it for a moment when a listener deletes the
    /// host.
    std::shared_ptr<embeddedhost::CMessageChannel> const sharedMessages =
        std::make_shared<embeddedhost::CMessageChannel>();
    embeddedhost::CMessageChannel& messages = *sharedMessages;
    embeddedhost::CCommandManager commandManager;
    embeddedhost::CDatabaseProxy databaseProxy;
    /// Null when none is open. Declared before the members that refer to it, and so destroyed
    /// after them: a listener may open a library while the host closes its last.
    std::shared_ptr<embeddedhost::CLibrary> library;
    embeddedhost::CSourceControlService sourceControl;
    embeddedhost::CRevisionControlHelper revisionControlHelper{messages, sourceControl};
    tarno::datamodel::CompoundAccessor compoundTarget;
    std::unique_ptr<embeddedhost::CLibraryWatcher> watcher;
    bool isClosing = false;
    bool isOpening = false;
    bool isOpeningCancelled = false;
    /// Listens as long as a library is open.
    embeddedhost::CLibraryObserver observer;
    QTimer contentTimer;
};

#endif
