#ifndef NODEBROWSER_TESTS_WINDOWTEST_H
#define NODEBROWSER_TESTS_WINDOWTEST_H

#include "editorrun.h"
#include "loggedtest.h"
#include "realuser.h"

#include <QTemporaryDir>

#include <memory>

/// Base of tests in which a real user works with the editor, each with a fresh profile and a copy
/// of the sample library that is a git work tree.
class WindowTest : public LoggedTest
{
protected:
    WindowTest();

    void SetUp() override;
    void TearDown() override;

    /// Starts the editor, again when it runs, on the library that was opened last.
    void Start();

    // What a user does, for stories.

    void Search(QString const& text);
    /// Opens the row's context menu.
    void OpenRowMenu(int row);
    void ChooseInMenuBar(QStringList const& texts);
    /// Searches for the compound, which has to come first, and opens it on the canvas.
    void ShowCompound(QString const& name);
    void WaitForFirstRow(QString const& name);

    QString GetLibraryPath(QString const& file = QString()) const;

    RealUser m_User;
    std::unique_ptr<QTemporaryDir> m_Home;
    std::unique_ptr<EditorRun> m_Editor;
};

#endif
