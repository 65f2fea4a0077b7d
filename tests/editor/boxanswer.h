#ifndef NODEBROWSER_TESTS_BOXANSWER_H
#define NODEBROWSER_TESTS_BOXANSWER_H

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

/// Answers the message boxes that come up as long as it lives, one after the other.
class BoxAnswer
{
public:
    /// Texts of the buttons to press, without mnemonics; an empty one closes the box.
    explicit BoxAnswer(QStringList const& buttons)
        : m_Buttons(buttons)
    {
        QObject::connect(&m_Timer, &QTimer::timeout, &m_Timer, [this] { Answer(); });
        m_Timer.start(1);
    }

    /// Every answer was asked for.
    bool IsDone() const
    {
        return m_Buttons.isEmpty();
    }

    /// What the boxes said.
    QString const& GetText() const
    {
        return m_Text;
    }

private:
    void Answer()
    {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || box == m_Answered)
            return;
        m_Answered = box;
        m_Text += box->text() + box->informativeText() + box->detailedText();
        QString const button = m_Buttons.isEmpty() ? QString() : m_Buttons.takeFirst();
        for (QAbstractButton* const candidate : box->buttons()) {
            if (candidate->text().remove(QLatin1Char('&')) == button) {
                candidate->click();
                return;
            }
        }
        box->reject();
    }

    QStringList m_Buttons;
    QString m_Text;
    QTimer m_Timer;
    QPointer<QMessageBox> m_Answered;
};

#endif
