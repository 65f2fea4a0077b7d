#ifndef NODEBROWSER_TESTS_PANELTEST_H
#define NODEBROWSER_TESTS_PANELTEST_H

#include "loggedtest.h"
#include "testhost.h"

#include <memory>

/// Base of tests that need a host: each test function has a fresh one.
class PanelTest : public LoggedTest
{
protected:
    void SetUp() override
    {
        m_Host.reset(new TestHost);
    }

    void TearDown() override
    {
        m_Host.reset();
    }

    std::unique_ptr<TestHost> m_Host;
};

#endif
