#ifndef NODEBROWSER_TESTS_FAULTYFILES_H
#define NODEBROWSER_TESTS_FAULTYFILES_H

#include <functional>

/// Stands between the test program and what the system does with files: opening, reading, writing,
/// synchronising, renaming, removing and closing. Calls of the thread that arms it are counted, and
/// at one of them something happens.
namespace faultyfiles {

/// From now on the call with this number, counted from 1, fails with the error; with `forGood`
/// those after it fail, too. A write with `isHalf` writes half of what it was given before.
void FailAt(int call, int error, bool forGood, bool isHalf = false);
/// Runs the action before the call with this number. Calls of the action are not counted.
void RunAt(int call, std::function<void()> action);

/// Whether the file system of this thread exchanges files, and renames without replacing. Not all
/// of them do.
void SetRenamesWithFlags(bool areKnown);

/// Ends it. Whether there were as many calls.
bool Stop();

} // namespace faultyfiles

#endif
