#ifndef EDITOR_SAMPLELIBRARY_H
#define EDITOR_SAMPLELIBRARY_H

#include <QString>

/// The user's own copy of the sample library, a git work tree. It is made when it is not there;
/// `fault` says then why it could not be put under source control, if so. Raises
/// std::runtime_error, and leaves nothing half made, when there can be no copy.
void PrepareSampleLibrary(QString const& source, QString const& copy, QString* fault);

#endif
