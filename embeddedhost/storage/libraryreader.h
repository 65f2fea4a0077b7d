#ifndef EMBEDDEDHOST_LIBRARYREADER_H
#define EMBEDDEDHOST_LIBRARYREADER_H

#include "framework/messagechannel.h"

#include <functional>
#include <memory>

namespace embeddedhost {

class CLibrary;

/// Told how much of the whole has been read; false stops the reading.
typedef std::function<bool(int done, int total)> ReadProgress;

/// Whether there is a folder with a manifest that can be read, so that ReadLibrary will open it.
/// What keeps it from that is reported, and nothing else.
bool CheckLibrary(QString const& folder, CMessageChannel& messages);

/// Reads a library folder. What is wrong in it is reported and left out; null when nothing can
/// be opened at all, or the reading was stopped.
std::shared_ptr<CLibrary> ReadLibrary(QString const& folder, CMessageChannel& messages,
                                      ReadProgress const& progress);

} // namespace embeddedhost

#endif
