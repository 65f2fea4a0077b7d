#ifndef EMBEDDEDHOST_SAVELEFTOVERS_H
#define EMBEDDEDHOST_SAVELEFTOVERS_H

#include <QString>

namespace embeddedhost {

/// Removes the temporary files that a save left in the folder when its process was killed. Young
/// ones stay, a save may still be at work on them; so does what may be somebody's own copy.
/// Such files are no trouble otherwise: the reader passes them over.
void RemoveSaveLeftovers(QString const& folder);

} // namespace embeddedhost

#endif
