#ifndef EMBEDDEDHOST_UNSAVEDCHANGES_H
#define EMBEDDEDHOST_UNSAVEDCHANGES_H

#include "model/library.h"

#include <framework.h>

#include <nlohmann/json.hpp>

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace embeddedhost {

// The unsaved changes of a library as a document, for a time when the library is open again:
//   format        1
//   library       the library's folder
//   objects       for each object that was changed or is new:
//                   source  the uid of its data source
//                   file    its path in the library folder
//                   digest  of the file that the change was made to; empty for a new file
//                   saved   the object before the change; null for a new one
//                   object  the object as a save would write it
//   removedFiles  for each file that a save would remove: file, digest

/// The text of the document; empty when there are none.
QByteArray CollectUnsavedChanges(CLibrary const& library);

/// The document in the text. Null, and the reason, unless it is one of the library.
nlohmann::ordered_json ParseUnsavedChanges(QByteArray const& text, QString const& libraryFolder,
                                           QString* fault);

/// How many objects the document is about.
int CountUnsavedChanges(nlohmann::ordered_json const& document);

/// Makes the changes of the document as one command. An object that other programs have
/// changed since is in conflict with the file, as if it had been open all the time. Changes that
/// are no longer possible are left out and returned, a sentence for each.
QStringList RestoreUnsavedChanges(CLibrary& library, nlohmann::ordered_json const& document,
                                  wek::fwk::ICommandManager* manager);

} // namespace embeddedhost

#endif
