#ifndef FUZZ_LIBRARYSTATE_H
#define FUZZ_LIBRARYSTATE_H

#include <embeddedhost/embeddedhost.h>

#include <map>
#include <set>
#include <string>

/// The library's answers about an item, by question.
typedef std::map<std::string, std::string> ItemState;

/// The items of the open library by their folded uids.
typedef std::map<std::string, ItemState> LibraryState;

LibraryState GetState(CEmbeddedHost const& host);

/// Null for none.
tarno::datamodel::ItemID FindItem(CEmbeddedHost const& host, std::string const& foldedUid);

/// The entries of a document of CEmbeddedHost::GetUnsavedChanges(), whose order depends on that
/// of the files.
std::multiset<std::string> GetEntries(QByteArray const& unsavedChanges);
/// The objects alone, as a save would write them, wherever that is.
std::multiset<std::string> GetObjects(QByteArray const& unsavedChanges);

/// The differences, for a message.
std::string Describe(LibraryState const& left, LibraryState const& right);

#endif
