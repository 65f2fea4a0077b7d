#include "trailbar.h"

#include "shorttext.h"

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/textencoding.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

using namespace tarno::datamodel;

namespace {

// All in pixels.
int const kMargin = 6;
int const kSpacing = 2;

QLabel* MakeLabel(QString const& text, bool isBold, QWidget* parent)
{
    QLabel* const label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    QFont font = label->font();
    font.setBold(isBold);
    label->setFont(font);
    return label;
}

} // namespace

CTrailBar::CTrailBar(CEmbeddedHost& host, QWidget* parent)
    : QWidget(parent)
    , m_Host(host)
    , m_Layout(new QHBoxLayout(this))
    , m_ReadOnlyLabel(MakeLabel(tr("Read only"), false, this))
{
    setAccessibleName(tr("Open compounds"));
    m_Layout->setContentsMargins(kMargin, kSpacing, kMargin, kSpacing);
    m_Layout->setSpacing(kSpacing);
    m_Layout->addStretch();
    m_Layout->addWidget(m_ReadOnlyLabel);
    // Also as long as there are no buttons.
    QToolButton button;
    button.setText(QStringLiteral("X"));
    setFixedHeight(button.sizeHint().height() + 2 * kSpacing);
    m_ReadOnlyLabel->setForegroundRole(QPalette::PlaceholderText);
    connect(&host, &CEmbeddedHost::LibraryChanged, this, &CTrailBar::Follow);
    connect(&host, &CEmbeddedHost::ContentChanged, this, &CTrailBar::Follow);
    connect(&host, &CEmbeddedHost::CompoundTargetChanged, this, &CTrailBar::Follow);
    Follow();
}

bool CTrailBar::CanGoUp() const
{
    return m_Trail.size() > 1;
}

void CTrailBar::GoUp()
{
    if (CanGoUp())
        GoTo(m_Trail.size() - 2);
}

void CTrailBar::GoTo(std::size_t step)
{
    CompoundAccessor compound;
    compound.SetFrom(m_Host.GetLibrary().GetModel(m_Trail[step], nullptr));
    if (compound.IsValid())
        m_Host.SetCompoundTarget(compound);
}

void CTrailBar::Follow()
{
    CompoundAccessor const compound = m_Host.GetCompoundTarget();
    if (!compound.Revalidate()) {
        m_Trail.clear();
    } else {
        ItemID const id = compound.GetItemID();
        // Back to a compound of the trail, a step deeper into a node of its last one, or a new
        // trail.
        auto const known = std::find(m_Trail.begin(), m_Trail.end(), id);
        if (known != m_Trail.end())
            m_Trail.erase(known + 1, m_Trail.end());
        else if (!m_Trail.empty() && HasNode(m_Trail.back(), id))
            m_Trail.push_back(id);
        else
            m_Trail = {id};
    }
    Refresh();
}

bool CTrailBar::HasNode(ItemID const& compound, ItemID const& other) const
{
    embeddedhost::GraphBody const body = m_Host.GetBody(compound);
    return std::any_of(
        body.nodes.begin(), body.nodes.end(),
        [&](embeddedhost::GraphNode const& node) { return m_Host.FindItem(node.item) == other; });
}

void CTrailBar::Refresh()
{
    for (QWidget* const step : m_Steps) {
        step->hide();
        // It may be the button that was clicked.
        step->deleteLater();
    }
    m_Steps.clear();
    for (std::size_t step = 0; step < m_Trail.size(); ++step)
        AddStep(step);
    setVisible(!m_Trail.empty());
    m_ReadOnlyLabel->setVisible(!m_Trail.empty()
                                && m_Host.GetLibrary().ItemIsReadOnly(m_Trail.back()));
}

void CTrailBar::AddStep(std::size_t step)
{
    QString const name = nodebrowser::ToQString(
        m_Host.GetLibrary().GetItemName(m_Trail[step], true, nullptr).c_str());
    auto const add = [this](QWidget* widget) {
        m_Layout->insertWidget(m_Steps.size(), widget);
        m_Steps << widget;
    };
    if (step > 0)
        add(MakeLabel(QStringLiteral("\u203a"), false, this));
    if (step + 1 == m_Trail.size()) {
        add(MakeLabel(name, true, this));
        return;
    }
    QToolButton* const button = new QToolButton(this);
    button->setAutoRaise(true);
    // The text is a name, and names have no mnemonics.
    button->setText(EscapeMnemonics(name));
    connect(button, &QToolButton::clicked, this, [this, step] { GoTo(step); });
    add(button);
}

#include "moc_trailbar.cpp"
