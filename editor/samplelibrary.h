#ifndef EDITOR_SAMPLELIBRARY_H
#define EDITOR_SAMPLELIBRARY_H

#include <QString>

/// The user's own copy of the sample library, a git work tree. It is made if it is missing;
/// `fault` is then empty, or says why it could not be put under source control. Raises
/// std::runtime_error if there can be no copy, and leaves no half of one behind.
void PrepareSampleLibrary(QString const& source, QString const& copy, QString* fault);

#endif
