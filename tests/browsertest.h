#ifndef NODEBROWSER_TESTS_BROWSERTEST_H
#define NODEBROWSER_TESTS_BROWSERTEST_H

#include "paneltest.h"
#include "testbrowser.h"

#include <QApplication>
#include <QMouseEvent>

/// Base of tests around one panel: each test function has an empty library, too, and makes its
/// panel when it likes.
class BrowserTest : public PanelTest
{
protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Library.reset(new TestLibrary);
    }

    void TearDown() override
    {
        m_Browser.reset();
        m_Library.reset();
        PanelTest::TearDown();
    }

    /// An item with a database object in the source.
    TestObject& AddStored(char const* kind, char const* name, TestDataSource* source)
    {
        return m_Library->AddObject(m_Library->Add(kind, name), source);
    }

    /// A type chooser, whose header is 23 high, over that many types without a name. The row
    /// area has the given size.
    void MakeTypeChooser(int rows, QSize const& rowArea)
    {
        for (int row = 0; row < rows; ++row)
            m_Library->Add(tarno::datamodel::LibType::gType, "");
        m_Browser.reset(new TestBrowser(CNodeBrowser::eConfigTypes));
        m_Browser->resize(rowArea.width(), 23 + rowArea.height());
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->Paint();
    }

    /// Gives the panel a mouse event as the toolkit does.
    void Send(QEvent::Type type, QPoint const& point, Qt::MouseButton button,
              Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, point, m_Browser->mapToGlobal(point), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(m_Browser.get(), &event);
    }

    std::unique_ptr<TestLibrary> m_Library;
    std::unique_ptr<TestBrowser> m_Browser;
};

#endif
