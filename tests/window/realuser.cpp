#include "realuser.h"

#include <QApplication>
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
        Fail(program + ' ' + arguments.join(' ') + ": " + process.readAllStandardError());
}

void Xdotool(QStringList const& arguments)
{
    RunTool(QStringLiteral("xdotool"), arguments);
    QThread::msleep(kHand);
}

/// On the screen, in any of the open menus; none when there is none.
QPoint FindEntry(QString const& text)
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const menu = qobject_cast<QMenu*>(widget);
        for (QAction* const action : menu ? menu->actions() : QList<QAction*>())
            if (menu->isVisible() && action->text().remove('&') == text)
                return menu->mapToGlobal(menu->actionGeometry(action).center());
    }
    return QPoint();
}

} // namespace

RealUser::RealUser(QString const& pictureFolder)
    : m_PictureFolder(pictureFolder)
{}

QString RealUser::Play(std::function<void()> const& story) const
{
    QString fault;
    QEventLoop loop;
    QThread* const user = QThread::create([&] {
        try {
            story();
        } catch (std::exception const& exception) {
            fault = QString::fromUtf8(exception.what());
            TakePicture(QLatin1String("fault-in-") + QTest::currentTestFunction());
            // Whatever is still open would keep the application busy for ever.
            for (int i = 0; i < 5; ++i)
                Press("Escape");
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
    Fail("waited in vain: " + what);
}

void RealUser::WaitForDialog(QString const& title)
{
    WaitUntil("dialog " + title, [&] {
        QWidget const* const dialog = QApplication::activeModalWidget();
        return title.isEmpty()
                   ? !dialog && !QApplication::activePopupWidget()
                   : dialog && dialog->windowTitle() == title && dialog->isActiveWindow();
    });
}

void RealUser::MoveTo(QPoint const& point)
{
    Xdotool({"mousemove", QString::number(point.x()), QString::number(point.y())});
}

void RealUser::Click(QPoint const& point, int button)
{
    MoveTo(point);
    Xdotool({"click", QString::number(button)});
}

void RealUser::Drag(QPoint const& from, QPoint const& to)
{
    int const steps = 8;
    MoveTo(from);
    Xdotool({"mousedown", "1"});
    for (int step = 1; step <= steps; ++step)
        MoveTo(from + (to - from) * step / steps);
    Xdotool({"mouseup", "1"});
}

void RealUser::Type(QString const& text)
{
    Press("ctrl+a");
    Xdotool({"type", "--delay", "15", text});
}

void RealUser::Press(QString const& key)
{
    Xdotool({"key", key});
}

void RealUser::PointAtEntry(QString const& text)
{
    WaitUntil("menu entry " + text, [&] { return !FindEntry(text).isNull(); });
    QPoint const entry = OnScreen([&] { return FindEntry(text); });
    // A menu takes no notice of the first move after it came up.
    MoveTo(entry - QPoint(3, 0));
    MoveTo(entry);
}

void RealUser::ChooseInMenu(QStringList const& texts)
{
    for (QString const& text : texts) {
        PointAtEntry(text);
        Xdotool({"click", "1"});
    }
}

QImage RealUser::TakePicture(QString const& name) const
{
    QString const file = m_PictureFolder + '/' + name + ".png";
    RunTool("import", {"-window", "root", file});
    return QImage(file);
}
