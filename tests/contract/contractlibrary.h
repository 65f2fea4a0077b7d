#ifndef NODEBROWSER_TESTS_CONTRACTLIBRARY_H
#define NODEBROWSER_TESTS_CONTRACTLIBRARY_H

#include <datamodel.h>

#include <functional>

/// A library of the host that the test is linked with, which lives as long as its `close`.
struct ContractLibrary
{
    tarno::datamodel::ItemLibraryAccessor accessor;
    /// Empty where the library is always there.
    std::function<void()> close;
};

/// It has the compounds "Wave" and, in Latin-1, "Moiré", and the type "Number". What else it has
/// does not matter.
ContractLibrary MakeContractLibrary();

#endif
