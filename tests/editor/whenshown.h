#ifndef NODEBROWSER_TESTS_WHENSHOWN_H
#define NODEBROWSER_TESTS_WHENSHOWN_H

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTimer>

#include <functional>

/// Tries until it succeeds, from the event loops of dialogs and menus that come up.
class WhenShown
{
public:
    explicit WhenShown(std::function<bool()> const& act)
    {
        QObject::connect(&m_Timer, &QTimer::timeout, &m_Timer,
                         [this, act] { m_IsDone = m_IsDone || act(); });
        m_Timer.start(1);
    }

    bool IsDone() const
    {
        return m_IsDone;
    }

private:
    bool m_IsDone = false;
    QTimer m_Timer;
};

/// Acts on the modal dialog that is open, if it is of that class.
template <class Dialog>
std::function<bool()> OnDialog(std::function<bool(Dialog&)> const& act)
{
    return [act] {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        return dialog && act(*dialog);
    };
}

#endif
