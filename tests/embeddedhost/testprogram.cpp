#include "testprogram.h"

#include <QApplication>
#include <QMap>

#include <memory>
#include <vector>

namespace {

typedef int (*RunChild)(QStringList const& arguments);

// Functions, since those who add are static objects themselves.
std::vector<MakeTest>& GetTests()
{
    static std::vector<MakeTest> tests;
    return tests;
}

QMap<QByteArray, RunChild>& GetChildren()
{
    static QMap<QByteArray, RunChild> children;
    return children;
}

} // namespace

bool AddTest(MakeTest makeTest)
{
    GetTests().push_back(makeTest);
    return true;
}

bool AddChild(char const* name, RunChild run)
{
    GetChildren()[name] = run;
    return true;
}

int main(int argc, char** argv)
{
    // Options are for all.
    QByteArray const name(argc > 1 && *argv[1] != '-' ? argv[1] : "");
    if (RunChild const run = GetChildren().value(name)) {
        QApplication const application(argc, argv);
        return run(QCoreApplication::arguments().mid(2));
    }
    int const isOne = !name.isEmpty();
    int failures = 0;
    bool isFound = false;
    for (MakeTest const makeTest : GetTests()) {
        std::unique_ptr<LoggedTest> const test(makeTest());
        if (!isOne || name == test->metaObject()->className()) {
            isFound = true;
            failures += RunTest(*test, argc - isOne, argv + isOne);
        }
    }
    if (!isFound)
        qCritical("there is no test class \"%s\"", name.constData());
    return isFound ? failures : 1;
}
