#include "tarnodialog.h"

#include "stringutils.h"
#include "textencoding.h"

#include <QComboBox>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <boost/algorithm/string/join.hpp>

#include <set>

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

// Both dialogs share one fixed grid; all in pixels.
int const kDialogWidth = 370;
int const kDialogHeight = 130;
int const kLabelLeft = 10;
int const kFieldLeft = 120;
int const kFieldWidth = 220;
int const kFieldHeight = 20;
int const kRowPitch = 30;
int const kFirstFieldTop = 10;
int const kFirstLabelTop = 12;
int const kOkLeft = 100;
int const kCancelLeft = 190;
int const kButtonTop = 100;

void PlaceLabel(QLabel* label, int row)
{
    label->move(kLabelLeft, kFirstLabelTop + row * kRowPitch);
}

/// Narrows the letters of a label that would reach under its field: the places are fixed, while
/// the font is whatever the application uses.
void NarrowToFit(QLabel* label)
{
    int const room = kFieldLeft - kLabelLeft;
    QFont font = label->font();
    for (int stretch = 100; label->sizeHint().width() > room && stretch > 0; --stretch) {
        font.setStretch(stretch);
        label->setFont(font);
    }
}

/// Tells screen readers what the field is called. A kind with an "&" is shown as it is, and not
/// taken for the label's shortcut.
void SetBuddy(QLabel* label, QWidget* field)
{
    if (!label->text().contains(QLatin1Char('&')))
        label->setBuddy(field);
}

void PlaceField(QWidget* field, int row)
{
    field->move(kFieldLeft, kFirstFieldTop + row * kRowPitch);
    field->resize(kFieldWidth, kFieldHeight);
}

void PlaceButtons(QPushButton* ok, QPushButton* cancel)
{
    ok->move(kOkLeft, kButtonTop);
    cancel->move(kCancelLeft, kButtonTop);
}

QString WithCapital(QString const& text)
{
    return text.left(1).toUpper() + text.mid(1);
}

/// Underscores for everything that is not a letter or digit. With UTF-8 the marks of letters stay,
/// without which some languages cannot be written.
QString CleanName(QString name)
{
    bool const keepsMarks = GetTextEncoding() == eUtf8Texts;
    for (int i = 0; i < name.size(); ++i) {
        if (!name.at(i).isLetterOrNumber() && !(keepsMarks && name.at(i).isMark()))
            name[i] = QLatin1Char('_');
    }
    return name;
}

} // namespace

void GetAllSignatures(ItemLibraryAccessor library, std::map<std::string, ItemID>& signatures)
{
    ItemTOCAccessor const toc = GetTOC(library);
    for (Iterator<ItemAccessor> item = toc.GetItems(TarnoType::gCompound); !item.IsDone();
         item.Next()) {
        ItemAccessor& signature = item.GetCurrent();
        if (signature.Revalidate() && Helpers::IsAbstractFunction(signature))
            signatures[signature.GetName(true, nullptr)] = signature.GetItemID();
    }
}

CTarnoCompoundCreateDialog::CTarnoCompoundCreateDialog(ItemLibraryAccessor library,
                                                       char const* kind, char const* defaultName,
                                                       bool showSignature)
    : m_OkButton(nullptr)
    , m_CancelButton(nullptr)
    , m_CategoryLabel(nullptr)
    , m_CategoryEdit(nullptr)
    , m_NameLabel(nullptr)
    , m_NameEdit(nullptr)
    , m_SignatureLabel(nullptr)
    , m_SignatureCombo(nullptr)
    , m_ItemKind(ToQString(kind))
    , m_ShowSignature(showSignature)
{
    CreateWidgets(defaultName);
    if (m_ShowSignature)
        CreateSignatureRow(library);
    m_OkButton->setDefault(true);
    connect(m_OkButton, SIGNAL(clicked()), this, SLOT(OnOk()));
    connect(m_CancelButton, SIGNAL(clicked()), this, SLOT(OnCancel()));
    PlaceWidgets();
    // As if by Tab, which selects the text; the default button would have it otherwise.
    m_NameEdit->setFocus(Qt::TabFocusReason);
    setWindowTitle(QLatin1String("Create ") + m_ItemKind);
}

void CTarnoCompoundCreateDialog::CreateWidgets(char const* defaultName)
{
    m_OkButton = new QPushButton(QLatin1String("Ok"), this);
    m_CancelButton = new QPushButton(QLatin1String("Cancel"), this);
    m_NameLabel = new QLabel(WithCapital(m_ItemKind) + QLatin1String(" name: "), this);
    m_NameEdit = new QLineEdit(ToQString(defaultName), this);
    m_CategoryLabel = new QLabel(QLatin1String("Category: "), this);
    m_CategoryEdit = new QLineEdit(this);
    SetBuddy(m_NameLabel, m_NameEdit);
    SetBuddy(m_CategoryLabel, m_CategoryEdit);
}

void CTarnoCompoundCreateDialog::CreateSignatureRow(ItemLibraryAccessor const& library)
{
    m_SignatureLabel = new QLabel(QLatin1String("Signature: "), this);
    m_SignatureCombo = new QComboBox(this);
    SetBuddy(m_SignatureLabel, m_SignatureCombo);
    m_SignatureCombo->addItem(QLatin1String("None"), QString());
    std::map<std::string, ItemID> signatures;
    GetAllSignatures(library, signatures);
    for (auto const& signature : signatures)
        m_SignatureCombo->addItem(ToQString(signature.first.c_str()),
                                  ToQString(ItemIDUnlock::GetItemIDUID(signature.second)));
    m_SignatureCombo->setCurrentIndex(0);
}

