#include "contractlibrary.h"

#include <libraryfolder.h>

struct ContractLibrary::Private
{
    LibraryFolder folder;
    CEmbeddedHost host;
};

ContractLibrary::ContractLibrary()
    : m_Private(new Private)
{
    QByteArrayList const objects = {Object(1, "compound", "Wave"), Object(2, "compound", "Moiré"),
                                    Object(3, "type", "Number")};
    m_Private->folder.Write("project/all.json", '[' + objects.join(',') + ']');
    m_Private->host.OpenLibrary(m_Private->folder.GetPath());
}

ContractLibrary::~ContractLibrary() = default;

tarno::datamodel::ItemLibraryAccessor ContractLibrary::GetAccessor() const
{
    return m_Private->host.GetLibrary();
}

bool ContractLibrary::Close()
{
    m_Private->host.CloseLibrary();
    return true;
}
