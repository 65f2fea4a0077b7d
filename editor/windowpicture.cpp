#include "windowpicture.h"

#include <QApplication>
#include <QImageWriter>
#include <QLayout>
#include <QPixmap>
#include <QWidget>

#include <stdexcept>

namespace {

/// Points, as on a plain desktop. Without a desktop the toolkit takes a larger font.
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
    // The offscreen platform supports no size constraints and would print a warning.
    window.layout()->setSizeConstraint(QLayout::SetNoConstraint);
    window.resize(size);
    window.show();
    // The first paint corrects the layout, the second shows it.
    QApplication::processEvents();
    QApplication::processEvents();

    QImageWriter writer(file, "PNG");
    if (!writer.write(window.grab().toImage()))
        throw std::runtime_error(
            QStringLiteral("%1: %2").arg(file, writer.errorString()).toStdString());
}
