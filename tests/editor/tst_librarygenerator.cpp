#include "loggedtest.h"

#include <embeddedhost.h>
#include <librarygenerator.h>

#include <QCryptographicHash>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

using namespace tarno::datamodel;

namespace {

QByteArray Read(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

/// Every file below the folder, by its path in it.
QMap<QString, QByteArray> ReadAll(QString const& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator walk(folder, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QString const path = walk.next();
        files[QDir(folder).relativeFilePath(path)] = Read(path);
    }
    return files;
}

/// What the generator says against the folder; empty when nothing.
QString GetRefusal(QString const& folder)
{
    try {
        GenerateLibrary(folder, 10);
    } catch (std::runtime_error const& error) {
        return QString::fromStdString(error.what());
    }
    return QString();
}

int CountItems(ItemTOCAccessor const& contents, char const* kind)
{
    int count = 0;
    for (Iterator<ItemAccessor> item = contents.GetItems(kind); !item.IsDone(); item.Next())
        ++count;
    return count;
}

} // namespace

class TestLibraryGenerator : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void loadsWithoutMessages();
    void writesTheSameEverywhere();
    void refusesWhatIsInUse();

private:
    QTemporaryDir m_Folder;
};

void TestLibraryGenerator::loadsWithoutMessages()
{
    QString const folder = m_Folder.filePath(QStringLiteral("new/library"));
    GenerateLibrary(folder, 2500);

    CEmbeddedHost host;
    QVERIFY(host.OpenLibrary(folder));
    for (CMessageChannel::Message const& message : host.GetMessages().GetLog())
        QVERIFY2(message.severity == eSeverity::kInformation, qPrintable(message.text));

    ItemTOCAccessor const contents = GetTOC(host.GetLibrary());
    int total = 0;
    for (char const* const kind :
         {TarnoType::gSolver, TarnoType::gPolymorphicSolver, TarnoType::gCompound,
          TarnoType::gGlobalConstant, LibType::gType}) {
        QVERIFY2(CountItems(contents, kind) > 0, kind);
        total += CountItems(contents, kind);
    }
    QCOMPARE(total, 2500);
    // A file for each project compound, and one for each thousand of the others.
    QCOMPARE(ReadAll(folder).size(), 1 + 250 + 3);
}

void TestLibraryGenerator::writesTheSameEverywhere()
{
    QString const first = m_Folder.filePath(QStringLiteral("first"));
    QString const second = m_Folder.filePath(QStringLiteral("second"));
    GenerateLibrary(first, 300);
    GenerateLibrary(second, 300);
    QMap<QString, QByteArray> const files = ReadAll(first);
    QVERIFY(files == ReadAll(second));

    // Figures taken from such libraries can be compared only as long as this holds.
    QByteArray const digest = QCryptographicHash::hash(
        files.value(QStringLiteral("factory/items0000.json")), QCryptographicHash::Sha1);
    QCOMPARE(digest.toHex(), QByteArray("755ae284cd19fcfc33d0228a37e6740c2b36b75a"));
}

void TestLibraryGenerator::refusesWhatIsInUse()
{
    QString const folder = m_Folder.filePath(QStringLiteral("used"));
    QString const path = folder + QStringLiteral("/.hidden");
    QVERIFY(QDir().mkpath(folder));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
    file.close();

    QVERIFY(GetRefusal(folder).contains(QStringLiteral("not empty")));
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral(".hidden")));
    QCOMPARE(Read(path), QByteArray("mine"));
    QVERIFY(GetRefusal(path).contains(path));
    QVERIFY(GetRefusal(path + QStringLiteral("/below")).contains(path));
}

NODEBROWSER_TEST_MAIN(TestLibraryGenerator)
#include "tst_librarygenerator.moc"
