#include "nodebrowser_p.h"

#include "hostservices.h"
#include "renamedialog.h"
#include "stringutils.h"
#include "tarnodialog.h"
#include "textencoding.h"

#include <QAction>
#include <QDialog>
#include <QPointer>
#include <QStringList>

#include <list>

using namespace nodebrowser;
using namespace tarno::datamodel;

/// The input of the create dialog, in the form of the data model, and the library it is for.
struct CNodeBrowser::SNewItem
{
    std::string name;
    std::string category;
    std::string signature;
    ItemLibraryAccessor library;
};

/// One run of a command on an item: on the one that the context menu names when the command was
/// chosen there, otherwise on that of the selected row. Dialogs and the host run event loops in
/// which the list, the library or the panel may go, so commands work on the copies kept here.
class CNodeBrowser::ItemCommand
{
public:
    explicit ItemCommand(CNodeBrowser* browser)
        : m_Browser(browser)
        , m_ItemLibrary(browser->m_ItemLibrary)
        , m_MenuCommand(browser->ChosenMenu())
        , m_Item(m_MenuCommand.m_Menu ? browser->FindMenuItem(*m_MenuCommand.m_Menu)
                                      : browser->AccessorAtRow(browser->m_SelectedIndex))
        , m_ItemID(AskItemID(m_Item))
    {}

    /// False when no row is selected, and when the item of the menu is gone.
    bool HasItem() const
    {
        return m_Item.IsValid();
    }

    /// The item and the panel still exist, and the panel still shows the item's library. The host
    /// must not be called between this check and the code that relies on it.
    bool IsStillDue() const
    {
        // The host is asked first: it may delete the panel even then.
        return m_Item.Revalidate() && m_ItemLibrary.Revalidate() && m_Browser
               && m_Browser->IsShown(m_ItemLibrary);
    }

    /// The database object of the item, together with the service that knows it; invalid when
    /// there is no such item, service or object.
    qorm::QormHandle<qorm::IDbObject> FindObject(qorm::IRevisionControlUIHelper*& helper) const
    {
        helper = HasItem() ? FindRevisionControlHelper() : nullptr;
        return helper ? FindDbObject(helper, m_ItemID) : qorm::QormHandle<qorm::IDbObject>();
    }

    QPointer<CNodeBrowser> const m_Browser;
    ItemLibraryAccessor const m_ItemLibrary;

private:
    // Before the item, of which the host is asked.
    MenuCommand const m_MenuCommand;

public:
    ItemAccessor const m_Item;
    ItemID const m_ItemID;
};

namespace {

void MakeCurrent(UnspecifiedAccessor const& item)
{
    CompoundAccessor compound;
    compound.SetFrom(item);
    Helpers::SetGlobalTarnoCompoundTarget(compound, CompoundAccessor());
}

/// Runs the dialog, which ends with the panel. False when it was rejected.
bool Run(QDialog& dialog, QPointer<CNodeBrowser> const& browser)
{
    if (!browser)
        return false;
    QObject::connect(browser, SIGNAL(destroyed()), &dialog, SLOT(reject()));
    return dialog.exec() != QDialog::Rejected;
}

} // namespace

bool CNodeBrowser::IsShown(ItemLibraryAccessor const& library) const
{
    return m_ItemLibrary.GetContextID() == library.GetContextID()
           && m_ItemLibrary.GetHandle() == library.GetHandle();
}

/// False when there is nothing to create: the dialog was cancelled, or the library that it was
/// opened for has been replaced. The browser itself may be gone then.
bool CNodeBrowser::AskForNewItem(char const* kind, char const* defaultName, bool showSignature,
                                 SNewItem& item)
{
    QPointer<CNodeBrowser> const self(this);
    ItemLibraryAccessor const library(m_ItemLibrary);
    CTarnoCompoundCreateDialog dialog(library, kind, defaultName, showSignature);
    Run(dialog, self);
    // Cancelling shows as an empty name, whatever way the dialog was closed.
    if (dialog.GetName().isEmpty() || !self || !IsShown(library))
        return false;
    item.name = QStringToStdString(dialog.GetName());
    item.category = QStringToStdString(dialog.GetCategory());
    item.signature = QStringToStdString(dialog.GetSignature());
    // A library that is missing or closed is the host's to refuse.
    item.library = m_ItemLibrary;
    return true;
}

void CNodeBrowser::OnNewSignature()
{
    SNewItem item;
    if (!AskForNewItem("signature", "signature", false, item))
        return;
    CompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewCompound(item.library, item.name.c_str(), true, nullptr,
                                         item.category.c_str(), m_CommandManager);
    if (modifier.IsValid())
        MakeCurrent(modifier);
}

void CNodeBrowser::OnNewCompound()
{
    SNewItem item;
    if (!AskForNewItem("compound", "compound", true, item))
        return;
    CompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewCompound(item.library, item.name.c_str(), false,
                                         item.signature.c_str(), item.category.c_str(),
                                         m_CommandManager);
    if (modifier.IsValid())
        MakeCurrent(modifier);
}

