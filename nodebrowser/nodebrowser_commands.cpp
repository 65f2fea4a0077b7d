#include "nodebrowser.h"

#include "qtcompat.h"
#include "renamedialog.h"
#include "revisioncontrol.h"
#include "stringutils.h"
#include "tarnodialog.h"

#include <QAction>
#include <QPointer>
#include <QStringList>

#include <list>

using namespace tarno::datamodel;

/// What the create dialog asks for, in the form the data model takes.
struct CNodeBrowser::SNewItem
{
    std::string name;
    std::string category;
    std::string signature;
};

namespace {

void MakeCurrent(UnspecifiedAccessor const& item)
{
    CompoundAccessor compound;
    compound.SetFrom(item);
    Helpers::SetGlobalTarnoCompoundTarget(compound, CompoundAccessor());
}

} // namespace

bool CNodeBrowser::IsStillShown(ItemLibraryAccessor const& library) const
{
    return m_ItemLibrary.GetContextID() == library.GetContextID()
           && m_ItemLibrary.GetHandle() == library.GetHandle() && m_ItemLibrary.Revalidate();
}

/// False when there is nothing to create: the dialog was cancelled, or what it was opened for is
/// gone. The browser itself may be gone then.
bool CNodeBrowser::AskForNewItem(char const* kind, char const* defaultName, bool showSignature,
                                 SNewItem& item)
{
    QPointer<CNodeBrowser> const self(this);
    ItemLibraryAccessor const library(m_ItemLibrary);
    CTarnoCompoundCreateDialog dialog(library, kind, defaultName, showSignature);
    dialog.exec();
    // Cancelling shows as an empty name, whatever way the dialog was closed.
    if (dialog.GetName().isEmpty() || !self || !IsStillShown(library))
        return false;
    item.name = QStringToStdString(dialog.GetName());
    item.category = QStringToStdString(dialog.GetCategory());
    item.signature = QStringToStdString(dialog.GetSignature());
    return true;
}

void CNodeBrowser::OnNewSignature()
{
    SNewItem item;
    if (!AskForNewItem("signature", "signature", false, item))
        return;
    CompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewCompound(m_ItemLibrary, item.name.c_str(), true, nullptr,
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
    modifier.CreateAndSetFromNewCompound(m_ItemLibrary, item.name.c_str(), false,
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
    modifier.CreateAndSetFromNewLoopCompound(m_ItemLibrary, item.name.c_str(),
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
    LowLevelItemLibraryAccessor lowLevel;
    lowLevel.SetFrom(m_ItemLibrary);
    lowLevel.PrepareForSave();

    ItemLibraryModifierAccessor modifier;
    modifier.SetFrom(m_ItemLibrary);
    // The host reports the outcome itself.
    bool succeeded = false;
    std::list<std::string> messages;
    modifier.CommitToDisk(succeeded, &messages, false, qorm::UID_Null());
}

void CNodeBrowser::OnRenameItem()
{
    Item const* const item = ItemAtRow(m_SelectedIndex);
    if (!item)
        return;
    ItemID const id = item->GetItemID();
    CompoundAccessor compound;
    compound.SetFrom(m_ItemLibrary.GetModel(id, nullptr));
    QString const oldName =
        qtcompat::FromAscii(m_ItemLibrary.GetItemName(id, true, nullptr).c_str());

    QPointer<CNodeBrowser> const self(this);
    ItemLibraryAccessor const library(m_ItemLibrary);
    CRenameCompoundDialog dialog(library, compound);
    dialog.SetOldName(oldName);
    if (!dialog.exec() || !self || !IsStillShown(library) || !compound.Revalidate())
        return;
    if (dialog.GetNewName() == oldName)
        return;
    CompoundModifierAccessor modifier;
    modifier.SetFrom(compound);
    modifier.Initialize();
    modifier.RenameCompound(QStringToStdString(dialog.GetNewName()).c_str(), m_CommandManager);
}

/// Does nothing: the menu shows the entry and never lets it be chosen.
void CNodeBrowser::OnDeleteItem() {}

/// The database object of the selected row, together with the service that knows it; invalid
/// when there is no such row, service or object.
qorm::QormHandle<qorm::IDbObject>
CNodeBrowser::FindSelectedObject(qorm::IRevisionControlUIHelper*& helper) const
{
    Item const* const item = ItemAtRow(m_SelectedIndex);
    helper = item ? FindRevisionControlHelper() : nullptr;
    return helper ? FindDbObject(helper, item->GetItemID()) : qorm::QormHandle<qorm::IDbObject>();
}

void CNodeBrowser::OnCheckOutItem()
{
    qorm::IRevisionControlUIHelper* helper;
    qorm::QormHandle<qorm::IDbObject> const object = FindSelectedObject(helper);
    bool isCheckedOut = false;
    if (object.IsValid())
        helper->CheckOut(object, isCheckedOut, true);
}

void CNodeBrowser::OnMakeItemWritable()
{
    qorm::IRevisionControlUIHelper* helper;
    qorm::QormHandle<qorm::IDbObject> const object = FindSelectedObject(helper);
    if (object.IsValid())
        helper->MakeWritable(object, true);
}

void CNodeBrowser::OnShowItemFiles()
{
    qorm::IRevisionControlUIHelper* helper;
    qorm::QormHandle<qorm::IDbObject> const object = FindSelectedObject(helper);
    if (object.IsValid())
        helper->ShowFiles(object, false);
}

void CNodeBrowser::OnEditItemTags()
{
    Item const* const item = ItemAtRow(m_SelectedIndex);
    if (!item)
        return;
    ItemID const id = item->GetItemID();
    ItemAccessor const accessor(item->m_Accessor);
    std::string const name = m_ItemLibrary.GetItemName(id, true, nullptr);
    std::string const tags = m_ItemLibrary.GetItemTags(id, kAppTagsCategory);

    QPointer<CNodeBrowser> const self(this);
    ItemLibraryAccessor const library(m_ItemLibrary);
    CItemTagsEditorDialog dialog(name.c_str(), tags.c_str());
    if (!dialog.exec() || !self || !IsStillShown(library) || !accessor.Revalidate())
        return;
    if (dialog.GetTags() == tags)
        return;
    ItemLibraryModifierAccessor modifier;
    modifier.SetFrom(m_ItemLibrary);
    modifier.SetItemTags(id, kAppTagsCategory, dialog.GetTags().c_str(), m_CommandManager);
}

void CNodeBrowser::OnDatasourceChange()
{
    QAction const* const action = qobject_cast<QAction*>(sender());
    QStringList const ids = action ? action->data().toStringList() : QStringList();
    Q_ASSERT_X(ids.size() >= 2, "CNodeBrowser::OnDatasourceChange",
               "the action must name the compound and the resource");
    if (ids.size() < 2)
        return;

    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    if (!helper)
        return;
    qorm::QormHandle<qorm::IDbObject> const compound =
        helper->FindObject(qorm::DbObjectId(ids[0].toUtf8().constData()));
    qorm::QormPtr<qorm::IHelper> const databaseHelper =
        qorm::IHelper::GetHelper(compound.GetManager()->GetInstance());
    qorm::QormHandle<qorm::IValueAsset> resource;
    resource.AssignCast(compound->GetDataModelMgr()->FindObject(
        qorm::DbObjectId(ids[1].toUtf8().constData())));
    qorm::QormPtr<qorm::IDataSource> const target =
        qorm::GetDataSourceFromResource(resource->GetAssetHandle());
    databaseHelper->MoveToDataSource(compound, target, true);
}
