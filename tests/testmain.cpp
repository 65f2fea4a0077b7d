#include "loggedtest.h"

#include <QApplication>
#include <QTest>

#include <memory>
#include <vector>

static std::vector<MakeTest>& AddedTests()
{
    static std::vector<MakeTest> tests;
    return tests;
}

bool AddTest(MakeTest makeTest)
{
    AddedTests().push_back(makeTest);
    return true;
}

int main(int argc, char** argv)
{
    std::unique_ptr<QApplication> const application(MakeApplication(argc, argv));
    QByteArray const first(argv[argc > 1]);
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
