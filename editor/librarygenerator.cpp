#include "librarygenerator.h"

#include "itemgenerator.h"
#include "libraryfiles.h"

#include <embeddedhost/embeddedhost.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>

using nlohmann::ordered_json;

namespace {

unsigned long const kObjectsPerFile = 1000;
/// One item in ten is a project compound, with a file of its own, but not more than these.
unsigned long const kProjectShare = 10;
unsigned long const kMostProjectItems = 20000;

/// The component of the items that ship with the application.
char const kFactoryComponent[] = "D2BA853A-8668-704A-A121-1F7DE917B664";

void MakeFolders(QString const& folder, unsigned long itemCount, ItemGenerator& generator)
{
    embeddedhost::NewLibrary::DataSource const factory = {generator.MakeUid(), "factory", "factory",
                                                          true, kFactoryComponent};
    embeddedhost::NewLibrary::DataSource const project = {generator.MakeUid(), "project",
                                                          "project"};
    QString fault;
    if (!CEmbeddedHost::MakeLibrary(
            folder,
            {"Generated library of " + std::to_string(itemCount) + " items", {project, factory}},
            &fault))
        throw std::runtime_error(fault.toStdString());
}

/// Factory files are as long as they are many: one line an object.
std::string MakeFactoryFile(unsigned long objectCount, ItemGenerator& generator)
{
    std::string text = "[\n";
    for (unsigned long i = 0; i < objectCount; ++i) {
        text += generator.MakeFactoryItem().dump();
        text += i + 1 < objectCount ? ",\n" : "\n";
    }
    return text + "]\n";
}

void WriteFactory(QString const& folder, unsigned long itemCount, ItemGenerator& generator)
{
    for (unsigned long written = 0; written < itemCount; written += kObjectsPerFile) {
        QString const name =
            QStringLiteral("/items%1.json").arg(written / kObjectsPerFile, 4, 10, QChar('0'));
        WriteFile(folder + name,
                  MakeFactoryFile(std::min(kObjectsPerFile, itemCount - written), generator));
    }
}

void WriteProject(QString const& folder, unsigned long itemCount, ItemGenerator& generator)
{
    for (unsigned long i = 0; i < itemCount; ++i) {
        ordered_json const compound = generator.MakeCompound();
        QString const name = QString::fromStdString(compound["name"].get<std::string>());
        WriteFile(QStringLiteral("%1/%2.json").arg(folder, name), compound.dump(4) + '\n');
    }
}

} // namespace

void GenerateLibrary(QString const& folder, unsigned long itemCount)
{
    ItemGenerator generator;
    unsigned long const projectCount = std::min(itemCount / kProjectShare, kMostProjectItems);
    MakeFolders(folder, itemCount, generator);
    WriteFactory(folder + QStringLiteral("/factory"), itemCount - projectCount, generator);
    WriteProject(folder + QStringLiteral("/project"), projectCount, generator);
}
