#ifndef NODEBROWSER_TYPESELECTOR_H
#define NODEBROWSER_TYPESELECTOR_H

#include "hostapi/datamodel.h"
#include "nodebrowser_export.h"

#include <QDialog>

class CNodeBrowser;

/// Lets the user pick one type of the application's current item library. The first selection
/// closes the dialog; there is no OK button.
class NODEBROWSER_EXPORT CTypeSelector : public QDialog
{
    Q_OBJECT

public:
    /// Takes the library from the service "QormDBProxy", and stays empty without one. The parent,
    /// which may be null, owns the dialog.
    explicit CTypeSelector(QWidget* parent);

    /// 275 x 500 pixels, device-independent.
    virtual QSize sizeHint() const;

    /// The type chosen, once exec() has returned QDialog::Accepted; null before.
    tarno::datamodel::ItemID GetSelectedType() const;

public Q_SLOTS:
    /// An acceptance without a usable type ends as a rejection.
    virtual void done(int r);
    /// Accepts the item selected in the browser.
    void SelectionChanged();

private:
    void CreateWidgets();
    void AttachLibrary();

    CNodeBrowser* m_NodeBrowser;
    tarno::datamodel::ItemID m_SelectedType;
};

#endif
