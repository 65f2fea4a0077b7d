#ifndef NODEBROWSER_TESTS_SOURCECONTROLTASK_H
#define NODEBROWSER_TESTS_SOURCECONTROLTASK_H

#include <sourcecontrol.h>

#include <memory>

struct DeleteTask
{
    void operator()(ScsTask* task) const
    {
        task->DeleteMe();
    }
};
typedef std::unique_ptr<ScsTask, DeleteTask> TaskPtr;

inline TaskPtr MakeTask()
{
    return TaskPtr(new ScsTask(QStringLiteral("Test")));
}

#endif
