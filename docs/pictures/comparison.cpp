#include "comparison.h"

#include <QApplication>
#include <QFontInfo>
#include <QImage>

#include <cstdlib>
#include <stdexcept>

namespace {

QString const kSignature = QStringLiteral("Software");

/// Colours that differ by less look the same.
int const kTolerance = 32;
/// How many pixels may differ. Marks of source control, which depend on where the library lies and
/// on when git answers, have some 60; another word has a few hundred.
int const kMostPixels = 150;

QString GetSignature()
{
    QFontInfo const font(QApplication::font());
    return QStringLiteral("Qt %1, %2, %3 pixels")
        .arg(QLatin1String(qVersion()), font.family())
        .arg(font.pixelSize());
}

bool DoDiffer(QRgb left, QRgb right)
{
    return std::abs(qRed(left) - qRed(right)) > kTolerance
           || std::abs(qGreen(left) - qGreen(right)) > kTolerance
           || std::abs(qBlue(left) - qBlue(right)) > kTolerance;
}

/// Of the pixels of two pictures of one size.
int CountDifferences(QImage const& left, QImage const& right)
{
    int count = 0;
    for (int y = 0; y < left.height(); ++y)
        for (int x = 0; x < left.width(); ++x)
            count += DoDiffer(left.pixel(x, y), right.pixel(x, y));
    return count;
}

} // namespace

void SignPicture(QString const& file)
{
    QImage picture(file);
    picture.setText(kSignature, GetSignature());
    if (!picture.save(file, "PNG"))
        throw std::runtime_error(file.toStdString() + " cannot be written");
}

eComparison ComparePictures(QString const& rendered, QString const& kept)
{
    QImage const left(rendered);
    QImage const right(kept);
    QString const signature = right.text(kSignature);
    if (!signature.isEmpty() && signature != left.text(kSignature))
        return eComparison::kNotComparable;
    bool const isAlike = !signature.isEmpty() && left.size() == right.size()
                         && CountDifferences(left, right) <= kMostPixels;
    return isAlike ? eComparison::kAlike : eComparison::kDifferent;
}
