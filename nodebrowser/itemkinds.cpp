#include "itemkinds.h"

#include "nodebrowser.h"

using namespace tarno::datamodel;

namespace nodebrowser {

namespace {

unsigned char const kAll = 1 << CNodeBrowser::eConfigAll;
unsigned char const kNode = kAll | 1 << CNodeBrowser::eConfigNodes;
unsigned char const kType = kAll | 1 << CNodeBrowser::eConfigTypes;
unsigned char const kSignature = kAll | 1 << CNodeBrowser::eConfigSignatures;
unsigned char const kConstant = kAll | 1 << CNodeBrowser::eConfigConstants;

SItemKind const kUnknownKind = {nullptr, false, "", nullptr, kAll};

} // namespace

std::vector<SItemKind> const& GetItemKinds()
{
    // Made when it is needed first: the host's constants may be set after this library's.
    static std::vector<SItemKind> const kinds = {
        {TarnoType::gPolymorphicSolver, false, "node", ":solver.png", kNode},
        {TarnoType::gCompound, false, "node", ":compound.png", kNode},
        {TarnoType::gCompound, true, "node", ":signature.png", kSignature},
        {TarnoType::gGlobalConstant, false, "constant", ":constant.png", kConstant},
        {TarnoType::gSolver, false, "node", ":solver.png", kNode},
        {LibType::gType, false, "type", ":type.png", kType},
    };
    return kinds;
}

SItemKind const& FindItemKind(char const* type, bool isSignature)
{
    for (SItemKind const& kind : GetItemKinds()) {
        if (kind.type == type && kind.isSignature == isSignature)
            return kind;
    }
    return kUnknownKind;
}

bool PassesKindFilter(SItemKind const& kind, int filter)
{
    return filter >= CNodeBrowser::eConfigNodes && filter <= CNodeBrowser::eConfigConstants
           && (kind.filters >> filter & 1) != 0;
}

} // namespace nodebrowser
