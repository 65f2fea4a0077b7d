#ifndef EDITOR_SHORTCUTLIST_H
#define EDITOR_SHORTCUTLIST_H

#include <QDialog>
#include <QPair>
#include <QString>
#include <QVector>

class QGridLayout;
class QMenuBar;

/// Lists shortcuts and gestures: those of the menus, and those of the panel and the canvas.
class CShortcutList : public QDialog
{
    Q_OBJECT

public:
    CShortcutList(QMenuBar const& menuBar, QWidget* parent);

private:
    /// An action and its keys or gesture.
    typedef QVector<QPair<QString, QString>> Lines;

    static Lines CollectMenuShortcuts(QMenuBar const& menuBar);
    static Lines GetPanelLines();
    static Lines GetCanvasLines();
    void AddSection(QGridLayout& grid, QString const& title, Lines const& lines);
};

#endif
