#include "windowaccessible.h"

#include "mainwindow.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>

namespace {

/// The window: its child widgets come first, then context menus and other popups that are open.
class CAccessibleWindow : public QAccessibleWidget
{
public:
    explicit CAccessibleWindow(CMainWindow* window)
        : QAccessibleWidget(window, QAccessible::Window)
    {}

    int childCount() const override
    {
        return QAccessibleWidget::childCount() + GetPopups().size();
    }

    QAccessibleInterface* child(int index) const override
    {
        int const popup = index - QAccessibleWidget::childCount();
        return popup < 0 ? QAccessibleWidget::child(index) : GetPopups().value(popup);
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        // They lie over the child widgets, those of menus and fields, too. The last one that was
        // opened lies over the others.
        QList<QWidget*> popups = FindOpenPopups();
        popups.prepend(QApplication::activePopupWidget());
        for (QWidget* const popup : popups) {
            if (popup && popup->geometry().contains(x, y))
                return QAccessible::queryAccessibleInterface(popup);
        }
        return QAccessibleWidget::childAt(x, y);
    }

    int indexOfChild(QAccessibleInterface const* child) const override
    {
        auto const popups = GetPopups();
        for (int popup = 0; popup < popups.size(); ++popup) {
            if (popups[popup] == child)
                return QAccessibleWidget::childCount() + popup;
        }
        return QAccessibleWidget::indexOfChild(child);
    }

private:
    static QList<QWidget*> FindOpenPopups()
    {
        QList<QWidget*> popups;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowType() == Qt::Popup)
                popups << widget;
        }
        return popups;
    }

    QList<QAccessibleInterface*> GetPopups() const
    {
        QList<QAccessibleInterface*> popups;
        for (QWidget* const widget : FindOpenPopups()) {
            auto* const popup = QAccessible::queryAccessibleInterface(widget);
            QAccessibleInterface const* const parent = popup ? popup->parent() : nullptr;
            // The others belong to menus and to fields.
            if (parent && (parent == this || parent->role() == QAccessible::Application))
                popups << popup;
        }
        return popups;
    }
};

QAccessibleInterface* MakeAccessible(QString const&, QObject* object)
{
    auto* const window = qobject_cast<CMainWindow*>(object);
    return window ? new CAccessibleWindow(window) : nullptr;
}

} // namespace

void InstallWindowAccessible()
{
    // A factory that is installed already is not installed again.
    QAccessible::installFactory(MakeAccessible);
}
