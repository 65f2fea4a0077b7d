#include "browsertest.h"

using namespace tarno::datamodel;

namespace {

/// The drags that were run: what the last one carried, and what happens meanwhile.
struct SDrags
{
    int count = 0;
    int cancelCount = 0;
    QStringList formats;
    QByteArray payload;
    Qt::DropActions actions;
    QObject* source = nullptr;
    std::function<void()> meanwhile;
} drags;

} // namespace

// These take the place of the toolkit's own, which need a person with a mouse.
Qt::DropAction QDrag::exec(Qt::DropActions supportedActions)
{
    ++drags.count;
    drags.formats = mimeData()->formats();
    drags.payload = mimeData()->data("tarno/toc.key");
    drags.actions = supportedActions;
    drags.source = source();
    QPointer<QDrag> const self(this);
    if (drags.meanwhile)
        drags.meanwhile();
    delete self.data();
    return Qt::IgnoreAction;
}

void QDrag::cancel()
{
    ++drags.cancelCount;
}

class TestDrag : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void dragsTheIdentifierAtDistance()
    {
        int const distance = QApplication::startDragDistance();
        QPoint const start = m_Browser->GetRowCenter(1);
        auto const move = [&](int x, int y, Qt::MouseButton held) {
            Send(QEvent::MouseMove, start + QPoint(x, y), Qt::NoButton, held);
        };
        move(500, 0, Qt::LeftButton);
        Send(QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        move(distance - 1, 0, Qt::LeftButton);
        move(distance, 0, Qt::NoButton);
        move(distance, 0, Qt::RightButton);
        QCOMPARE(drags.count, 0);
        move(1, 1 - distance, Qt::LeftButton);
        QCOMPARE(drags.count, 1);
        QCOMPARE(drags.formats, QStringList("tarno/toc.key"));
        QCOMPARE(drags.actions, Qt::DropActions(Qt::CopyAction));
        QCOMPARE(drags.source, static_cast<QObject*>(m_Browser.get()));
        // "item:A" and a letter outside ASCII: the number of bytes, then UTF-16, big end first.
        QCOMPARE(drags.payload.toHex(), QByteArray("0000000e006900740065006d003a004100e4"));
        QVERIFY(m_Browser->GetSelection() == (*m_Library)["b type"].id);
    }

    void startsNoDragWithoutPanel()
    {
        QPoint const start = m_Browser->GetRowCenter(0);
        Send(QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        // With the first thing that the host is asked.
        m_Host->RunAt(1, [this] { m_Browser.reset(); });
        Send(QEvent::MouseMove, start + QPoint(500, 0), Qt::NoButton, Qt::LeftButton);
        QVERIFY(!m_Browser);
        QCOMPARE(drags.count, 0);
    }

    void survivesWhatHappensDuringDrag()
    {
        TestLibrary other("B");
        std::function<void()> const events[] = {
            [&] { m_Browser->SetItemLibrary(other.GetAccessor()); },
            [&] { m_Library->Remove((*m_Library)["a solver"]); },
            // No drag starts within another.
            [&] { Drag(1); },
            [&] { m_Library.reset(); },
            [&] { m_Browser.reset(); },
        };
        for (auto const& event : events) {
            SetUp();
            drags.meanwhile = [&] {
                event();
                if (!m_Browser)
                    return;
                m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary);
                m_Browser->Paint();
            };
            Drag(0);
            QCOMPARE(drags.count, 1);
            // Without the panel there is nothing left to drag.
            QCOMPARE(drags.cancelCount, m_Browser ? 0 : 1);
            if (!m_Browser || !m_Library)
                continue;
            drags.meanwhile = nullptr;
            m_Browser->SetItemLibrary(m_Library->GetAccessor());
            m_Browser->Paint();
            Drag(0);
            QCOMPARE(drags.count, 2);
        }
    }

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        drags = SDrags();
        m_Library->Add(TarnoType::gSolver, "a solver");
        m_Library->Add(LibType::gType, "b type", "", "A\xE4");
        MakeBrowser();
    }

private:
    /// Presses a row and moves with the button down as far as it takes.
    void Drag(int row)
    {
        QPoint const start = m_Browser->GetRowCenter(row);
        Send(QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        Send(QEvent::MouseMove, start + QPoint(QApplication::startDragDistance(), 0), Qt::NoButton,
             Qt::LeftButton);
    }
};

NODEBROWSER_TEST(TestDrag)

#include "tst_drag.moc"
