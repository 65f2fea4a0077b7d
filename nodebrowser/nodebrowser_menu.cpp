#include "nodebrowser_p.h"

#include "hostservices.h"
#include "qtcompat.h"
#include "textencoding.h"

#include <QAction>
#include <QPointer>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <string>
#include <vector>

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

/// An entry of the menu of data sources.
struct SSourceEntry
{
    QString label;
    QString toolTip;
    bool isEnabled;
    /// The texts of the identifiers of the compound and of the resource to move it to.
    QStringList ids;
};

typedef std::vector<SSourceEntry> SourceEntries;

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
    return ToQString(id.GetStr());
}

SSourceEntry MakeSourceEntry(qorm::QormHandle<qorm::IDbObject> const& compound,
                             qorm::QormHandle<qorm::IDbObject> const& object,
                             qorm::QormHandle<qorm::IValueAsset> const& resource,
                             qorm::QormPtr<qorm::IDataSource> const& target)
{
    qorm::QormPtr<qorm::IDataSource> const current = compound.GetDataSource();
    SSourceEntry entry;
    entry.isEnabled = !IsReadOnly(current);
    entry.label = ToQString(resource->GetName());
    if (qorm::IsSameUri(current, resource)) {
        // Glued to the name, unlike the other suffix.
        entry.label += QLatin1String("[Current]");
        entry.isEnabled = false;
    }
    if (IsReadOnly(target)) {
        entry.label += QLatin1String(" [Read-Only]");
        entry.isEnabled = false;
    }
    entry.toolTip = QLatin1String("Move compound to this data source\n")
                    + ToQString(qorm::GetResourceExpandedURI(object).c_str());
    entry.ids << TextOf(compound.GetDbObjectId()) << TextOf(resource->GetDbObjectId());
    return entry;
}

/// The data sources that resources of the database stand for.
SourceEntries ListSources(qorm::QormHandle<qorm::IDbObject> const& compound)
{
    qorm::QormPtr<qorm::IDataModelMgr> const manager = compound->GetDataModelMgr();
    qorm::Vector<qorm::CQueryResult> results;
    manager->RunQuery(ResourceQuery().c_str(), results);
    SourceEntries entries;
    for (qorm::CQueryResult const& result : results) {
        qorm::QormHandle<qorm::IDbObject> const object = manager->FindObject(result.GetObjectId());
        qorm::QormHandle<qorm::IValueAsset> resource;
        resource.AssignCast(object);
        qorm::QormPtr<qorm::IDataSource> const target =
            qorm::GetDataSourceFromResource(resource->GetAssetHandle());
        if (!target.IsNull())
            entries.push_back(MakeSourceEntry(compound, object, resource, target));
    }
    return entries;
}

bool CanModifyCompound(ItemLibraryAccessor const& library, ItemID const& id)
{
    CompoundAccessor compound;
    compound.SetFrom(library.GetModel(id, nullptr));
    CompoundModifierAccessor modifier;
    modifier.SetFrom(compound);
    return modifier.CanModifyCompound(true);
}

} // namespace

/// The host's answers about the item of a context menu.
struct CNodeBrowser::SMenuFacts
{
    SMenuFacts(ItemLibraryAccessor const& library, ItemID const& id);

    QString name;
    bool isCompound;
    bool isEditable;
    bool hasTags;
    bool hasObject;
    SourceEntries sources;
};

CNodeBrowser::SMenuFacts::SMenuFacts(ItemLibraryAccessor const& library, ItemID const& id)
    : name(ToQString(library.GetItemName(id, true, nullptr).c_str()))
{
    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    isEditable = !library.ItemIsReadOnly(id);
    qorm::QormHandle<qorm::IDbObject> const object = FindDbObject(helper, id);
    hasObject = object.IsValid();
    char const* const type = id.GetType();
    isCompound = type == TarnoType::gCompound;
    hasTags = isCompound || type == TarnoType::gSolver || type == TarnoType::gGlobalConstant;
    // A compound is asked whether it can be modified, the others whether they are read-only.
    if (isCompound)
        isEditable = CanModifyCompound(library, id);
    if (isCompound && hasObject)
        sources = ListSources(object);
}

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
    ItemAccessor const item = AccessorAtRow(index);
    if (!item.IsValid())
        return;

    // All is asked before anything is built: the host may delete the panel, or replace its
    // library, when it is asked.
    QPointer<CNodeBrowser> const self(this);
    ItemLibraryAccessor const library(m_ItemLibrary);
    ItemID const id = AskItemID(item);
    SMenuFacts const facts(library, id);
    if (!self || !IsShown(library))
        return;
    ContextMenu menu(library, id);
    FillContextMenu(menu, facts);
    // The menu must not outlast the browser that its entries belong to.
    connect(this, SIGNAL(destroyed()), &menu, SLOT(close()));
    // Runs an event loop and the chosen command: nothing here may be used afterwards.
    menu.exec(globalPos, nullptr);
}

void CNodeBrowser::FillContextMenu(QMenu& menu, SMenuFacts const& facts)
{
    if (facts.hasObject)
        AddMenuEntry(&menu, QString::fromLatin1("Show Files for %1").arg(facts.name),
                     SLOT(OnShowItemFiles()));
    if (facts.isCompound) {
        AddMenuEntry(&menu, QString::fromLatin1("Rename %1").arg(facts.name), SLOT(OnRenameItem()))
            ->setEnabled(facts.isEditable);
        // Shown for every compound and never available.
        AddMenuEntry(&menu, QString::fromLatin1("Delete %1").arg(facts.name), SLOT(OnDeleteItem()))
            ->setEnabled(false);
        if (facts.hasObject)
            AddSourceMenu(menu, facts);
    }
    if (facts.hasTags)
        AddMenuEntry(&menu, QString::fromLatin1("Edit Tags for %1").arg(facts.name),
                     SLOT(OnEditItemTags()))
            ->setEnabled(facts.isEditable);
}

void CNodeBrowser::AddSourceMenu(QMenu& menu, SMenuFacts const& facts)
{
    QMenu* const sources = menu.addMenu(QLatin1String("Compound source"));
    qtcompat::ShowActionToolTips(sources);
    for (SSourceEntry const& entry : facts.sources) {
        QAction* const action = AddMenuEntry(sources, entry.label, SLOT(OnDatasourceChange()));
        action->setEnabled(entry.isEnabled);
        action->setToolTip(entry.toolTip);
        action->setData(entry.ids);
    }
}

CNodeBrowser::ContextMenu* CNodeBrowser::ChosenMenu() const
{
    ContextMenu* const menu = ContextMenu::FindAbove(sender());
    return menu && !menu->m_IsCommandRunning ? menu : nullptr;
}

ItemAccessor CNodeBrowser::FindMenuItem(ContextMenu const& menu) const
{
    if (!IsShown(menu.m_ItemLibrary))
        return ItemAccessor();
    // Copies: when the host is asked, it may have the list rebuilt or delete the panel.
    std::vector<ItemAccessor> candidates;
    unsigned long const row = m_Private->list.Find(menu.m_ItemID);
    if (m_Private->list.GetCount() != m_Items.size()) {
        // A subclass has changed the items since they were listed.
        for (Item const& item : m_Items)
            candidates.push_back(item.m_Accessor);
    } else if (row < m_Items.size()) {
        candidates.push_back(m_Items[row].m_Accessor);
    }
    auto const found =
        std::find_if(candidates.begin(), candidates.end(), [&](ItemAccessor const& item) {
            return item.Revalidate() && item.GetItemID() == menu.m_ItemID;
        });
    return found == candidates.end() ? ItemAccessor() : *found;
}
