#include "../dialogs/dialoguser.h"
#include "../embeddedhost/libraryuser.h"
#include "../testbrowser.h"
#include "loggedtest.h"

#include <itempayload.h>
#include <libraryfolder.h>
#include <stringutils.h>
#include <tarnodialog.h>
#include <textencoding.h>

#include <QDrag>

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

/// The identifier that the last drag carried.
std::string gDragged;

} // namespace

// Takes the place of the toolkit's own, which needs a person with a mouse.
Qt::DropAction QDrag::exec(Qt::DropActions)
{
    gDragged = ReadItemPayload(mimeData());
    delete this;
    return Qt::IgnoreAction;
}

/// Texts of any language in panel, host and editor, whose encoding is UTF-8 here.
class TestLanguages : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        SetTextEncoding(eUtf8Texts);
        CEmbeddedHost::SetTextEncoding(CEmbeddedHost::eUtf8Texts);
    }

    void namesGoAllTheWay_data()
    {
        AddColumns<QString, QString, QString>("name", "searched", "newName");
        // The last letter of the first word has a form of its own.
        AddRow("Greek", "Οδός Φωτός", "ΦΩΤΌΣ", "Σκιά ς");
        // The blank is as wide as the other letters.
        AddRow("Japanese", "画像ぼかし", "ぼかし　無", "画像 ぼけ");
        // Written with marks of their own, and in one.
        AddRow("combining marks", "E\u0301te\u0301", "\u00C9T\u00C9", "Cafe\u0301");
        AddRow("right to left", "טשטוש תמונה", "תמונה", "תמונות");
        AddRow("emoji", "🎨 & 👩‍🎨", "👩‍🎨", "絵");
        // Lower case is a byte longer, and two shorter.
        AddRow("other lengths", "ȺⱥİK", "ⱥȺi\u0307k", "ẞß");
    }

    void namesGoAllTheWay()
    {
        QFETCH(QString, name);
        QFETCH(QString, searched);
        QFETCH(QString, newName);
        LibraryFolder const folder;
        QByteArray const utf8 = name.toUtf8();
        folder.Write("project/one.json", R"({"uid": ")" + utf8
                                             + R"(", "kind": "compound", "name": ")" + utf8
                                             + R"("})");
        folder.Write("project/others.json",
                     '[' + Object(2, "type", "tagged") + ',' + Object(3, "type", "z") + ']');
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        LibraryUser user(host);
        QVERIFY(user.Tag(host.FindItem(Uid(2)), ("x;" + utf8).constData()));
        ItemID const id = host.FindItem(utf8.toStdString());
        TestBrowser browser;
        browser.SetItemLibrary(host.GetLibrary());
        browser.SetCommandManager(&host.GetCommandManager());
        browser.TabChanged(CNodeBrowser::eConfigAll);
        QVERIFY(browser.GetRows().contains('z'));

        browser.SearchTextChange(searched);
        // The browser of the tests takes all names for Latin-1.
        QCOMPARE(ToQString(browser.GetRows().toLatin1()), name + " tagged");
        QTest::mousePress(&browser, Qt::LeftButton, {}, browser.GetRowCenter(0));
        QPoint const far(290, 390);
        QMouseEvent move(QEvent::MouseMove, far, browser.mapToGlobal(far), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&browser, &move);
        QCOMPARE(gDragged, id.Serialize());

        DialogUser dialogUser(newName + "<Return>");
        browser.OnRenameItem();
        QVERIFY(dialogUser.HasClosed());
        QCOMPARE(user.NameOf(id), newName.toStdString());
        QVERIFY(host.GetCommandManager().GetUndoStack().undoText().contains(name));
        QVERIFY(user.Save());
        QVERIFY(ReadFile(folder.GetPath("project/one.json")).contains(newName.toUtf8()));
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QCOMPARE(user.NameOf(host.FindItem(utf8.toStdString())), newName.toStdString());
        QCOMPARE(host.GetLibrary().GetItemTags(host.FindItem(Uid(2)), "ApplicationTags"),
                 ("x;" + utf8).toStdString());
    }

    void bytesThatAreNotUtf8Survive()
    {
        for (std::string const text :
             {"\xC3", "a\xFF\xE9z", "\xE2\x82", "\xED\xA0\x80", "\xF0\x9F\x8E", "\xEF\xBB\xBFmark",
              "\xC3\xA9\x80\xEF\xBF\xBD", "\xF4\x90\x80\x80"}) {
            QString const shown = ToQString(text.c_str());
            QCOMPARE(QStringToStdString(shown), text);
            QVERIFY(!QFontMetrics(QFont()).boundingRect(shown).isEmpty());
        }
        CItemTagsEditorDialog dialog("", "\xC3;\xE9 ;\xC3\xA0");
        DialogUser user("<Return>");
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
        QVERIFY2(dialog.GetTags() == "\xC3;\xC3\xA0;\xE9", dialog.GetTags().c_str());
    }

    void theHostKeepsMarksForBytesThatAreNotUtf8()
    {
        CEmbeddedHost host;
        QVERIFY(host.OpenItems("bytes", {}));
        LibraryUser user(host);
        ItemID const id = user.Create("a\xFF");
        QCOMPARE(user.NameOf(id), std::string("a\uFFFD"));
        QVERIFY(user.Create("A\xFE").IsNull());
        QVERIFY(IsNameInNodeLibraryHierarchy(host.GetLibrary(), "a\xFE"));
        QVERIFY(user.Tag(id, "\xFF") && user.Tag(id, "\xFF") && user.Rename(id, "a\xFF"));
        QCOMPARE(host.GetCommandManager().GetUndoStack().count(), 2);
    }
};

NODEBROWSER_TEST(TestLanguages)

#include "tst_languages.moc"
