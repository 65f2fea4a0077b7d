#include "emptynotice.h"

#include <QLabel>
#include <QLocale>
#include <QTextBoundaryFinder>
#include <QToolButton>
#include <QVBoxLayout>

namespace nodepalette {

namespace {

/// A text longer than this is cut in the middle of the sentence that quotes it.
int const kMaximumQuote = 60;

QString Quote(QString const& text)
{
    if (text.size() <= kMaximumQuote)
        return text;
    // Neither surrogate pairs nor letters with their marks are torn.
    QTextBoundaryFinder end(QTextBoundaryFinder::Grapheme, text);
    end.setPosition(kMaximumQuote - 1);
    if (!end.isAtBoundary())
        end.toPreviousBoundary();
    return text.left(end.position()) + QChar(0x2026);
}

} // namespace

CEmptyNotice::CEmptyNotice(QWidget* parent)
    : QWidget(parent)
    , m_Label(new QLabel(this))
    , m_ClearButton(new QToolButton(this))
    , m_AllButton(new QToolButton(this))
{
    hide();
    m_Label->setWordWrap(true);
    m_Label->setAlignment(Qt::AlignHCenter);
    m_Label->setTextFormat(Qt::PlainText);
    m_ClearButton->setText(tr("&Clear the search"));
    connect(m_ClearButton, &QToolButton::clicked, this, &CEmptyNotice::ClearChosen);
    connect(m_AllButton, &QToolButton::clicked, this, &CEmptyNotice::AllChosen);

    auto* const layout = new QVBoxLayout(this);
    layout->addSpacing(fontMetrics().height());
    layout->addWidget(m_Label);
    for (QToolButton* const button : {m_ClearButton, m_AllButton}) {
        button->setFocusPolicy(Qt::StrongFocus);
        layout->addWidget(button, 0, Qt::AlignHCenter);
    }
    layout->addStretch();
}

void CEmptyNotice::Describe(QString const& searchText, std::size_t otherRows)
{
    m_Label->setText(searchText.isEmpty()
                         ? tr("There is nothing to list here.")
                         : tr("Nothing here matches “%1”.").arg(Quote(searchText)));
    m_ClearButton->setVisible(!searchText.isEmpty());
    m_AllButton->setVisible(otherRows > 0);
    m_AllButton->setText(
        tr("&Look under “All” (%1)").arg(QLocale().toString(static_cast<qulonglong>(otherRows))));
}

QString CEmptyNotice::GetText() const
{
    return m_Label->text();
}

} // namespace nodepalette

#include "moc_emptynotice.cpp"
