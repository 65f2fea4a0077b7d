#include "libraryfolder.h"
#include "loggedtest.h"
#include "storage/systemfiles.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace embeddedhost;

/// What anybody may have put into a library folder.
class tst_SystemFiles : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void ReadsRegularFilesOfTheLibraryOnly_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("fault");
        QTest::newRow("a file") << "file" << true << QByteArray("text") << "";
        QTest::newRow("an empty file") << "empty" << true << QByteArray() << "";
        QTest::newRow("nothing") << "none" << false << QByteArray() << "";
        QTest::newRow("nothing below a file") << "file/x" << false << QByteArray() << "";
        QTest::newRow("a link to nothing") << "dangling" << false << QByteArray() << "";
        QTest::newRow("a link to a file") << "inner" << true << QByteArray("text") << "";
        QTest::newRow("a link out") << "outer" << true << QByteArray() << "out of the library";
        QTest::newRow("a folder that leads out") << "sub/hostname" << false << QByteArray() << "";
        QTest::newRow("a linked folder") << "again/file" << false << QByteArray() << "";
        QTest::newRow("a circle") << "circle" << false << QByteArray() << "";
        QTest::newRow("a folder") << "project" << true << QByteArray() << "not a regular file";
        QTest::newRow("a pipe") << "pipe" << true << QByteArray() << "not a regular file";
        QTest::newRow("a device") << "zero" << true << QByteArray() << "not a regular file";
        QTest::newRow("too large") << "large" << true << QByteArray() << "larger than 256 MiB";
    }

    void ReadsRegularFilesOfTheLibraryOnly()
    {
        LibraryFolder const folder;
        QTemporaryDir const outside;
        auto const link = [&](char const* name, QString const& to) {
            QVERIFY(QFile::link(to, folder.GetPath(QString::fromLatin1(name))));
        };
        folder.Write("file", "text");
        folder.Write("empty", "");
        QFile secret(outside.filePath("hostname"));
        QVERIFY(secret.open(QIODevice::WriteOnly) && secret.write("secret") == 6);
        secret.close();
        link("dangling", folder.GetPath("none"));
        link("inner", folder.GetPath("file"));
        link("outer", secret.fileName());
        link("sub", outside.path());
        link("again", folder.GetPath());
        link("circle", folder.GetPath("circle"));
        link("zero", QStringLiteral("/dev/zero"));
        QCOMPARE(mkfifo(QFile::encodeName(folder.GetPath("pipe")).constData(), 0600), 0);
        folder.Write("large", "");
        QVERIFY(QFile::resize(folder.GetPath("large"), kMaxFileSize + 1));

        QFETCH(QString, name);
        FileContent const content = ReadRegularFile(folder.GetPath(name), folder.GetPath());
        QTEST(content.exists, "exists");
        QTEST(content.bytes, "bytes");
        QFETCH(QString, fault);
        QCOMPARE(content.fault.isEmpty(), fault.isEmpty());
        QVERIFY2(content.fault.contains(fault), qPrintable(content.fault));
    }
};

NODEBROWSER_TEST_MAIN(tst_SystemFiles)
#include "tst_systemfiles.moc"
