#ifndef EMBEDDEDHOST_LIBRARYREADER_H
#define EMBEDDEDHOST_LIBRARYREADER_H

#include "framework/messagechannel.h"

#include <functional>
#include <memory>

namespace embeddedhost {

class CLibrary;

/// Called with the number of files read; false stops the reading.
typedef std::function<bool(int done, int total)> ReadProgress;

/// Whether the folder has a usable manifest, so that ReadLibrary will open it. Reports only the
/// faults that prevent that.
bool CheckLibrary(QString const& folder, CMessageChannel& messages);

/// Reads a library folder. Faulty parts are reported and left out; null when the folder cannot be
/// opened at all, or the reading was stopped.
std::shared_ptr<CLibrary> ReadLibrary(QString const& folder, CMessageChannel& messages,
                                      ReadProgress const& progress);

} // namespace embeddedhost

#endif
