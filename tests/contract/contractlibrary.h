#ifndef NODEBROWSER_TESTS_CONTRACTLIBRARY_H
#define NODEBROWSER_TESTS_CONTRACTLIBRARY_H

#include <datamodel.h>

#include <memory>

/// A library of the host that the test is linked with: it has the compounds "Wave" and, in
/// Latin-1, "Moiré", and the type "Number". What else it has does not matter.
class ContractLibrary
{
public:
    ContractLibrary();
    ~ContractLibrary();

    tarno::datamodel::ItemLibraryAccessor GetAccessor() const;
    /// False where the library is always there.
    bool Close();

private:
    struct Private;
    std::unique_ptr<Private> m_Private;
};

#endif
