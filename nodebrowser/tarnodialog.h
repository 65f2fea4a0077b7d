#ifndef NODEBROWSER_TARNODIALOG_H
#define NODEBROWSER_TARNODIALOG_H

/// @file
/// The dialogs for a new compound and for the tags of an item.

#include "hostapi/datamodel.h"
#include "nodebrowser_export.h"

#include <QDialog>
#include <QString>

#include <map>
#include <string>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Adds every signature of the library to the map, by display name; of two with one name the
/// later one stays. An invalid library adds nothing.
void GetAllSignatures(tarno::datamodel::ItemLibraryAccessor library,
                      std::map<std::string, tarno::datamodel::ItemID>& signatures);

/// Asks for the name and category of a new compound, loop compound or signature and, where it
/// applies, for the signature to implement. The results are all empty unless Ok succeeded.
class NODEBROWSER_EXPORT CTarnoCompoundCreateDialog : public QDialog
{
    Q_OBJECT

public:
    /// `kind` is the word for the new item in the dialog's texts, `defaultName` the initial name;
    /// neither is null. With `showSignature` the signatures of the library, as they are now, can be
    /// chosen.
    CTarnoCompoundCreateDialog(tarno::datamodel::ItemLibraryAccessor library, char const* kind,
                               char const* defaultName, bool showSignature);

    /// The name, with "_" for everything that is not a letter or digit, or with UTF-8 a mark.
    QString GetName() const;
    /// The category as it was typed, which may be empty.
    QString GetCategory() const;
    /// UID text of the signature chosen; empty for none.
    QString GetSignature() const;

protected Q_SLOTS:
    /// Accepts a name that is not empty; says that it is invalid otherwise, and stays.
    void OnOk();
    /// Empties name and category, and rejects.
    void OnCancel();

private:
    void CreateWidgets(char const* defaultName);
    void CreateSignatureRow(tarno::datamodel::ItemLibraryAccessor const& library);
    void PlaceWidgets();

    QPushButton* m_OkButton;
    QPushButton* m_CancelButton;
    QLabel* m_CategoryLabel;
    QLineEdit* m_CategoryEdit;
    QLabel* m_NameLabel;
    QLineEdit* m_NameEdit;
    QLabel* m_SignatureLabel;
    QComboBox* m_SignatureCombo;
    QString m_ItemKind;
    QString m_Category;
    QString m_Name;
    QString m_Signature;
    bool m_ShowSignature;
};

/// Edits the tags of one item as a single line of text.
class NODEBROWSER_EXPORT CItemTagsEditorDialog : public QDialog
{
    Q_OBJECT

public:
    /// The item's name, which is shown, and its tag string. Both are zero-terminated and not null.
    CItemTagsEditorDialog(char const* name, char const* tags);
    ~CItemTagsEditorDialog() override;

    /// The tag string given; once accepted, the edited one in normal form: sorted, trimmed,
    /// without duplicates, joined by ";".
    std::string const& GetTags() const;

protected Q_SLOTS:
    /// Brings the tags typed into normal form, and accepts.
    void OnOk();
    /// Rejects.
    void OnCancel();

private:
    void CreateWidgets();
    void PlaceWidgets();

    QPushButton* m_OkButton;
    QPushButton* m_CancelButton;
    QLabel* m_NameLabel;
    QLabel* m_NameValueLabel;
    QLabel* m_TagsLabel;
    QLineEdit* m_TagsEdit;
    QLabel* m_HintLabel;
    std::string m_Name;
    std::string m_Tags;
};

#endif
