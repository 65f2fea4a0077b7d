#include "dialoguser.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimerEvent>
#include <QWindow>

namespace {

/// Milliseconds between two looks for a dialog.
int const kPollInterval = 1;

QString Describe(QWidget const* widget)
{
    if (QAbstractButton const* const button = qobject_cast<QAbstractButton const*>(widget))
        return button->text();
    return widget ? widget->metaObject()->className() : "nothing";
}

} // namespace

DialogUser::DialogUser(Action const& action)
    : m_Action(action)
    , m_Previous(QApplication::activeModalWidget())
    , m_HasClosed(false)
{
    m_Timer.start(kPollInterval, this);
}

bool DialogUser::HasClosed() const
{
    return m_HasClosed;
}

void DialogUser::timerEvent(QTimerEvent* /*event*/)
{
    QPointer<QDialog> const dialog(qobject_cast<QDialog*>(QApplication::activeModalWidget()));
    if (!dialog || dialog == m_Previous || !QTest::qWaitForWindowActive(dialog))
        return;
    m_Timer.stop();
    m_Action(*dialog);
    m_HasClosed = !dialog || !dialog->isVisible();
    if (!m_HasClosed)
        dialog->reject();
}

void PressKey(QWidget& window, Qt::Key key)
{
    QTest::keyClick(window.windowHandle(), key);
}

void TypeText(QWidget& window, QString const& text)
{
    for (QChar const character : text)
        QTest::sendKeyEvent(QTest::Click, window.windowHandle(), Qt::Key_unknown,
                            QString(character), Qt::NoModifier);
}

QStringList GetTabOrder(QWidget& window)
{
    QStringList order;
    QWidget* const first = window.focusWidget();
    do {
        order << Describe(window.focusWidget());
        PressKey(window, Qt::Key_Tab);
    } while (window.focusWidget() != first && order.size() < 10);
    return order;
}

void ClickButton(QWidget& window, char const* text)
{
    for (QPushButton* const button : window.findChildren<QPushButton*>()) {
        if (button->text().remove('&') == text) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    QFAIL(text);
}
