#ifndef NODEBROWSER_QTCOMPAT_H
#define NODEBROWSER_QTCOMPAT_H

// The only place that knows which generation of the toolkit this is.

#include <QApplication>
#include <QByteArray>
#include <QDrag>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QList>
#include <QMenu>
#include <QMouseEvent>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <QWheelEvent>
#include <QWidget>

#if QT_VERSION >= 0x060000
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#else
#include <QRegExp>
#include <QRegExpValidator>
#endif

#if QT_VERSION < 0x050000
#include <QTextCodec>
#endif

namespace qtcompat {

/// Whether 8-bit texts are UTF-8. The oldest generation of the toolkit keeps this choice itself,
/// for the whole process; with the others the answer is `chosen`.
inline bool AreCStringsUtf8(bool chosen)
{
#if QT_VERSION >= 0x050000
    return chosen;
#else
    (void)chosen;
    QTextCodec const* const codec = QTextCodec::codecForCStrings();
    int const kUtf8 = 106;
    return codec && codec->mibEnum() == kUtf8;
#endif
}

inline void SetCStringsUtf8(bool areUtf8)
{
#if QT_VERSION >= 0x050000
    (void)areUtf8;
#else
    QTextCodec::setCodecForCStrings(areUtf8 ? QTextCodec::codecForName("UTF-8") : nullptr);
#endif
}

/// 8-bit form: the codec set for C strings where the toolkit still has one, otherwise Latin-1
/// with a question mark for what does not fit.
inline QByteArray ToAscii(QString const& text)
{
#if QT_VERSION >= 0x050000
    return text.toLatin1();
#else
    return text.toAscii();
#endif
}

/// The reverse; `text` is zero-terminated.
inline QString FromAscii(char const* text)
{
#if QT_VERSION >= 0x050000
    return QString::fromLatin1(text);
#else
    return QString::fromAscii(text);
#endif
}

/// The pixmap of a resource, or its "@2x" variant where there is one and a screen needs it.
inline QPixmap LoadPixmap(QString const& resource)
{
#if QT_VERSION >= 0x050000
    if (qApp->devicePixelRatio() > 1.0) {
        QString sharp = resource;
        sharp.insert(sharp.lastIndexOf(QLatin1Char('.')), QLatin1String("@2x"));
        if (QFile::exists(sharp))
            return QPixmap(sharp);
    }
#endif
    return QPixmap(resource);
}

/// Width and height of a pixmap in device-independent pixels.
inline QSize LogicalSize(QPixmap const& pixmap)
{
#if QT_VERSION >= 0x050000
    return pixmap.size() / pixmap.devicePixelRatio();
#else
    return pixmap.size();
#endif
}

/// A transparent pixmap of a size in device-independent pixels, as sharp as the model.
inline QPixmap TransparentPixmap(QSize const& logicalSize, QPixmap const& model)
{
#if QT_VERSION >= 0x050000
    QPixmap pixmap(logicalSize * model.devicePixelRatio());
    pixmap.setDevicePixelRatio(model.devicePixelRatio());
#else
    (void)model;
    QPixmap pixmap(logicalSize);
#endif
    pixmap.fill(Qt::transparent);
    return pixmap;
}

inline QPoint GlobalPosition(QMouseEvent const* event)
{
#if QT_VERSION >= 0x060000
    return event->globalPosition().toPoint();
#else
    return event->globalPos();
#endif
}

inline QPoint Position(QMouseEvent const* event)
{
#if QT_VERSION >= 0x060000
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

inline QPoint Position(QWheelEvent const* event)
{
#if QT_VERSION >= 0x050e00
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

/// The one delta that a wheel event used to have: the vertical one, or the horizontal one when
/// the vertical is 0.
inline int WheelDelta(QWheelEvent const* event)
{
#if QT_VERSION >= 0x050000
    QPoint const delta = event->angleDelta();
    return delta.y() != 0 ? delta.y() : delta.x();
#else
    return event->delta();
#endif
}

/// Ends the drag that the widget, which is about to go, has started and that is still going on.
inline void CancelDrag(QWidget* source)
{
#if QT_VERSION >= 0x050700
    (void)source;
    QDrag::cancel();
#else
    // Deleting the drag with its source leaves its event loop running on freed memory. The loop
    // ends for the Escape key, which is all that can be had here, and deletes the drag later.
    QList<QDrag*> const drags = source->findChildren<QDrag*>();
    for (int i = 0; i < drags.size(); ++i)
        drags.at(i)->setParent(nullptr);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(source, &escape);
#endif
}

/// Shows the tool tips of the menu's actions; the oldest generation never does.
inline void ShowActionToolTips(QMenu* menu)
{
#if QT_VERSION >= 0x050100
    menu->setToolTipsVisible(true);
#else
    (void)menu;
#endif
}

/// Lets the user type only text of the case-sensitive expression, in which "\w" and "\s" stand
/// inside brackets; the field owns the validator.
inline void SetValidatorExpression(QLineEdit* field, QString const& expression)
{
#if QT_VERSION >= 0x060000
    // The older generations take marks for word characters, and for white space just the
    // separators and six control characters.
    QString same = expression;
    same.replace(QLatin1String("\\w"), QLatin1String("\\p{L}\\p{M}\\p{N}_"));
    same.replace(QLatin1String("\\s"), QLatin1String("\\p{Z}\\x09-\\x0D\\x85"));
    field->setValidator(new QRegularExpressionValidator(
        QRegularExpression(same, QRegularExpression::UseUnicodePropertiesOption), field));
#else
    field->setValidator(new QRegExpValidator(QRegExp(expression), field));
#endif
}

} // namespace qtcompat

#endif
