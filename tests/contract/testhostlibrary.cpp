#include "contractlibrary.h"

#include <testhost.h>

#include <optional>

using namespace tarno::datamodel;

struct ContractLibrary::Private
{
    TestHost host;
    std::optional<TestLibrary> library{std::in_place};
};

ContractLibrary::ContractLibrary()
    : m_Private(new Private)
{
    m_Private->library->Add(TarnoType::gCompound, "Wave");
    m_Private->library->Add(TarnoType::gCompound, "Moir\xE9");
    m_Private->library->Add(LibType::gType, "Number");
}

ContractLibrary::~ContractLibrary() = default;

ItemLibraryAccessor ContractLibrary::GetAccessor() const
{
    return m_Private->library->GetAccessor();
}

bool ContractLibrary::Close()
{
    m_Private->library.reset();
    return true;
}
