#include "typeselector.h"

#include "hostservices.h"
#include "nodebrowser.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace nodebrowser;
using namespace tarno::datamodel;

CTypeSelector::CTypeSelector(QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint)
    , m_NodeBrowser(nullptr)
{
    CreateWidgets();
    setModal(true);
    setWindowTitle(QLatin1String("Choose Type"));
    AttachLibrary();
    m_NodeBrowser->SetCommandManager(GetApplicationCommandManager());
}

void CTypeSelector::CreateWidgets()
{
    m_NodeBrowser = new CNodeBrowser(CNodeBrowser::eConfigTypes);
    QPushButton* const cancelButton = new QPushButton(QLatin1String("Cancel"));
    QHBoxLayout* const buttonRow = new QHBoxLayout;
    buttonRow->addWidget(cancelButton);
    QVBoxLayout* const rows = new QVBoxLayout;
    rows->addWidget(m_NodeBrowser);
    rows->addLayout(buttonRow);
    setLayout(rows);
    connect(cancelButton, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_NodeBrowser, SIGNAL(SelectionChanged()), this, SLOT(SelectionChanged()));
}

void CTypeSelector::AttachLibrary()
{
    wek::fwk::IQormDBProxy* const proxy = FindHostService<wek::fwk::IQormDBProxy>("QormDBProxy");
    if (!proxy)
        return;
    // The application may have no library open; the browser takes only valid ones.
    ItemLibraryAccessor const library = proxy->GetItemLibrary();
    if (library.IsValid())
        m_NodeBrowser->SetItemLibrary(library);
}

QSize CTypeSelector::sizeHint() const
{
    return QSize(275, 500);
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
    bool const isUsable = m_NodeBrowser->IsSelectionType() && m_SelectedType.IsValid();
    // There is no OK button to try again with, so the dialog closes in either case.
    QDialog::done(isUsable ? QDialog::Accepted : QDialog::Rejected);
}

void CTypeSelector::SelectionChanged()
{
    accept();
}
