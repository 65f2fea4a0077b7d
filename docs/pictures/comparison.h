#ifndef DOCS_COMPARISON_H
#define DOCS_COMPARISON_H

#include <QString>

enum class eComparison
{
    kAlike,
    kDifferent,
    /// Rendered with another toolkit or font, which makes another picture of the same thing.
    kNotComparable
};

/// Writes toolkit and font of this program into the PNG file's texts. Raises
/// std::runtime_error with the file when that cannot be written.
void SignPicture(QString const& file);

/// A picture that was rendered and signed just now, and the one that is kept, which may be missing.
eComparison ComparePictures(QString const& rendered, QString const& kept);

#endif
