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
        // They lie over the child widgets.
        for (QAccessibleInterface* const popup : GetPopups()) {
            if (popup->rect().contains(x, y))
                return popup;
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
    QList<QAccessibleInterface*> GetPopups() const
    {
        QList<QAccessibleInterface*> popups;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            bool const isPopup = widget->isVisible() && widget->windowType() == Qt::Popup;
            auto* const popup = isPopup ? QAccessible::queryAccessibleInterface(widget) : nullptr;
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
