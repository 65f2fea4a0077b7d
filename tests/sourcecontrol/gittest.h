#ifndef NODEBROWSER_TESTS_GITTEST_H
#define NODEBROWSER_TESTS_GITTEST_H

#include "gitlibrary.h"
#include "sourcecontrol/statebits.h"

/// Base of tests with work trees that the git command makes, without the user's settings.
class GitTest : public LoggedTest
{
protected:
    void SetUp() override
    {
        // One for the process, since libgit2 reads where it is only once.
        static QTemporaryDir const home;
        GitFolder::UseNoSettings(home.path());
    }
};

struct DeleteTask
{
    void operator()(ScsTask* task) const
    {
        task->DeleteMe();
    }
};
typedef std::unique_ptr<ScsTask, DeleteTask> TaskPtr;

/// A task that has asked for the states of all compounds of the library.
inline TaskPtr AskForAll(GitLibrary const& library)
{
    TaskPtr task(new ScsTask("Test"));
    task->RequestObjectStates(library.GetObjects());
    return task;
}

inline bool CheckOut(qorm::QormHandle<qorm::IDbObject> const& object)
{
    bool isCheckedOut = false;
    GetUIHelper().CheckOut(object, isCheckedOut, true);
    return isCheckedOut;
}

#endif
