#ifndef EDITOR_SHORTCUTLIST_H
#define EDITOR_SHORTCUTLIST_H

#include <QDialog>
#include <QPair>
#include <QString>
#include <QVector>

class QGridLayout;
class QMenuBar;

/// Lists what can be done by keyboard and mouse: the menus' shortcuts, and what the panel and
/// the canvas react to.
class CShortcutList : public QDialog
{
    Q_OBJECT

public:
    CShortcutList(QMenuBar const& menuBar, QWidget* parent);

private:
    /// What is done, and how.
    typedef QVector<QPair<QString, QString>> Lines;

    static Lines CollectMenuShortcuts(QMenuBar const& menuBar);
    static Lines GetPanelLines();
    static Lines GetCanvasLines();
    void AddSection(QGridLayout& grid, QString const& title, Lines const& lines);
};

#endif
