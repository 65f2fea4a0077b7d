#include "libraryfolder.h"
#include "loggedtest.h"

#include <nlohmann/json.hpp>

#include <QTest>

#include <fstream>

/// The loader finds nothing to say about the documents that are valid, and something about each
/// of the others. The schemas are held against the same documents.
class TestDocuments : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void LoaderAgrees_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<bool>("isValid");

        std::ifstream file(TEST_DATA "/documents.json");
        nlohmann::json const cases = nlohmann::json::parse(file);
        QVERIFY(!cases.empty());
        for (nlohmann::json const& one : cases) {
            bool const isObject = one.at("form") == "object";
            std::string const row =
                one.at("form").get<std::string>() + ": " + one.at("case").get<std::string>();
            QTest::newRow(row.c_str())
                << (isObject ? QStringLiteral("project/a.json") : QStringLiteral("library.json"))
                << QByteArray::fromStdString(one.at("document").dump())
                << one.at("valid").get<bool>();
        }
    }

    void LoaderAgrees()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, document);
        QFETCH(bool, isValid);
        LibraryFolder folder;
        folder.Write(file, document);

        CEmbeddedHost host;
        host.OpenLibrary(folder.GetPath());
        QVERIFY2(GetMessages(host).isEmpty() == isValid, qPrintable(GetMessages(host).join('\n')));
        QVERIFY2(host.GetLibrary().IsValid() || !isValid, "a valid library was not opened");
    }
};

NODEBROWSER_TEST_MAIN(TestDocuments)
#include "tst_documents.moc"
