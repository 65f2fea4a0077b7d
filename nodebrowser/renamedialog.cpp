#include "renamedialog.h"

#include "qtcompat.h"
#include "stringutils.h"
#include "textencoding.h"

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

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

// Pixels.
int const kNameFieldMinimumWidth = 120;
int const kMargin = 5;

/// Compares ignoring case: that of all letters if texts are UTF-8, otherwise as qstricmp does.
bool IsSameName(QString const& left, QString const& right)
{
    if (GetTextEncoding() == eUtf8Texts)
        return left.compare(right, Qt::CaseInsensitive) == 0;
    return qstricmp(QStringToStdString(left).c_str(), QStringToStdString(right).c_str()) == 0;
}

/// Digits are among the word characters, so a name may start with one.
char const kNameExpression[] = "[\\w_][\\d\\w\\s_]*";

} // namespace

CRenameCompoundDialog::CRenameCompoundDialog(ItemLibraryAccessor const& library,
                                             CompoundAccessor const& compound)
    : m_ItemLibrary(library)
    , m_NameEdit(nullptr)
    , m_ButtonBox(nullptr)
{
    compound.Revalidate();
    m_CurrentName =
        ToQString(m_ItemLibrary.GetItemName(compound.GetItemID(), true, nullptr).c_str());
    // Cleared, not toggled: the newest toolkit does not set the flag by default.
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowTitle(QString(QLatin1String("Rename %1")).arg(m_CurrentName));
    CreateWidgets();
    ConnectWidgets();
    m_NameEdit->setFocus(Qt::PopupFocusReason);
}

void CRenameCompoundDialog::CreateWidgets()
{
    QLabel* const label = new QLabel(QLatin1String("New name:"), this);
    m_ButtonBox =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    m_NameEdit = new QLineEdit(this);
    label->setBuddy(m_NameEdit);
    m_NameEdit->setMinimumWidth(kNameFieldMinimumWidth);
    qtcompat::SetValidatorExpression(m_NameEdit, QLatin1String(kNameExpression));

    QHBoxLayout* const nameRow = new QHBoxLayout;
    nameRow->addWidget(label);
    nameRow->addWidget(m_NameEdit);
    QVBoxLayout* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    rows->addLayout(nameRow);
    rows->addWidget(m_ButtonBox, 0, Qt::AlignRight | Qt::AlignBottom);
}

void CRenameCompoundDialog::ConnectWidgets()
{
    connect(m_ButtonBox, SIGNAL(accepted()), this, SLOT(accept()));
    connect(m_ButtonBox, SIGNAL(rejected()), this, SLOT(reject()));
    // Only what the user types is checked: the name filled in is in use, by the compound itself.
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
    // Its own name in another case is free, although the library has it.
    if (!IsSameName(newText, m_CurrentName)
        && IsNameInNodeLibraryHierarchy(m_ItemLibrary, QStringToStdString(newText).c_str()))
        ShowBadName(QLatin1String("Name already used"));
    else
        ShowGoodName();
}

void CRenameCompoundDialog::ShowBadName(QString const& reason)
{
    QPalette palette;
    palette.setBrush(QPalette::All, m_NameEdit->backgroundRole(), QBrush(QColor(255, 90, 90)));
    m_NameEdit->setPalette(palette);
    m_NameEdit->setToolTip(reason);
    QToolTip::showText(m_NameEdit->mapToGlobal(QPoint(0, 0)), reason, m_NameEdit);
    m_ButtonBox->button(QDialogButtonBox::Ok)->setEnabled(false);
}

void CRenameCompoundDialog::ShowGoodName()
{
    m_NameEdit->setPalette(QPalette());
    m_NameEdit->setToolTip(QString());
    QToolTip::showText(QPoint(0, 0), QString());
    m_ButtonBox->button(QDialogButtonBox::Ok)->setEnabled(true);
}
