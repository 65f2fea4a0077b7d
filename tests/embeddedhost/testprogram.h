#ifndef NODEBROWSER_TESTS_TESTPROGRAM_H
#define NODEBROWSER_TESTS_TESTPROGRAM_H

#include "loggedtest.h"

/// A program of several test classes: `program TestSaving ...` runs one of them, `program` all. It
/// starts itself as other programs, too, with a name of theirs: `program save FOLDER ...`.
/// `run` is called with what follows the name, and returns the exit code.
bool AddChild(char const* name, int (*run)(QStringList const& arguments));

#endif
