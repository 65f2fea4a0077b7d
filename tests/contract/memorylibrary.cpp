#include "contractlibrary.h"

#include <embeddedhost.h>

using namespace tarno::datamodel;

struct ContractLibrary::Private
{
    CEmbeddedHost host;
};

ContractLibrary::ContractLibrary()
    : m_Private(new Private)
{
    m_Private->host.OpenItems("Items", {{TarnoType::gCompound, "wave", "Wave"},
                                        {TarnoType::gCompound, "moire", "Moiré"},
                                        {LibType::gType, "number", "Number"}});
}

ContractLibrary::~ContractLibrary() = default;

ItemLibraryAccessor ContractLibrary::GetAccessor() const
{
    return m_Private->host.GetLibrary();
}
