#ifndef NODEBROWSER_TESTS_PALETTETEST_H
#define NODEBROWSER_TESTS_PALETTETEST_H

#include "browsertest.h"
#include <palette/nodepalette.h>

// As a host may.
Q_DECLARE_METATYPE(tarno::datamodel::ItemID)

/// The palette with what tests look at; notes menus and renames instead of running them.
class TestPalette : public CNodePalette
{
public:
    using CNodePalette::CNodePalette;

    using CNodeBrowser::m_HeaderHeight, CNodeBrowser::m_ScrollBar, CNodeBrowser::m_ScrollOffset,
        CNodeBrowser::m_SearchEdit, CNodeBrowser::m_SelectedIndex;

    QStringList GetRows()
    {
        QStringList rows;
        for (int row = 0; row < GetRowCount(); ++row)
            rows << GetRowName(row);
        return rows;
    }

    QString GetSelected()
    {
        return GetRowName(GetSelectedRow());
    }

    int m_RenameCount = 0;
    /// What the last paint showed as selected.
    unsigned long m_PaintedSelection = 0;
    QStringList m_Menus;

protected:
    void OnRenameItem() override
    {
        ++m_RenameCount;
    }

    void paintEvent(QPaintEvent* event) override
    {
        CNodePalette::paintEvent(event);
        m_PaintedSelection = m_SelectedIndex;
    }

    void PopContexMenu(QPoint const& globalPos, unsigned long index) override
    {
        QVERIFY2(QTest::qWaitFor([&] { return m_PaintedSelection == index; }),
                 "the row is highlighted while its menu is open");
        bool const isThere = GetRowRect(int(index)).contains(mapFromGlobal(globalPos));
        m_Menus << QString("%1 %2").arg(index).arg(isThere ? "at its row" : "somewhere else");
    }
};

/// Base of tests around one palette that is on the screen: thirty solvers "Node 00" to "Node 29",
/// the compounds "Alpha Blur" and "Beta", and the type "Float", tagged "blur".
class PaletteTest : public BrowserTest
{
protected:
    void SetUp() override
    {
        using namespace tarno::datamodel;
        BrowserTest::SetUp();
        for (int number = 0; number < 30; ++number)
            m_Library->Add(TarnoType::gSolver,
                           QString("Node %1").arg(number, 2, 10, QChar('0')).toStdString());
        m_Library->Add(TarnoType::gCompound, "Alpha Blur");
        m_Library->Add(TarnoType::gCompound, "Beta");
        m_Library->Add(LibType::gType, "Float", "blur");
        MakePalette();
    }

    void TearDown() override
    {
        m_Window.reset();
        BrowserTest::TearDown();
    }

    /// In a window of the host's, beside a field that has the focus first.
    void MakePalette()
    {
        m_Window.reset(new QWidget);
        m_Window->resize(300, 500);
        m_HostField = new QLineEdit(m_Window.get());
        m_HostField->setGeometry(0, 460, 300, 30);
        m_Palette = new TestPalette(CNodeBrowser::eConfigNodes, m_Window.get());
        m_Palette->resize(300, 400);
        m_Palette->SetItemLibrary(m_Library->GetAccessor());
        m_Window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_Window.get()));
        m_Window->activateWindow();
        m_HostField->setFocus();
        m_Palette->setFocus();
        QCoreApplication::processEvents();
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(m_Palette->m_SearchEdit, key, modifiers);
    }

    void Type(QString const& text)
    {
        m_Palette->m_SearchEdit->setText(text);
        Settle();
    }

    /// Rows are up to date, and listeners know.
    void Settle()
    {
        m_Palette->GetRowCount();
        QCoreApplication::processEvents();
    }

    std::unique_ptr<QWidget> m_Window;
    QLineEdit* m_HostField = nullptr;
    TestPalette* m_Palette = nullptr;
};

#endif
