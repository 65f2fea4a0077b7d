#ifndef NODEBROWSER_TESTS_REALUSER_H
#define NODEBROWSER_TESTS_REALUSER_H

#include <QCoreApplication>
#include <QImage>
#include <QPoint>
#include <QString>

#include <functional>

/// Sits in front of the screen: moves the real mouse and types on the real keyboard.
///
/// What the user does runs in a thread of its own, since menus, dialogs and drags keep the
/// application's thread in event loops of theirs. Whatever looks at widgets goes through OnScreen.
/// All positions are on the screen, in pixels. What goes wrong is raised as std::runtime_error.
class RealUser
{
public:
    /// Screenshots go into the folder.
    explicit RealUser(QString const& pictureFolder);

    /// Runs the story while the calling thread serves the application. Empty when it went well,
    /// otherwise what went wrong; the screen is kept as a picture then.
    QString Play(std::function<void()> const& story) const;

    /// Runs something in the application's thread and gives what it returns.
    template <typename Function>
    static auto OnScreen(Function const& function) -> decltype(function())
    {
        decltype(function()) result;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [&] { result = function(); },
            Qt::BlockingQueuedConnection);
        return result;
    }

    /// Waits until it is so; `what` is what is reported when it does not happen.
    static void WaitUntil(QString const& what, std::function<bool()> const& condition);
    /// For the dialog that waits for an answer; without a title until there is none.
    static void WaitForDialog(QString const& title);

    static void MoveTo(QPoint const& point);
    /// 1 is the left button, 3 the right one; 4 and 5 turn the wheel up and down.
    static void Click(QPoint const& point, int button = 1);
    static void Drag(QPoint const& from, QPoint const& to);
    /// Instead of what is in the field.
    static void Type(QString const& text);
    /// A key as the X server names it, with modifiers: "ctrl+s".
    static void Press(QString const& key);
    /// Points at an entry of a menu that is open.
    static void PointAtEntry(QString const& text);
    /// Chooses entries of the menu that is open, through its sub-menus.
    static void ChooseInMenu(QStringList const& texts);

    QImage TakePicture(QString const& name) const;

private:
    QString m_PictureFolder;
};

#endif
