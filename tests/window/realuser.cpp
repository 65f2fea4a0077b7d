#include "realuser.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QMenu>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <stdexcept>

namespace {

int const kPatience = 10000; // ms
int const kLookAgain = 20;   // ms
/// As long as a hand needs; the application reads what happened in between.
int const kHand = 60; // ms

[[noreturn]] void Fail(QString const& what)
{
    throw std::runtime_error(what.toStdString());
}

void RunTool(QString const& program, QStringList const& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(kPatience) || process.exitCode() != 0)
        Fail(program + QLatin1Char(' ') + arguments.join(QLatin1Char(' ')) + QLatin1String(": ")
             + QString::fromLocal8Bit(process.readAllStandardError()));
}

void Xdotool(QStringList const& arguments)
{
    RunTool(QStringLiteral("xdotool"), arguments);
    QThread::msleep(kHand);
}

QStringList At(QPoint const& point)
{
    return {QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y())};
}

QString WithoutMnemonic(QString text)
{
    return text.remove(QLatin1Char('&'));
}

/// The menu that came up last of those that are open; null for none.
QMenu* OpenMenu()
{
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

QAction* FindEntry(QMenu const* menu, QString const& text)
{
    if (!menu || !menu->isVisible())
        return nullptr;
    for (QAction* const action : menu->actions()) {
        if (WithoutMnemonic(action->text()) == text)
            return action;
    }
    return nullptr;
}

/// Any of the open menus that has the entry.
QMenu* FindMenuWith(QString const& text)
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const menu = qobject_cast<QMenu*>(widget);
        if (FindEntry(menu, text))
            return menu;
    }
    return nullptr;
}

} // namespace

QPoint OnScreenPoint(QWidget const& widget, QPoint const& point)
{
    return widget.mapToGlobal(point);
}

RealUser::RealUser(QString const& pictureFolder)
    : m_PictureFolder(pictureFolder)
{}

QString RealUser::Play(std::function<void()> const& story)
{
    QString fault;
    QEventLoop loop;
    QThread* const user = QThread::create([&] {
        try {
            story();
        } catch (std::exception const& exception) {
            fault = QString::fromUtf8(exception.what());
            TakePicture(QStringLiteral("fault-in-") + QLatin1String(QTest::currentTestFunction()));
            // Whatever is still open would keep the application busy for ever.
            for (int i = 0; i < 5; ++i)
                Press(QStringLiteral("Escape"));
        }
    });
    QObject::connect(user, &QThread::finished, &loop, &QEventLoop::quit);
    user->start();
    loop.exec();
    user->wait();
    delete user;
    return fault;
}

void RealUser::WaitUntil(QString const& what, std::function<bool()> const& condition)
{
    for (int waited = 0; waited < kPatience; waited += kLookAgain) {
        if (OnScreen(condition))
            return;
        QThread::msleep(kLookAgain);
    }
    Fail(QStringLiteral("waited in vain: ") + what);
}

void RealUser::Check(QString const& what, std::function<bool()> const& condition)
{
    if (!OnScreen(condition))
        Fail(QStringLiteral("not so: ") + what);
}

void RealUser::MoveTo(QPoint const& point) const
{
    Xdotool(At(point));
}

void RealUser::Click(QPoint const& point, int button) const
{
    MoveTo(point);
    Xdotool({QStringLiteral("click"), QString::number(button)});
}

void RealUser::DoubleClick(QPoint const& point) const
{
    MoveTo(point);
    Xdotool({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
             QStringLiteral("--delay"), QStringLiteral("40"), QStringLiteral("1")});
}

void RealUser::Drag(QPoint const& from, QPoint const& to) const
{
    int const steps = 8;
    MoveTo(from);
    Xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
    for (int step = 1; step <= steps; ++step)
        MoveTo(from + (to - from) * step / steps);
    Xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
}

void RealUser::Type(QString const& text) const
{
    Xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("15"), text});
}

void RealUser::Press(QString const& key) const
{
    Xdotool({QStringLiteral("key"), key});
}

void RealUser::PointAtEntry(QString const& text) const
{
    WaitUntil(QStringLiteral("menu entry ") + text, [&] { return FindMenuWith(text) != nullptr; });
    QPoint const entry = OnScreen([&] {
        QMenu const* const menu = FindMenuWith(text);
        return OnScreenPoint(*menu, menu->actionGeometry(FindEntry(menu, text)).center());
    });
    // A menu takes no notice of the first move after it came up.
    MoveTo(entry - QPoint(3, 0));
    MoveTo(entry);
}

void RealUser::ChooseInMenu(QStringList const& texts) const
{
    for (QString const& text : texts) {
        PointAtEntry(text);
        Xdotool({QStringLiteral("click"), QStringLiteral("1")});
    }
}

void RealUser::WaitForDialog(QString const& title)
{
    WaitUntil(QStringLiteral("dialog ") + title, [&] {
        QWidget const* const dialog = QApplication::activeModalWidget();
        return dialog && dialog->windowTitle() == title && dialog->isActiveWindow();
    });
}

void RealUser::WaitForNoDialog()
{
    WaitUntil(QStringLiteral("the dialog to close"),
              [] { return !QApplication::activeModalWidget() && !OpenMenu(); });
}

QImage RealUser::TakePicture(QString const& name) const
{
    QString const file = m_PictureFolder + QLatin1Char('/') + name + QLatin1String(".png");
    RunTool(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), file});
    return QImage(file);
}
