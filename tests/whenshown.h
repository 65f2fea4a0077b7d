#ifndef NODEBROWSER_TESTS_WHENSHOWN_H
#define NODEBROWSER_TESTS_WHENSHOWN_H

#include <QtWidgets>

#include <functional>

/// Tries until it succeeds, from the event loops of dialogs and menus that come up.
class WhenShown
{
public:
    explicit WhenShown(std::function<bool()> const& act)
    {
        QObject::connect(&m_Timer, &QTimer::timeout, &m_Timer, [this, act] {
            // What is done may run an event loop of its own.
            m_Timer.stop();
            m_IsDone = act();
            if (!m_IsDone)
                m_Timer.start(1);
        });
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

/// Answers the message boxes that come up as long as it lives, one after the other.
struct SAnswers
{
    /// Texts of the buttons to press; an empty one closes the box.
    explicit SAnswers(QStringList const& texts)
        : buttons(texts)
    {}

    void Answer(QMessageBox& box)
    {
        if (&box == answered)
            return;
        answered = &box;
        said += box.text() + box.informativeText() + box.detailedText();
        QString const text = buttons.isEmpty() ? QString() : buttons.takeFirst();
        for (QAbstractButton* const button : box.buttons())
            if (button->text().remove('&') == text)
                return button->click();
        box.reject();
    }

    QStringList buttons;
    QString said;
    QPointer<QMessageBox> answered;
    WhenShown const timer{OnDialog<QMessageBox>([this](QMessageBox& box) {
        Answer(box);
        return false;
    })};
};

#endif
