#include "windowpicture.h"

#include <QApplication>
#include <QImageWriter>
#include <QLayout>
#include <QPixmap>
#include <QWidget>

#include <stdexcept>

namespace {

/// In points: what a plain desktop has. Without one the toolkit takes a larger font.
int const kFontSize = 9;

} // namespace

void PrepareForPictures()
{
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), kFontSize));
    // A blinking text cursor would make each picture different.
    QApplication::setCursorFlashTime(0);
}

void SaveWindowPicture(QWidget& window, QSize const& size, QString const& file)
{
    // Without a desktop nothing can be constrained, and the toolkit would complain.
    window.layout()->setSizeConstraint(QLayout::SetNoConstraint);
    window.resize(size);
    window.show();
    // What the first paint finds out about the layout is in place for the second.
    QApplication::processEvents();
    QApplication::processEvents();

    QImageWriter writer(file, "PNG");
    if (!writer.write(window.grab().toImage()))
        throw std::runtime_error(
            QStringLiteral("%1: %2").arg(file, writer.errorString()).toStdString());
}
