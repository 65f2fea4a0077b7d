#ifndef NODEBROWSER_TESTS_MAINWINDOWTEST_H
#define NODEBROWSER_TESTS_MAINWINDOWTEST_H

#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <embeddedhost.h>
#include <journal.h>
#include <mainwindow.h>
#include <settings.h>

#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <memory>

QString const kGlowFile = QStringLiteral("project/glow.json");

/// One run of the editor: everything that ends with the process.
struct SRun
{
    explicit SRun(QString const& journalFolder)
        : journal(host, journalFolder)
        , window(host)
        , user(host)
    {
        journal.SetPause(10);
        window.UseSettings(settings);
        window.UseJournal(journal);
        window.show();
    }

    CEmbeddedHost host;
    CSettings settings;
    CJournal journal;
    CMainWindow window;
    LibraryUser user;
};

inline void CollectActions(QList<QAction*> const& actions, QList<QAction*>& all)
{
    for (QAction* const action : actions) {
        all << action;
        if (action->menu())
            CollectActions(action->menu()->actions(), all);
    }
}

/// The window as a user has it, with settings and a journal in folders of its own.
class MainWindowTest : public LoggedTest
{
protected:
    void SetUp() override
    {
        m_Home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_Home->path()));
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow", R"(, "nodes": [
            {"id": "ramp", "item": "BBBBBBBB-0000-0000-0000-000000000002", "position": [0, 0]}])"));
        m_Folder->Write(QStringLiteral("project/ramp.json"), Object(2, "compound", "Ramp"));
        Start();
    }

    void TearDown() override
    {
        m_Run.reset();
        m_Folder.reset();
        m_Home.reset();
    }

    void Start()
    {
        // There is one host at a time.
        m_Run.reset();
        m_Run = std::make_unique<SRun>(m_Home->filePath(QStringLiteral("journal")));
    }

    void Open()
    {
        QVERIFY(m_Run->window.OpenLibrary(m_Folder->GetPath()));
    }

    tarno::datamodel::ItemID Item(int number)
    {
        return m_Run->host.FindItem(Uid(number));
    }

    void Rename()
    {
        m_Run->user.Rename(Item(1), "Soft Glow");
    }

    QByteArray Content()
    {
        return m_Folder->Read().value(m_Folder->GetPath(kGlowFile));
    }

    int CountJournals()
    {
        return int(QDir(m_Home->filePath(QStringLiteral("journal")))
                       .entryList({QStringLiteral("*.json")})
                       .size());
    }

    QAction* FindAction(QString const& text)
    {
        QList<QAction*> all;
        CollectActions(m_Run->window.menuBar()->actions(), all);
        for (QAction* const action : all) {
            if (action->text().remove(QLatin1Char('&')) == text)
                return action;
        }
        qFatal("There is no menu entry %s.", qPrintable(text));
        return nullptr;
    }

    std::size_t CountNodes()
    {
        return m_Run->host.GetBody(Item(1)).nodes.size();
    }

    void ShowCompound(int number)
    {
        tarno::datamodel::CompoundAccessor compound;
        compound.SetFrom(m_Run->host.GetLibrary().GetModel(Item(number), nullptr));
        m_Run->host.SetCompoundTarget(compound);
    }

    std::unique_ptr<QTemporaryDir> m_Home;
    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<SRun> m_Run;
};

#endif
