#ifndef EDITOR_LIBRARYFILES_H
#define EDITOR_LIBRARYFILES_H

#include <QString>

#include <string>

// Files and folders of new libraries. Both raise std::runtime_error with the path and the reason
// when something cannot be made.

void WriteFile(QString const& path, std::string const& text);
void MakeFolder(QString const& path);

#endif
