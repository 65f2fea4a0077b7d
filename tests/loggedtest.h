#ifndef NODEBROWSER_TESTS_LOGGEDTEST_H
#define NODEBROWSER_TESTS_LOGGEDTEST_H

#include <QtTest>

#include <tuple>

class QApplication;

/// Base of all tests: a warning or error in the log fails the test function it appears in, unless
/// it was announced.
class LoggedTest : public QObject
{
    Q_OBJECT

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
    QtMessageHandler m_PreviousHandler = nullptr;
};

/// From now on the application looks the same everywhere and moves nothing by itself.
void StandStill();

typedef LoggedTest* (*MakeTest)();
/// For NODEBROWSER_TEST; the value means nothing.
bool AddTest(MakeTest makeTest);

typedef int (*RunChild)(QStringList const& arguments);
/// Lets the program start itself as another one: `program NAME ...` calls `run` with what follows
/// the name, and ends with what it returns.
bool AddChild(char const* name, RunChild run);

typedef QApplication* (*NewApplication)(int& argc, char** argv);
/// The tests of the program run in this kind of application.
bool UseApplication(NewApplication newApplication);

/// Adds the class to the program, of which the first argument may name one.
#define NODEBROWSER_TEST(Test)                                                                     \
    static bool const is##Test##Added = AddTest([]() -> LoggedTest* { return new Test; });

/// The columns of a data function: AddColumns<int, QString>("count", "text").
template <class... Types, class... Names>
void AddColumns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

/// A row with one value for each column; texts may be given as literals.
template <class... Values>
void AddRow(char const* name, Values const&... values)
{
    QTestData& row = QTest::newRow(name);
    (row << ... << values);
}

#endif
