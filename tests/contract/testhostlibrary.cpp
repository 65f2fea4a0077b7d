#include "contractlibrary.h"

#include <testhost.h>

#include <memory>

using namespace tarno::datamodel;

ContractLibrary MakeContractLibrary()
{
    auto const host = std::make_shared<TestHost>();
    auto library = std::make_shared<TestLibrary>();
    library->Add(TarnoType::gCompound, "Wave");
    library->Add(TarnoType::gCompound, "Moir\xE9");
    library->Add(LibType::gType, "Number");
    ItemLibraryAccessor const accessor = library->GetAccessor();
    return {accessor, [host, library = std::move(library)]() mutable {
                library.reset();
            }};
}
