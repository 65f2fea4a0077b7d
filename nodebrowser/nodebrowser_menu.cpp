#include "nodebrowser.h"

#include "qtcompat.h"
#include "revisioncontrol.h"

#include <QAction>
#include <QMenu>
#include <QStringList>
#include <QVariant>

using namespace tarno::datamodel;

namespace {

/// All resources of the database.
std::string ResourceQuery()
{
    return std::string("select object where IS_OF_TYPE_VERSION( {") + qorm::UID_Resource().GetStr()
           + " } )";
}

bool IsReadOnly(qorm::QormPtr<qorm::IDataSource> const& source)
{
    return source->GetAccessMode() == qorm::IDataSource::kReadOnlyAccess;
}

QString TextOf(qorm::DbObjectId const& id)
{
    return qtcompat::FromAscii(id.GetStr());
}

} // namespace

void CNodeBrowser::CreateMenuCommand(eMenuCommand command, QMenu* menu)
{
    switch (command) {
    case eMenuNewSignature:
        AddMenuEntry(menu, QLatin1String("Compound signature"), SLOT(OnNewSignature()));
        break;
    case eMenuNewCompound:
        AddMenuEntry(menu, QLatin1String("Public compound"), SLOT(OnNewCompound()));
        break;
    case eMenuNewLoopCompound:
        AddMenuEntry(menu, QLatin1String("Public looping compound"), SLOT(OnNewLoopCompound()));
        break;
    case eMenuSaveGraphLibrary:
        AddMenuEntry(menu, QLatin1String("Save graph library"), SLOT(OnSaveGraphLibrary()));
        break;
    }
}

QAction* CNodeBrowser::AddMenuEntry(QMenu* menu, QString const& text, char const* slot)
{
    QAction* const action = menu->addAction(text);
    connect(action, SIGNAL(triggered()), this, slot);
    return action;
}

void CNodeBrowser::PopContexMenu(QPoint const& globalPos, unsigned long index)
{
    m_SelectedIndex = index;
    Item const* const item = ItemAtRow(index);
    if (!item)
        return;

    QMenu menu;
    FillContextMenu(menu, item->GetItemID());
    // The menu must not outlast the browser that its entries belong to.
    connect(this, SIGNAL(destroyed()), &menu, SLOT(close()));
    // Runs an event loop and the chosen command: nothing here may be used afterwards.
    menu.exec(globalPos, nullptr);
}

void CNodeBrowser::FillContextMenu(QMenu& menu, ItemID const& id)
{
    QString const name =
        qtcompat::FromAscii(m_ItemLibrary.GetItemName(id, true, nullptr).c_str());
    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    bool isEditable = !m_ItemLibrary.ItemIsReadOnly(id);
    qorm::QormHandle<qorm::IDbObject> const object = FindDbObject(helper, id);
    char const* const type = id.GetType();

    if (object.IsValid())
        AddMenuEntry(&menu, QString::fromLatin1("Show Files for %1").arg(name),
                     SLOT(OnShowItemFiles()));
    if (type == TarnoType::gCompound) {
        isEditable = CanModifyCompound(id);
        AddMenuEntry(&menu, QString::fromLatin1("Rename %1").arg(name), SLOT(OnRenameItem()))
            ->setEnabled(isEditable);
        // Shown for every compound and never available.
        AddMenuEntry(&menu, QString::fromLatin1("Delete %1").arg(name), SLOT(OnDeleteItem()))
            ->setEnabled(false);
        if (object.IsValid())
            AddSourceMenu(menu, object);
    }
    // A compound is asked whether it can be modified, the others whether they are read-only.
    if (type == TarnoType::gCompound || type == TarnoType::gSolver
        || type == TarnoType::gGlobalConstant)
        AddMenuEntry(&menu, QString::fromLatin1("Edit Tags for %1").arg(name),
                     SLOT(OnEditItemTags()))
            ->setEnabled(isEditable);
}

bool CNodeBrowser::CanModifyCompound(ItemID const& id) const
{
    CompoundAccessor compound;
    compound.SetFrom(m_ItemLibrary.GetModel(id, nullptr));
    CompoundModifierAccessor modifier;
    modifier.SetFrom(compound);
    return modifier.CanModifyCompound(true);
}

void CNodeBrowser::AddSourceMenu(QMenu& menu, qorm::QormHandle<qorm::IDbObject> const& compound)
{
    QMenu* const sources = menu.addMenu(QLatin1String("Compound source"));
    qtcompat::ShowActionToolTips(sources);
    qorm::QormPtr<qorm::IDataModelMgr> const manager = compound->GetDataModelMgr();
    qorm::Vector<qorm::CQueryResult> results;
    manager->RunQuery(ResourceQuery().c_str(), results);
    for (qorm::CQueryResult const& result : results)
        AddSourceEntry(sources, compound, manager->FindObject(result.GetObjectId()));
}

void CNodeBrowser::AddSourceEntry(QMenu* menu, qorm::QormHandle<qorm::IDbObject> const& compound,
                                  qorm::QormHandle<qorm::IDbObject> const& object)
{
    qorm::QormHandle<qorm::IValueAsset> resource;
    resource.AssignCast(object);
    qorm::QormPtr<qorm::IDataSource> const target =
        qorm::GetDataSourceFromResource(resource->GetAssetHandle());
    if (target.IsNull())
        return;

    qorm::QormPtr<qorm::IDataSource> const current = compound.GetDataSource();
    bool isEnabled = !IsReadOnly(current);
    QString label = qtcompat::FromAscii(resource->GetName());
    if (qorm::IsSameUri(current, resource)) {
        // Glued to the name, unlike the other suffix.
        label += QLatin1String("[Current]");
        isEnabled = false;
    }
    if (IsReadOnly(target)) {
        label += QLatin1String(" [Read-Only]");
        isEnabled = false;
    }

    QAction* const action = AddMenuEntry(menu, label, SLOT(OnDatasourceChange()));
    action->setEnabled(isEnabled);
    action->setToolTip(
        QLatin1String("Move compound to this data source\n")
        + qtcompat::FromAscii(qorm::GetResourceExpandedURI(object).c_str()));
    action->setData(QStringList() << TextOf(compound.GetDbObjectId())
                                  << TextOf(resource->GetDbObjectId()));
}
