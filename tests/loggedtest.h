#ifndef NODEBROWSER_TESTS_LOGGEDTEST_H
#define NODEBROWSER_TESTS_LOGGEDTEST_H

#include <QObject>
#include <QStringList>

class QApplication;

/// Base of all tests: a warning or error in the log fails the test function it appears in, unless
/// it was announced.
class LoggedTest : public QObject
{
    Q_OBJECT

public:
    LoggedTest();
    ~LoggedTest() override;

protected:
    /// Messages that contain the text may appear until the test function ends.
    void Expect(QString const& text);

    // Run before and after each test function.
    virtual void SetUp() {}
    virtual void TearDown() {}

private Q_SLOTS:
    void init();
    void cleanup();

private:
    static void Receive(QtMsgType type, QMessageLogContext const& context, QString const& message);

    QStringList m_Expected;
    QStringList m_Unexpected;
    QtMessageHandler m_PreviousHandler;
};

/// An application that looks the same everywhere and moves nothing by itself.
QApplication* MakeApplication(int& argc, char** argv);
/// Runs the tests of the object in such an application.
int RunTest(LoggedTest& test, int argc, char** argv);

typedef LoggedTest* (*MakeTest)();
/// For NODEBROWSER_TEST; the value means nothing.
bool AddTest(MakeTest makeTest);

typedef int (*RunChild)(QStringList const& arguments);
/// Lets the program start itself as another one: `program NAME ...` calls `run` with what follows
/// the name, and ends with what it returns.
bool AddChild(char const* name, RunChild run);

/// Adds the class to a program of several, of which the first argument may name one. Their main
/// function is in testmain.cpp.
#define NODEBROWSER_TEST(Test)                                                                     \
    static bool const is##Test##Added = AddTest([]() -> LoggedTest* { return new Test; });

#define NODEBROWSER_TEST_MAIN(Test)                                                                \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        Test test;                                                                                 \
        return RunTest(test, argc, argv);                                                          \
    }

#endif
