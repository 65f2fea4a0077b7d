#include "dialoguser.h"

#include <QtTest>

namespace {

QString Describe(QWidget const* widget)
{
    if (QAbstractButton const* const button = qobject_cast<QAbstractButton const*>(widget))
        return button->text().remove('&');
    return widget ? widget->metaObject()->className() : "nothing";
}

QPushButton* FindButton(QWidget& window, QString const& text)
{
    for (QPushButton* const button : window.findChildren<QPushButton*>())
        if (Describe(button) == text)
            return button;
    return nullptr;
}

} // namespace

void Use(QWidget& window, QString const& text)
{
    QRegularExpressionMatchIterator parts = QRegularExpression("<([^>]+)>|.").globalMatch(text);
    while (parts.hasNext()) {
        QRegularExpressionMatch const part = parts.next();
        QString const name = part.captured(1);
        QByteArray const key = "Key_" + name.toLatin1();
        // Keys go to the window, which hands them to whatever has the focus.
        if (name.isEmpty())
            QTest::sendKeyEvent(QTest::Click, window.windowHandle(), Qt::Key_unknown,
                                part.captured(), Qt::NoModifier);
        else if (name == "close")
            window.close();
        else if (QPushButton* const button = FindButton(window, name))
            QTest::mouseClick(button, Qt::LeftButton);
        else
            QTest::keyClick(window.windowHandle(),
                            Qt::Key(QMetaEnum::fromType<Qt::Key>().keyToValue(key)));
    }
}

QString GetTabOrder(QWidget& window)
{
    QStringList order;
    QWidget* const first = window.focusWidget();
    do {
        order << Describe(window.focusWidget());
        Use(window, "<Tab>");
    } while (window.focusWidget() != first && order.size() < 10);
    return order.join(' ');
}

DialogUser::DialogUser(Action const& action)
    : m_Previous(QApplication::activeModalWidget())
    , m_WhenShown([this, action] { return Act(action); })
{}

DialogUser::DialogUser(QString const& text)
    : DialogUser([text](QDialog& dialog) { Use(dialog, text); })
{}

bool DialogUser::Act(Action const& action)
{
    QPointer<QDialog> const dialog(qobject_cast<QDialog*>(QApplication::activeModalWidget()));
    if (!dialog || dialog == m_Previous || !QTest::qWaitForWindowActive(dialog))
        return false;
    action(*dialog);
    m_HasClosed = !dialog || !dialog->isVisible();
    if (!m_HasClosed)
        dialog->reject();
    return true;
}
