#ifndef NODEBROWSER_TESTS_BROWSERTEST_H
#define NODEBROWSER_TESTS_BROWSERTEST_H

#include "loggedtest.h"
#include "testbrowser.h"
#include "testhost.h"

/// Base of tests of the panel and its dialogs: each test function has a fresh host and an empty
/// library, and makes its panel when it likes. A test with rows may set all up again for each.
class BrowserTest : public LoggedTest
{
protected:
    void SetUp() override
    {
        BrowserTest::TearDown();
        m_Host.reset(new TestHost);
        m_Library.reset(new TestLibrary);
    }

    void TearDown() override
    {
        m_Browser.reset();
        m_Library.reset();
        m_Host.reset();
    }

    /// Adds an item with a database object in the source. Returns its UID.
    QString AddStored(char const* kind, char const* name, TestDataSource* source)
    {
        return QString::fromStdString(
            m_Library->AddObject(m_Library->Add(kind, name), source).m_Uid);
    }

    /// A panel over the library, painted once, that shows items of all kinds.
    void MakeBrowser(CNodeBrowser::eConfigType config = CNodeBrowser::eConfigNodes)
    {
        m_Browser.reset(new TestBrowser(config));
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->TabChanged(CNodeBrowser::eConfigAll);
        m_Browser->Paint();
    }

    /// A type chooser, whose header is 23 high, over that many more types without a name. The row
    /// area has the given size.
    void MakeTypeChooser(int rows, QSize const& rowArea)
    {
        for (int row = 0; row < rows; ++row)
            m_Library->Add(tarno::datamodel::LibType::gType, "");
        MakeBrowser(CNodeBrowser::eConfigTypes);
        m_Browser->resize(rowArea.width(), 23 + rowArea.height());
        m_Browser->Paint();
    }

    void Click(int row, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(m_Browser.get(), button, Qt::NoModifier, m_Browser->GetRowCenter(row));
    }

    /// Gives the panel a mouse event as the toolkit does.
    void Send(QEvent::Type type, QPoint const& point, Qt::MouseButton button,
              Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, point, m_Browser->mapToGlobal(point), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(m_Browser.get(), &event);
    }

    void TellInvalidated()
    {
        m_Library->Tell(
            [](auto& listener, auto& library) { listener.LibraryInvalidated(library); });
    }

    void TellTags(tarno::datamodel::ItemID const& id, char const* category = "ApplicationTags")
    {
        m_Library->Tell([&](auto& listener, auto& library) {
            listener.ItemTagsChanged(library, id, category);
        });
    }

    void TellState(tarno::datamodel::ItemID const& id, long state)
    {
        m_Library->Tell([&](auto& listener, auto& library) {
            listener.ItemAccessStateChanged(library, id, state);
        });
    }

    std::unique_ptr<TestHost> m_Host;
    std::unique_ptr<TestLibrary> m_Library;
    std::unique_ptr<TestBrowser> m_Browser;
};

#endif
