#ifndef NODEBROWSER_RENAMEDIALOG_H
#define NODEBROWSER_RENAMEDIALOG_H

#include "hostapi/datamodel.h"
#include "nodebrowser_export.h"

#include <QDialog>
#include <QString>

class QDialogButtonBox;
class QLineEdit;

/// Asks for a new name of a compound and refuses, while it is typed, an empty one and one that
/// the library uses elsewhere. Changes nothing in the library.
class NODEBROWSER_EXPORT CRenameCompoundDialog : public QDialog
{
    Q_OBJECT

public:
    /// Keeps a copy of the library, and the compound's name; an invalid compound has an empty one.
    CRenameCompoundDialog(tarno::datamodel::ItemLibraryAccessor const& library,
                          tarno::datamodel::CompoundAccessor const& compound);

    /// Fills the name field and selects its text. The typed name is still compared with the
    /// library's name of the compound.
    void SetOldName(QString const& name);
    /// The text of the name field, as it stands.
    QString GetNewName() const;

protected Q_SLOTS:
    /// Asks the library about the name that was typed, and lets it be accepted or says why not.
    void OnNameChanged(const QString& newText);

private:
    void CreateWidgets();
    void ConnectWidgets();
    void ShowBadName(QString const& reason);
    void ShowGoodName();

    tarno::datamodel::ItemLibraryAccessor m_ItemLibrary;
    QLineEdit* m_NameEdit;
    QDialogButtonBox* m_ButtonBox;
    QString m_CurrentName;
};

#endif
