#ifndef EDITOR_LIBRARYFILES_H
#define EDITOR_LIBRARYFILES_H

#include <nlohmann/json.hpp>

#include <QString>

#include <string>

// Files and folders of new libraries. All raise std::runtime_error with the path and the reason
// when something cannot be made.

void WriteFile(QString const& path, std::string const& text);
void MakeFolder(QString const& path);
/// Refuses one that has something in it.
void MakeEmptyFolder(QString const& path);

/// A data source as the manifest has it.
nlohmann::ordered_json MakeDataSource(std::string const& uid, char const* name, char const* path,
                                      char const* access);
void WriteManifest(QString const& folder, std::string const& name,
                   nlohmann::ordered_json const& dataSources);

/// Makes an empty library with one writable data source.
void MakeLibrary(QString const& folder);

#endif
