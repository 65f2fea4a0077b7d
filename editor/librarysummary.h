#ifndef EDITOR_LIBRARYSUMMARY_H
#define EDITOR_LIBRARYSUMMARY_H

#include <datamodel.h>

#include <QString>

/// How many items of which kinds the library has, in words; empty for an invalid library.
QString SummarizeItems(tarno::datamodel::ItemLibraryAccessor const& library);

#endif
