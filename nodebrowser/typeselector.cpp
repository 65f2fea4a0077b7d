#include "typeselector.h"

#include "hostservices.h"
#include "nodebrowser.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace tarno::datamodel;

namespace {

// Pixels.
int const kPreferredWidth = 275;
int const kPreferredHeight = 500;

} // namespace

CTypeSelector::CTypeSelector(QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint)
    , m_NodeBrowser(new CNodeBrowser(CNodeBrowser::eConfigTypes))
{
    CreateWidgets();
    AttachLibrary();
    m_NodeBrowser->SetCommandManager(GetApplicationCommandManager());
}

void CTypeSelector::CreateWidgets()
{
    QPushButton* const cancelButton = new QPushButton(QLatin1String("Cancel"));
    // Enter belongs to the search field: it must not press the button as well.
    cancelButton->setAutoDefault(false);
    QHBoxLayout* const buttons = new QHBoxLayout;
    buttons->addWidget(cancelButton);
    QVBoxLayout* const rows = new QVBoxLayout;
    rows->addWidget(m_NodeBrowser);
    rows->addLayout(buttons);
    setLayout(rows);
    setModal(true);
    setWindowTitle(QLatin1String("Choose Type"));
    connect(cancelButton, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_NodeBrowser, SIGNAL(SelectionChanged()), this, SLOT(SelectionChanged()));
}

void CTypeSelector::AttachLibrary()
{
    wek::fwk::IQormDBProxy* const proxy = FindHostService<wek::fwk::IQormDBProxy>("QormDBProxy");
    if (!proxy)
        return;
    ItemLibraryAccessor const library = proxy->GetItemLibrary();
    if (library.IsValid())
        m_NodeBrowser->SetItemLibrary(library);
}

QSize CTypeSelector::sizeHint() const
{
    return QSize(kPreferredWidth, kPreferredHeight);
}

ItemID CTypeSelector::GetSelectedType() const
{
    return m_SelectedType;
}

void CTypeSelector::done(int r)
{
    if (r != QDialog::Accepted) {
        QDialog::done(r);
        return;
    }
    m_SelectedType = m_NodeBrowser->GetSelection();
    bool const isType = m_NodeBrowser->IsSelectionType() && m_SelectedType.IsValid();
    QDialog::done(isType ? QDialog::Accepted : QDialog::Rejected);
}

void CTypeSelector::SelectionChanged()
{
    QDialog::accept();
}
