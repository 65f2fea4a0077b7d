#include "shortcutlist.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

namespace {

// In pixels.
int const kColumnGap = 32;
int const kRowGap = 6;
int const kSectionGap = 10;
int const kSideGap = 40;

QGridLayout& AddSide(QHBoxLayout& sides)
{
    auto* const side = new QVBoxLayout;
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(kColumnGap);
    grid->setVerticalSpacing(kRowGap);
    side->addLayout(grid);
    side->addStretch();
    sides.addLayout(side);
    return *grid;
}

void CollectActions(QList<QAction*> const& actions, QVector<QPair<QString, QString>>& lines)
{
    for (QAction const* const action : actions) {
        if (action->menu())
            CollectActions(action->menu()->actions(), lines);
        else if (!action->shortcut().isEmpty())
            lines.append(
                {action->iconText(), action->shortcut().toString(QKeySequence::NativeText)});
    }
}

} // namespace

CShortcutList::CShortcutList(QMenuBar const& menuBar, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Shortcuts"));
    // Side by side, since one below the other they would be higher than small screens.
    auto* const sides = new QHBoxLayout;
    sides->setSpacing(kSideGap);
    AddSection(AddSide(*sides), tr("Menus"), CollectMenuShortcuts(menuBar));
    QGridLayout& mouse = AddSide(*sides);
    AddSection(mouse, tr("Node browser"), GetPanelLines());
    AddSection(mouse, tr("Canvas"), GetCanvasLines());

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(sides);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

CShortcutList::Lines CShortcutList::CollectMenuShortcuts(QMenuBar const& menuBar)
{
    Lines lines;
    CollectActions(menuBar.actions(), lines);
    return lines;
}

CShortcutList::Lines CShortcutList::GetPanelLines()
{
    return {{tr("Search names and tags"), tr("Type words")},
            {tr("Add an item to the graph"), tr("Enter, or drag its row")},
            {tr("Open a compound"), tr("Alt+Down, or double click")},
            {tr("Rename"), tr("F2")},
            {tr("Tag, move, show files"), tr("Right click, or the Menu key")},
            {tr("Back to the canvas"), tr("Esc")}};
}

CShortcutList::Lines CShortcutList::GetCanvasLines()
{
    return {{tr("Add a node"), tr("Tab, Space, or double click where it goes")},
            {tr("Add a node that is connected"), tr("Let go of a connection where there is none")},
            {tr("Put a node into a connection"), tr("Drop it there")},
            {tr("Connect"), tr("Drag from an output to an input")},
            {tr("Move or remove a connection"), tr("Drag it off its input")},
            {tr("Move nodes"), tr("Drag them, or press the arrow keys")},
            {tr("Open a compound"), tr("Alt+Down, or double click its node")},
            {tr("Add inputs and outputs"), tr("Right click")},
            {tr("Select several"), tr("Drag around them, or click with Shift")},
            {tr("Zoom"), tr("Wheel")},
            {tr("Move the view"), tr("Drag with Space or the middle button")},
            {tr("Break off"), tr("Esc")}};
}

void CShortcutList::AddSection(QGridLayout& grid, QString const& title, Lines const& lines)
{
    if (grid.count() > 0)
        grid.setRowMinimumHeight(grid.rowCount(), kSectionGap);
    auto* const heading = new QLabel(QStringLiteral("<b>%1</b>").arg(title));
    grid.addWidget(heading, grid.rowCount(), 0, 1, 2);
    for (auto const& [what, how] : lines) {
        int const row = grid.rowCount();
        grid.addWidget(new QLabel(what), row, 0);
        grid.addWidget(new QLabel(how), row, 1);
    }
}

#include "moc_shortcutlist.cpp"
