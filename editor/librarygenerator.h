#ifndef EDITOR_LIBRARYGENERATOR_H
#define EDITOR_LIBRARYGENERATOR_H

#include <QString>

/// Writes a library of made-up but plausible items into a folder that is empty or does not exist
/// yet. The same count gives the same bytes everywhere. Raises std::runtime_error with the file
/// and the reason when something cannot be written; files written before that stay.
void GenerateLibrary(QString const& folder, unsigned long itemCount);

#endif
