#ifndef NODEBROWSER_TESTS_LOGGEDTEST_H
#define NODEBROWSER_TESTS_LOGGEDTEST_H

#include <QObject>
#include <QStringList>

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

    bool IsExpected(QString const& message) const;

    QStringList m_Expected;
    QStringList m_Unexpected;
    QtMessageHandler m_PreviousHandler;
};

/// Runs the tests of the object in an application that looks the same everywhere and moves
/// nothing by itself.
int RunTest(LoggedTest& test, int argc, char** argv);

#define NODEBROWSER_TEST_MAIN(Test)                                                                \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        Test test;                                                                                 \
        return RunTest(test, argc, argv);                                                          \
    }

#endif
