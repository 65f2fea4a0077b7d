#ifndef NODEBROWSER_TESTS_TESTCALLS_H
#define NODEBROWSER_TESTS_TESTCALLS_H

// What is asked of the test host and done to it, as texts.

#include "qorm.h"

#include <QMap>
#include <QStringList>

#include <functional>
#include <stdexcept>

/// What the host throws when a test told it to.
class HostError : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// The calls of the host; one object at a time.
class TestCalls
{
public:
    TestCalls()
    {
        Q_ASSERT(!s_Current);
        s_Current = this;
    }

    ~TestCalls()
    {
        s_Current = nullptr;
    }

    static TestCalls& Get()
    {
        Q_ASSERT(s_Current);
        return *s_Current;
    }

    /// What was done to the host since the last call, in order. Texts stand in quotes, so that
    /// '' and null differ; the host's own command manager is "manager".
    QStringList TakeCalls()
    {
        return std::exchange(m_Calls, QStringList());
    }

    /// How often a query was asked, or an operation called, since the last call for it.
    int TakeCount(char const* operation)
    {
        return m_Counts.take(operation);
    }

    /// The n-th call of the operation from now on throws a HostError, once.
    void ThrowAt(char const* operation, int call)
    {
        m_CallsUntilThrow[operation] = call;
    }

    /// The n-th call of whatever operation from now on runs the action, once, before it does
    /// anything else.
    void RunAt(int call, std::function<void()> const& action)
    {
        m_CallsUntilAction = call;
        m_Action = action;
    }

    /// The action has been run.
    bool HasRun() const
    {
        return !m_Action;
    }

    void Add(char const* operation, QStringList const& arguments, bool isListed)
    {
        if (isListed)
            m_Calls << (QStringList(operation) + arguments).join(" ");
        ++m_Counts[operation];
        if (m_Action && --m_CallsUntilAction == 0)
            std::exchange(m_Action, nullptr)();
        auto const due = m_CallsUntilThrow.find(operation);
        if (due == m_CallsUntilThrow.end() || --*due > 0)
            return;
        m_CallsUntilThrow.erase(due);
        throw HostError(operation);
    }

    /// List queries among the calls, too.
    bool m_ListsQueries = false;

private:
    static inline TestCalls* s_Current = nullptr;

    QStringList m_Calls;
    QMap<QString, int> m_Counts;
    QMap<QString, int> m_CallsUntilThrow;
    int m_CallsUntilAction = 0;
    std::function<void()> m_Action;
};

// For the definitions of the contract: what is always listed, and what is listed on demand.

inline void Record(char const* operation, QStringList const& arguments = QStringList())
{
    TestCalls::Get().Add(operation, arguments, true);
}

inline void Query(char const* operation, QStringList const& arguments = QStringList())
{
    TestCalls::Get().Add(operation, arguments, TestCalls::Get().m_ListsQueries);
}

// How arguments are written down.

inline QString Quoted(char const* text)
{
    return text ? "'" + QString::fromLatin1(text) + "'" : QString("null");
}

inline QString Quoted(std::string const& text)
{
    return Quoted(text.c_str());
}

inline QString TextOf(bool value)
{
    return value ? "true" : "false";
}

inline QString TextOf(qorm::QormHandle<qorm::IDbObject> const& object)
{
    return object.IsValid() ? QString::fromLatin1(object.GetDbObjectId().GetStr()) : "-";
}

#endif
