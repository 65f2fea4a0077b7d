#ifndef NODEBROWSER_TESTS_DIALOGUSER_H
#define NODEBROWSER_TESTS_DIALOGUSER_H

#include "whenshown.h"

/// Does to the window what the user would: types the text, in which a name in brackets is a key or
/// a button, or closes the window: "Halo<Tab>Math<Return>", "<Cancel>", "<close>".
void Use(QWidget& window, QString const& text);

/// What has the focus at first and after each press of Tab, once around: the texts of buttons,
/// the object types of others.
QString GetTabOrder(QWidget& window);

/// Waits for the next modal dialog and acts on it from inside its event loop. What the action
/// leaves open is closed, so that a test fails and never hangs.
///
///     DialogUser user("Halo<Escape>");
///     browser.OnNewCompound();
///     QVERIFY(user.HasClosed());
class DialogUser
{
public:
    typedef std::function<void(QDialog& dialog)> Action;

    explicit DialogUser(Action const& action);
    explicit DialogUser(QString const& text);

    /// The dialog came, and was closed by the action.
    bool HasClosed() const
    {
        return m_HasClosed;
    }

private:
    bool Act(Action const& action);

    /// The dialog that is open already.
    QPointer<QWidget> const m_Previous;
    bool m_HasClosed = false;
    WhenShown const m_WhenShown;
};

#endif
