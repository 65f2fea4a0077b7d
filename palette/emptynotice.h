#ifndef PALETTE_EMPTYNOTICE_H
#define PALETTE_EMPTYNOTICE_H

#include <QWidget>

class QLabel;
class QToolButton;

namespace nodepalette {

/// Stands where the rows would be when there are none: says why, and offers what to do about it.
class CEmptyNotice : public QWidget
{
    Q_OBJECT

public:
    explicit CEmptyNotice(QWidget* parent);

    /// `searchText` may be empty. `otherRows` are the rows that there would be under "All"; with
    /// none, that is not offered.
    void Describe(QString const& searchText, std::size_t otherRows);
    /// What it says, in one line.
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
