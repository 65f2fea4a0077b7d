#ifndef EDITOR_WINDOWPICTURE_H
#define EDITOR_WINDOWPICTURE_H

#include <QSize>
#include <QString>

class QWidget;

/// Makes pictures look as on a plain desktop; called before the window is made.
void PrepareForPictures();

/// Shows the window at a size in device-independent pixels and writes a picture of it to a
/// PNG file. Raises std::runtime_error with the file and the reason when that cannot be written.
void SaveWindowPicture(QWidget& window, QSize const& size, QString const& file);

#endif
