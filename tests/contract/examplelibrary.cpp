#include "contractlibrary.h"

#include <parts.h>

/// The example has one library, which is always there.
struct ContractLibrary::Private
{
};

ContractLibrary::ContractLibrary() = default;
ContractLibrary::~ContractLibrary() = default;

tarno::datamodel::ItemLibraryAccessor ContractLibrary::GetAccessor() const
{
    return GetPartsLibrary();
}

bool ContractLibrary::Close()
{
    return false;
}
