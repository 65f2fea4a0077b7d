#include "itemfacts.h"

#include "palettetext.h"

#include <framework.h>
#include <sourcecontrol.h>

#include <QTextDocument>
#include <QTextDocumentFragment>

#include <algorithm>
#include <iterator>

using namespace tarno::datamodel;

namespace nodepalette {

namespace {

/// What the items of a kind are called.
struct SKind
{
    char const* type;
    /// By the panel, which gives each of them this tag.
    char const* tag;
    /// By users.
    char const* word;
};

SKind const& FindKind(ItemID const& id)
{
    static SKind const kinds[] = {
        {TarnoType::gSolver, "node", QT_TRANSLATE_NOOP("SItemFacts", "Solver")},
        {TarnoType::gPolymorphicSolver, "node",
         QT_TRANSLATE_NOOP("SItemFacts", "Polymorphic solver")},
        {TarnoType::gCompound, "node", QT_TRANSLATE_NOOP("SItemFacts", "Compound")},
        {TarnoType::gGlobalConstant, "constant", QT_TRANSLATE_NOOP("SItemFacts", "Constant")},
        {LibType::gType, "type", QT_TRANSLATE_NOOP("SItemFacts", "Type")},
    };
    static SKind const other = {nullptr, "node", QT_TRANSLATE_NOOP("SItemFacts", "Item")};
    auto const* const found =
        std::find_if(std::begin(kinds), std::end(kinds),
                     [&](SKind const& kind) { return kind.type == id.GetType(); });
    return found != std::end(kinds) ? *found : other;
}

qorm::QormHandle<qorm::IDbObject> FindObject(ItemID const& id)
{
    char const* const uid = ItemIDUnlock::GetItemIDUID(id);
    auto* const helper = dynamic_cast<qorm::IRevisionControlUIHelper*>(
        wekGetSystem()->GetService("RevisionControlUIHelper"));
    if (!helper || !qorm::DbObjectId::IsUID(uid))
        return qorm::QormHandle<qorm::IDbObject>();
    return helper->FindObject(qorm::DbObjectId(uid));
}

/// The same query by which the panel lists data sources in its menu.
std::string ResourceQuery()
{
    return std::string("select object where IS_OF_TYPE_VERSION( {") + qorm::UID_Resource().GetStr()
           + " } )";
}

QString NameOfSource(qorm::QormHandle<qorm::IDbObject> const& object)
{
    qorm::QormPtr<qorm::IDataModelMgr> const manager = object->GetDataModelMgr();
    qorm::QormPtr<qorm::IDataSource> const source = object.GetDataSource();
    if (manager.IsNull() || source.IsNull())
        return QString();
    qorm::Vector<qorm::CQueryResult> results;
    manager->RunQuery(ResourceQuery().c_str(), results);
    for (qorm::CQueryResult const& result : results) {
        qorm::QormHandle<qorm::IValueAsset> resource;
        resource.AssignCast(manager->FindObject(result.GetObjectId()));
        if (resource.IsValid() && qorm::IsSameUri(source, resource))
            return FromHost(resource->GetName());
    }
    return QString();
}

QString ToPlainText(QString const& text)
{
    QString plain =
        Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
    plain.remove(QChar::ObjectReplacementCharacter);
    return plain.split(QLatin1Char('\n')).join(QLatin1String(", ")).simplified();
}

QString ToRichText(QString const& text)
{
    return Qt::mightBeRichText(text)
               ? text
               : text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"));
}

} // namespace

QString DescribeKind(ItemAccessor const& item)
{
    ItemAccessor accessor = item;
    ItemID const id = accessor.GetItemID();
    bool const isSignature =
        id.GetType() == TarnoType::gCompound && Helpers::IsAbstractFunction(accessor);
    return isSignature ? SItemFacts::tr("Compound signature") : SItemFacts::tr(FindKind(id).word);
}

std::string KindTag(ItemID const& id)
{
    return id.GetType() ? FindKind(id).tag : "";
}

QString PickDifferences(std::vector<QStringList> const& facts, std::size_t row)
{
    QStringList const& own = facts[row];
    std::vector<bool> isAlike(facts.size(), true);
    isAlike[row] = false;
    QStringList picked;
    for (int column = 0; column < own.size(); ++column) {
        bool tells = false;
        for (std::size_t other = 0; other < facts.size(); ++other) {
            if (isAlike[other] && facts[other][column] != own[column]) {
                isAlike[other] = false;
                tells = true;
            }
        }
        if (tells && !own[column].isEmpty())
            picked << own[column];
    }
    return picked.join(QStringLiteral(" · "));
}

QString AskDataSource(ItemID const& id)
{
    qorm::QormHandle<qorm::IDbObject> const object = FindObject(id);
    return object.IsValid() ? NameOfSource(object) : QString();
}

SItemFacts AskItemFacts(ItemLibraryAccessor const& library, ItemAccessor const& item,
                        std::set<std::string> const& tags,
                        CNodePalette::SItemDetails const& details)
{
    ItemID const id = item.GetItemID();
    SItemFacts facts;
    facts.name = FromHost(library.GetItemName(id, true, nullptr));
    facts.kind = DescribeKind(item);
    for (std::string const& tag : tags)
        facts.tags << FromHost(tag);
    facts.isModified = library.ItemIsModified(id);
    facts.isReadOnly = library.ItemIsReadOnly(id);
    facts.details = details;
    qorm::QormHandle<qorm::IDbObject> const object = FindObject(id);
    if (!object.IsValid())
        return facts;
    facts.source = NameOfSource(object);
    // The panel asks for compounds only, so hosts may expect no other kinds.
    if (id.GetType() == TarnoType::gCompound)
        facts.hostText = ScsUtils::GetToolTip(object, QLatin1String(":compound.png"));
    return facts;
}

QString SItemFacts::ToToolTip(QString const& tagNote) const
{
    QStringList lines;
    auto const add = [&](QString const& label, QString const& text) {
        if (!text.isEmpty())
            lines << QStringLiteral("%1: %2").arg(label, text.toHtmlEscaped());
    };
    lines << kind.toHtmlEscaped();
    add(tr("Category"), details.category);
    add(tr("Data source"), source);
    add(tr("Tags"), tags.join(QLatin1String(", ")));
    add(tr("Inputs"), details.inputs.join(QLatin1String(", ")));
    add(tr("Outputs"), details.outputs.join(QLatin1String(", ")));
    add(tr("State"), details.state);
    if (isModified)
        lines << tr("Changed since it was saved");
    if (isReadOnly)
        lines << tr("Read-only");
    if (!tagNote.isEmpty())
        lines << QStringLiteral("<i>%1</i>").arg(tagNote.toHtmlEscaped());
    QString const head = hostText.isEmpty() ? QStringLiteral("<b>%1</b>").arg(name.toHtmlEscaped())
                                            : ToRichText(hostText);
    return QStringLiteral("<div>%1</div><div>%2</div>")
        .arg(head, lines.join(QLatin1String("<br>")));
}

QString SItemFacts::ToDescription() const
{
    QStringList parts(kind);
    auto const add = [&](QString const& label, QString const& text) {
        if (!text.isEmpty())
            parts << QStringLiteral("%1: %2").arg(label, text);
    };
    add(tr("category"), details.category);
    add(tr("tags"), tags.join(QLatin1String(", ")));
    add(tr("data source"), source);
    add(tr("state"), details.state);
    if (isModified)
        parts << tr("changed since it was saved");
    if (isReadOnly)
        parts << tr("read-only");
    if (!hostText.isEmpty())
        parts << ToPlainText(hostText);
    return parts.join(QLatin1String("; "));
}

} // namespace nodepalette
