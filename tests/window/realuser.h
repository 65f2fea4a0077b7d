#ifndef NODEBROWSER_TESTS_REALUSER_H
#define NODEBROWSER_TESTS_REALUSER_H

#include <QAction>
#include <QCoreApplication>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QWidget>

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
    QString Play(std::function<void()> const& story);

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
    static void Check(QString const& what, std::function<bool()> const& condition);

    void MoveTo(QPoint const& point) const;
    /// 1 is the left button, 3 the right one; 4 and 5 turn the wheel up and down.
    void Click(QPoint const& point, int button = 1) const;
    void DoubleClick(QPoint const& point) const;
    void Drag(QPoint const& from, QPoint const& to) const;
    void Type(QString const& text) const;
    /// A key as the X server names it, with modifiers: "ctrl+s".
    void Press(QString const& key) const;

    /// Chooses entries of the menu that is open, through its sub-menus.
    void ChooseInMenu(QStringList const& texts) const;
    /// Points at an entry of the menu that is open.
    void PointAtEntry(QString const& text) const;

    /// The dialog that waits for an answer.
    static void WaitForDialog(QString const& title);
    static void WaitForNoDialog();

    QImage TakePicture(QString const& name) const;

private:
    QString m_PictureFolder;
};

/// A point of a widget on the screen.
QPoint OnScreenPoint(QWidget const& widget, QPoint const& point);

#endif
