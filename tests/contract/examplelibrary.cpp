#include "contractlibrary.h"

#include <parts.h>

ContractLibrary MakeContractLibrary()
{
    return {GetPartsLibrary(), nullptr};
}
