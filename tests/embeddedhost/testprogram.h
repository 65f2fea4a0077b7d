#ifndef NODEBROWSER_TESTS_TESTPROGRAM_H
#define NODEBROWSER_TESTS_TESTPROGRAM_H

#include "loggedtest.h"

#include <functional>
#include <memory>

/// A program of several test classes: `program TestSaving ...` runs one of them, `program` all. It
/// starts itself as other programs, too, with a name of theirs: `program save FOLDER ...`.
struct TestProgram
{
    typedef std::function<std::unique_ptr<LoggedTest>()> MakeTest;
    /// Called with what follows the name; returns the exit code.
    typedef std::function<int(QStringList const& arguments)> RunChild;

    static bool AddTest(QString const& name, MakeTest const& make);
    static bool AddChild(QString const& name, RunChild const& run);
};

#define NODEBROWSER_TEST(Class)                                                                    \
    static bool const g##Class##IsAdded =                                                          \
        TestProgram::AddTest(#Class, [] { return std::make_unique<Class>(); });

#endif
