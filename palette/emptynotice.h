#ifndef PALETTE_EMPTYNOTICE_H
#define PALETTE_EMPTYNOTICE_H

#include <QWidget>

class QLabel;
class QToolButton;

namespace nodepalette {

/// Shown in place of the rows if there are none: says why, and offers remedies.
class CEmptyNotice : public QWidget
{
    Q_OBJECT

public:
    explicit CEmptyNotice(QWidget* parent);

    /// `searchText` may be empty. `otherRows` are the rows that there would be under "All"; with
    /// none, that is not offered.
    void Describe(QString const& searchText, std::size_t otherRows);
    /// Its text, in one line.
    QString GetText() const;

Q_SIGNALS:
    void ClearChosen();
    void AllChosen();

private:
    QLabel* const m_Label;
    QToolButton* const m_ClearButton;
    QToolButton* const m_AllButton;
};

} // namespace nodepalette

#endif
