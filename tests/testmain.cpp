#include "loggedtest.h"

#include <QApplication>

#include <memory>
#include <vector>

// Functions, since those who add are static objects themselves.
static std::vector<MakeTest>& AddedTests()
{
    static std::vector<MakeTest> tests;
    return tests;
}

static NewApplication newTestApplication = [](int& argc, char** argv) {
    return new QApplication(argc, argv);
};

static QMap<QByteArray, RunChild>& AddedChildren()
{
    static QMap<QByteArray, RunChild> children;
    return children;
}

bool AddTest(MakeTest makeTest)
{
    AddedTests().push_back(makeTest);
    return true;
}

bool AddChild(char const* name, RunChild run)
{
    AddedChildren()[name] = run;
    return true;
}

bool UseApplication(NewApplication newApplication)
{
    newTestApplication = newApplication;
    return true;
}

int main(int argc, char** argv)
{
    std::unique_ptr<QApplication> const application(newTestApplication(argc, argv));
    StandStill();
    QByteArray const first(argv[argc > 1]);
    if (RunChild const run = AddedChildren().value(first))
        return run(QCoreApplication::arguments().mid(2));
    int const isOne = first.startsWith("Test");
    bool isFound = false;
    int failures = 0;
    for (MakeTest const makeTest : AddedTests()) {
        std::unique_ptr<LoggedTest> const test(makeTest());
        if (isOne && first != test->metaObject()->className())
            continue;
        isFound = true;
        failures += QTest::qExec(test.get(), argc - isOne, argv + isOne);
    }
    if (!isFound)
        qCritical("There is no test class \"%s\".", first.constData());
    return isFound ? failures : 1;
}
