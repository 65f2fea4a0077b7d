#ifndef NODEBROWSER_TESTS_DIALOGUSER_H
#define NODEBROWSER_TESTS_DIALOGUSER_H

#include <QBasicTimer>
#include <QDialog>
#include <QPointer>
#include <QStringList>

#include <functional>

/// Waits for the next modal dialog and acts on it from inside its event loop. What the action
/// leaves open is closed, so that a test fails and never hangs.
///
///     DialogUser user([](QDialog& dialog) { PressKey(dialog, Qt::Key_Escape); });
///     browser.OnNewCompound();
///     QVERIFY(user.HasClosed());
class DialogUser : public QObject
{
public:
    typedef std::function<void(QDialog& dialog)> Action;

    explicit DialogUser(Action const& action);

    /// The dialog came, and was closed by the action.
    bool HasClosed() const;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    Action m_Action;
    QBasicTimer m_Timer;
    /// The dialog that is open already.
    QPointer<QWidget> m_Previous;
    bool m_HasClosed;
};

// Keys go to the window, which hands them to whatever has the focus.

void PressKey(QWidget& window, Qt::Key key);
void TypeText(QWidget& window, QString const& text);

/// What has the focus at first and after each press of Tab, once around: the texts of buttons,
/// the object types of others.
QStringList GetTabOrder(QWidget& window);

/// Clicks the button of that text, which must be there.
void ClickButton(QWidget& window, char const* text);

/// The field, label or box of that type whose upper left corner is at the point; null when there
/// is none.
template <class Widget>
Widget* FindAt(QWidget& window, int x, int y)
{
    for (Widget* const widget : window.findChildren<Widget*>()) {
        if (widget->pos() == QPoint(x, y))
            return widget;
    }
    return nullptr;
}

#endif
