#include "testprogram.h"

#include <QApplication>
#include <QMap>

namespace {

// Functions, since those who add are static objects themselves.
QMap<QString, TestProgram::MakeTest>& GetTests()
{
    static QMap<QString, TestProgram::MakeTest> tests;
    return tests;
}

QMap<QString, TestProgram::RunChild>& GetChildren()
{
    static QMap<QString, TestProgram::RunChild> children;
    return children;
}

} // namespace

bool TestProgram::AddTest(QString const& name, MakeTest const& make)
{
    GetTests()[name] = make;
    return true;
}

bool TestProgram::AddChild(QString const& name, RunChild const& run)
{
    GetChildren()[name] = run;
    return true;
}

int main(int argc, char** argv)
{
    QString const name = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (auto const run = GetChildren().value(name)) {
        QApplication const application(argc, argv);
        return run(QCoreApplication::arguments().mid(2));
    }
    if (auto const make = GetTests().value(name))
        return RunTest(*make(), argc - 1, argv + 1);
    int failures = 0;
    for (auto const& make : GetTests())
        failures += RunTest(*make(), argc, argv);
    return failures;
}
