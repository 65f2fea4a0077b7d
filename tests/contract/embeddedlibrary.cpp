#include "contractlibrary.h"

#include <libraryfolder.h>

#include <memory>

ContractLibrary MakeContractLibrary()
{
    auto const folder = std::make_shared<LibraryFolder>();
    folder->Write("project/all.json", '[' + Object(1, "compound", "Wave") + ','
                                          + Object(2, "compound", "Moiré") + ','
                                          + Object(3, "type", "Number") + ']');
    auto const host = std::make_shared<CEmbeddedHost>();
    host->OpenLibrary(folder->GetPath());
    return {host->GetLibrary(), [folder, host] {
                host->CloseLibrary();
            }};
}
