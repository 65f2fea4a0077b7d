#include "renamedialog.h"

#include "qtcompat.h"

#include <QBrush>
#include <QColor>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QToolTip>
#include <QVBoxLayout>

using namespace tarno::datamodel;

namespace {

// Pixels.
int const kNameFieldMinimumWidth = 120;
int const kMargin = 5;

} // namespace

CRenameCompoundDialog::CRenameCompoundDialog(ItemLibraryAccessor const& library,
                                             CompoundAccessor const& compound)
    : QDialog(nullptr, Qt::WindowFlags())
    , m_ItemLibrary(library)
    , m_NameEdit(nullptr)
    , m_ButtonBox(nullptr)
{
    compound.Revalidate();
    m_CurrentName = qtcompat::FromAscii(
        m_ItemLibrary.GetItemName(compound.GetItemID(), true, nullptr).c_str());
    setWindowFlags(windowFlags() ^ Qt::WindowContextHelpButtonHint);
    setWindowTitle(QString::fromLatin1("Rename %1").arg(m_CurrentName));
    CreateWidgets();
    m_NameEdit->setFocus(Qt::PopupFocusReason);
}

void CRenameCompoundDialog::CreateWidgets()
{
    QLabel* const label = new QLabel(QLatin1String("New name:"), this);
    m_ButtonBox = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel,
                                       Qt::Horizontal, this);
    m_NameEdit = new QLineEdit(this);
    m_NameEdit->setMinimumWidth(kNameFieldMinimumWidth);
    qtcompat::SetValidatorExpression(m_NameEdit, QLatin1String("[\\w_][\\d\\w\\s_]*"));

    QHBoxLayout* const nameRow = new QHBoxLayout;
    nameRow->addWidget(label);
    nameRow->addWidget(m_NameEdit);
    QVBoxLayout* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    rows->addLayout(nameRow);
    rows->addWidget(m_ButtonBox, 0, Qt::AlignRight | Qt::AlignBottom);

    connect(m_ButtonBox, SIGNAL(accepted()), this, SLOT(accept()));
    connect(m_ButtonBox, SIGNAL(rejected()), this, SLOT(reject()));
    // textEdited, not textChanged: a name that is set from outside is not checked.
    connect(m_NameEdit, SIGNAL(textEdited(const QString&)), this,
            SLOT(OnNameChanged(const QString&)));
}

void CRenameCompoundDialog::SetOldName(QString const& name)
{
    m_NameEdit->setText(name);
    m_NameEdit->selectAll();
}

QString CRenameCompoundDialog::GetNewName() const
{
    return m_NameEdit->text();
}

void CRenameCompoundDialog::OnNameChanged(const QString& newText)
{
    if (newText.isEmpty()) {
        ShowBadName(QLatin1String("Name can't be empty"));
        return;
    }
    QByteArray const name = qtcompat::ToAscii(newText);
    // Its own name in another case is free, although the library has it.
    if (qstricmp(name.constData(), qtcompat::ToAscii(m_CurrentName).constData()) != 0
        && IsNameInNodeLibraryHierarchy(m_ItemLibrary, name.constData()))
        ShowBadName(QLatin1String("Name already used"));
    else
        ShowGoodName();
}

void CRenameCompoundDialog::ShowBadName(QString const& reason)
{
    QPalette palette;
    palette.setBrush(QPalette::All, m_NameEdit->backgroundRole(),
                     QBrush(QColor(255, 90, 90, 255), Qt::SolidPattern));
    m_NameEdit->setPalette(palette);
    m_NameEdit->setToolTip(reason);
    QToolTip::showText(m_NameEdit->mapToGlobal(QPoint(0, 0)), reason, m_NameEdit);
    m_ButtonBox->button(QDialogButtonBox::Ok)->setEnabled(false);
}

void CRenameCompoundDialog::ShowGoodName()
{
    m_NameEdit->setPalette(QPalette());
    m_NameEdit->setToolTip(QString());
    QToolTip::showText(QPoint(), QString());
    m_ButtonBox->button(QDialogButtonBox::Ok)->setEnabled(true);
}