void CTarnoCompoundCreateDialog::PlaceWidgets()
{
    NarrowToFit(m_NameLabel);
    NarrowToFit(m_CategoryLabel);
    PlaceLabel(m_NameLabel, 0);
    PlaceLabel(m_CategoryLabel, 1);
    PlaceField(m_NameEdit, 0);
    PlaceField(m_CategoryEdit, 1);
    if (m_ShowSignature) {
        NarrowToFit(m_SignatureLabel);
        PlaceLabel(m_SignatureLabel, 2);
        PlaceField(m_SignatureCombo, 2);
    }
    PlaceButtons(m_OkButton, m_CancelButton);
    setFixedSize(kDialogWidth, kDialogHeight);
}

QString CTarnoCompoundCreateDialog::GetName() const
{
    return m_Name;
}

QString CTarnoCompoundCreateDialog::GetCategory() const
{
    return m_Category;
}

QString CTarnoCompoundCreateDialog::GetSignature() const
{
    return m_Signature;
}

void CTarnoCompoundCreateDialog::OnOk()
{
    m_Category.clear();
    m_Name.clear();
    QString const category = m_CategoryEdit->text();
    QString const name = m_NameEdit->text();
    if (name.isEmpty()) {
        QMessageBox box(QMessageBox::Critical, QLatin1String("Invalid Name"),
                        QString::fromLatin1("The %1 name is invalid.").arg(m_ItemKind),
                        QMessageBox::Ok);
        connect(this, SIGNAL(finished(int)), &box, SLOT(reject()));
        box.exec();
        return;
    }
    m_Signature.clear();
    if (m_ShowSignature && m_SignatureCombo->currentIndex() != 0)
        m_Signature = m_SignatureCombo->itemData(m_SignatureCombo->currentIndex()).toString();
    m_Name = CleanName(name);
    m_Category = category;
    accept();
}

void CTarnoCompoundCreateDialog::OnCancel()
{
    // An empty name is how callers tell that the dialog was cancelled.
    m_Category.clear();
    m_Name.clear();
    reject();
}

CItemTagsEditorDialog::CItemTagsEditorDialog(char const* name, char const* tags)
    : m_OkButton(nullptr)
    , m_CancelButton(nullptr)
    , m_NameLabel(nullptr)
    , m_NameValueLabel(nullptr)
    , m_TagsLabel(nullptr)
    , m_TagsEdit(nullptr)
    , m_HintLabel(nullptr)
    , m_Name(name)
    , m_Tags(tags)
{
    CreateWidgets();
    m_OkButton->setDefault(true);
    connect(m_OkButton, SIGNAL(clicked()), this, SLOT(OnOk()));
    connect(m_CancelButton, SIGNAL(clicked()), this, SLOT(OnCancel()));
    PlaceWidgets();
    // As if by Tab: the text is selected, and typing replaces it.
    m_TagsEdit->setFocus(Qt::TabFocusReason);
    setWindowTitle(QLatin1String("Edit Item Tags"));
}

CItemTagsEditorDialog::~CItemTagsEditorDialog()
{
    // All the others belong to the dialog.
    delete m_HintLabel;
}

void CItemTagsEditorDialog::CreateWidgets()
{
    m_OkButton = new QPushButton(QLatin1String("Ok"), this);
    m_CancelButton = new QPushButton(QLatin1String("Cancel"), this);
    m_NameLabel = new QLabel(QLatin1String("Name: "), this);
    m_NameValueLabel = new QLabel(ToQString(m_Name.c_str()), this);
    // A name may look like markup.
    m_NameValueLabel->setTextFormat(Qt::PlainText);
    m_TagsLabel = new QLabel(QLatin1String("Tags: "), this);
    m_TagsEdit = new QLineEdit(ToQString(m_Tags.c_str()), this);
    SetBuddy(m_NameLabel, m_NameValueLabel);
    SetBuddy(m_TagsLabel, m_TagsEdit);
    // Belongs to no window and so is never shown.
    m_HintLabel = new QLabel(QLatin1String("State machine tags: Condition, TransitionBlend"));
}

void CItemTagsEditorDialog::PlaceWidgets()
{
    PlaceLabel(m_NameLabel, 0);
    PlaceLabel(m_TagsLabel, 1);
    PlaceLabel(m_HintLabel, 2);
    PlaceField(m_NameValueLabel, 0);
    PlaceField(m_TagsEdit, 1);
    PlaceButtons(m_OkButton, m_CancelButton);
    setFixedSize(kDialogWidth, kDialogHeight);
}

std::string const& CItemTagsEditorDialog::GetTags() const
{
    return m_Tags;
}

void CItemTagsEditorDialog::OnOk()
{
    m_Tags.clear();
    std::set<std::string> tags;
    SplitString(QStringToStdString(m_TagsEdit->text()), ";", tags);
    m_Tags = boost::algorithm::join(tags, ";");
    accept();
}

void CItemTagsEditorDialog::OnCancel()
{
    reject();
}
