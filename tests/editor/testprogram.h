#ifndef NODEBROWSER_TESTS_TESTPROGRAM_H
#define NODEBROWSER_TESTS_TESTPROGRAM_H

#include "loggedtest.h"

#include <QTest>

#include <functional>
#include <vector>

/// The test classes of a program that has several, each in a file of its own: they are registered
/// with a static Entry.
struct TestProgram
{
    typedef std::function<int(int, char**)> RunClass;

    static std::vector<RunClass>& GetClasses()
    {
        static std::vector<RunClass> classes;
        return classes;
    }

    template <class Test>
    struct Entry
    {
        Entry()
        {
            GetClasses().push_back([](int argc, char** argv) {
                Test test;
                return QTest::qExec(&test, argc, argv);
            });
        }
    };

    /// Answers how many functions failed.
    static int Run(int argc, char** argv)
    {
        int failureCount = 0;
        for (RunClass const& run : GetClasses())
            failureCount += run(argc, argv);
        return failureCount;
    }
};

#endif