void CNodeBrowser::OnNewLoopCompound()
{
    SNewItem item;
    // The kind has a blank, the default name has none.
    if (!AskForNewItem("loop compound", "loopcompound", true, item))
        return;
    LoopCompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewLoopCompound(item.library, item.name.c_str(),
                                             item.signature.c_str(), item.category.c_str(),
                                             m_CommandManager);
    if (!modifier.IsValid())
        return;
    LoopCompoundAccessor loopCompound;
    loopCompound.SetFrom(modifier);
    MakeCurrent(loopCompound);
}

void CNodeBrowser::OnSaveGraphLibrary()
{
    // The host may replace the library, or delete the panel, while it readies the one to save.
    ItemLibraryAccessor const library(m_ItemLibrary);
    LowLevelItemLibraryAccessor lowLevel;
    lowLevel.SetFrom(library);
    lowLevel.PrepareForSave();

    ItemLibraryModifierAccessor modifier;
    modifier.SetFrom(library);
    // The host reports the outcome itself.
    bool succeeded = false;
    std::list<std::string> messages;
    modifier.CommitToDisk(succeeded, &messages, false, qorm::UID_Null());
}

void CNodeBrowser::OnRenameItem()
{
    ItemCommand const command(this);
    if (!command.HasItem())
        return;
    CompoundAccessor compound;
    compound.SetFrom(command.m_ItemLibrary.GetModel(command.m_ItemID, nullptr));
    QString const oldName =
        ToQString(command.m_ItemLibrary.GetItemName(command.m_ItemID, true, nullptr).c_str());
    if (!command.IsStillDue())
        return;

    CRenameCompoundDialog dialog(command.m_ItemLibrary, compound);
    dialog.SetOldName(oldName);
    if (!Run(dialog, command.m_Browser) || dialog.GetNewName() == oldName || !compound.Revalidate()
        || !command.IsStillDue())
        return;
    CompoundModifierAccessor modifier;
    modifier.SetFrom(compound);
    modifier.Initialize();
    if (command.IsStillDue())
        modifier.RenameCompound(QStringToStdString(dialog.GetNewName()).c_str(), m_CommandManager);
}

/// Does nothing: the menu shows the entry and never lets it be chosen.
void CNodeBrowser::OnDeleteItem() {}

void CNodeBrowser::OnCheckOutItem()
{
    ItemCommand const command(this);
    qorm::IRevisionControlUIHelper* helper;
    qorm::QormHandle<qorm::IDbObject> const object = command.FindObject(helper);
    bool isCheckedOut = false;
    if (object.IsValid())
        helper->CheckOut(object, isCheckedOut, true);
}

void CNodeBrowser::OnMakeItemWritable()
{
    ItemCommand const command(this);
    qorm::IRevisionControlUIHelper* helper;
    qorm::QormHandle<qorm::IDbObject> const object = command.FindObject(helper);
    if (object.IsValid())
        helper->MakeWritable(object, true);
}

void CNodeBrowser::OnShowItemFiles()
{
    ItemCommand const command(this);
    qorm::IRevisionControlUIHelper* helper;
    qorm::QormHandle<qorm::IDbObject> const object = command.FindObject(helper);
    if (object.IsValid())
        helper->ShowFiles(object, false);
}

void CNodeBrowser::OnEditItemTags()
{
    ItemCommand const command(this);
    if (!command.HasItem())
        return;
    std::string const name = command.m_ItemLibrary.GetItemName(command.m_ItemID, true, nullptr);
    std::string const tags = command.m_ItemLibrary.GetItemTags(command.m_ItemID, kAppTagsCategory);
    if (!command.IsStillDue())
        return;

    CItemTagsEditorDialog dialog(name.c_str(), tags.c_str());
    if (!Run(dialog, command.m_Browser) || dialog.GetTags() == tags)
        return;
    ItemLibraryModifierAccessor modifier;
    modifier.SetFrom(command.m_ItemLibrary);
    if (command.IsStillDue())
        modifier.SetItemTags(command.m_ItemID, kAppTagsCategory, dialog.GetTags().c_str(),
                             m_CommandManager);
}

void CNodeBrowser::OnDatasourceChange()
{
    QAction const* const action = qobject_cast<QAction*>(sender());
    QStringList const ids = action ? action->data().toStringList() : QStringList();
    Q_ASSERT_X(ids.size() >= 2, "CNodeBrowser::OnDatasourceChange",
               "the action must name the compound and the resource");
    if (ids.size() < 2)
        return;
    MenuCommand const command(ChosenMenu());
    if (command.m_Menu && !FindMenuItem(*command.m_Menu).IsValid())
        return;

    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    if (!helper)
        return;
    qorm::QormHandle<qorm::IDbObject> const compound =
        helper->FindObject(qorm::DbObjectId(ids[0].toUtf8().constData()));
    qorm::QormPtr<qorm::IHelper> const databaseHelper =
        qorm::IHelper::GetHelper(compound.GetManager()->GetInstance());
    qorm::QormHandle<qorm::IValueAsset> resource;
    resource.AssignCast(
        compound->GetDataModelMgr()->FindObject(qorm::DbObjectId(ids[1].toUtf8().constData())));
    qorm::QormPtr<qorm::IDataSource> const target =
        qorm::GetDataSourceFromResource(resource->GetAssetHandle());
    databaseHelper->MoveToDataSource(compound, target, true);
}
