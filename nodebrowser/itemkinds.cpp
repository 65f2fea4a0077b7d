#include "itemkinds.h"

#include "nodebrowser.h"

using namespace tarno::datamodel;

namespace {

bool IsNodeType(char const* type)
{
    return type == TarnoType::gPolymorphicSolver || type == TarnoType::gSolver
           || type == TarnoType::gCompound;
}

unsigned char FilterBit(CNodeBrowser::eConfigType filter)
{
    return static_cast<unsigned char>(1 << filter);
}

} // namespace

char const* GetKindTag(char const* type)
{
    if (IsNodeType(type))
        return "node";
    if (type == TarnoType::gGlobalConstant)
        return "constant";
    return type == LibType::gType ? "type" : "";
}

char const* GetKindIcon(char const* type, bool isSignature)
{
    if (type == TarnoType::gSolver || type == TarnoType::gPolymorphicSolver)
        return ":solver.png";
    if (type == TarnoType::gCompound)
        return isSignature ? ":signature.png" : ":compound.png";
    if (type == TarnoType::gGlobalConstant)
        return ":constant.png";
    return type == LibType::gType ? ":type.png" : nullptr;
}

unsigned char GetKindFilters(ItemAccessor& item)
{
    item.Revalidate();
    char const* const type = item.GetItemID().GetType();
    unsigned char const all = FilterBit(CNodeBrowser::eConfigAll);
    if (type == TarnoType::gCompound && Helpers::IsAbstractFunction(item))
        return all | FilterBit(CNodeBrowser::eConfigSignatures);
    if (IsNodeType(type))
        return all | FilterBit(CNodeBrowser::eConfigNodes);
    if (type == TarnoType::gGlobalConstant)
        return all | FilterBit(CNodeBrowser::eConfigConstants);
    return type == LibType::gType ? all | FilterBit(CNodeBrowser::eConfigTypes) : all;
}

bool PassesKindFilter(unsigned char kindFilters, int filter)
{
    return filter >= CNodeBrowser::eConfigNodes && filter <= CNodeBrowser::eConfigConstants
           && (kindFilters >> filter & 1) != 0;
}
