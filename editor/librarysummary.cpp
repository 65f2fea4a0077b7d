#include "librarysummary.h"

#include <QStringList>

using namespace tarno::datamodel;

namespace {

struct SKind
{
    char const* kind;
    char const* singular;
    char const* plural;
};

int CountItems(ItemTOCAccessor const& contents, char const* kind)
{
    int count = 0;
    for (Iterator<ItemAccessor> item = contents.GetItems(kind); !item.IsDone(); item.Next())
        ++count;
    return count;
}

QString Words(int count, char const* singular, char const* plural)
{
    return QStringLiteral("%L1 %2").arg(count).arg(QLatin1String(count == 1 ? singular : plural));
}

} // namespace

QString SummarizeItems(ItemLibraryAccessor const& library)
{
    if (!library.IsValid())
        return QString();
    // The kind constants are compared by identity and set up elsewhere, so no static table.
    SKind const kinds[] = {
        {TarnoType::gSolver, "solver", "solvers"},
        {TarnoType::gPolymorphicSolver, "polymorphic solver", "polymorphic solvers"},
        {TarnoType::gCompound, "compound", "compounds"},
        {TarnoType::gGlobalConstant, "constant", "constants"},
        {LibType::gType, "type", "types"},
    };
    ItemTOCAccessor const contents = GetTOC(library);
    QStringList summary;
    for (SKind const& kind : kinds)
        if (int const count = CountItems(contents, kind.kind))
            summary << Words(count, kind.singular, kind.plural);
    return summary.isEmpty() ? QStringLiteral("no items") : summary.join(QStringLiteral(", "));
}
