#include "windowtest.h"

#include <samplelibrary.h>

#include <QDir>
#include <QTest>

namespace {

QString PictureFolder()
{
    QString const folder = qEnvironmentVariable("WINDOW_PICTURES", QDir::tempPath());
    QDir().mkpath(folder);
    return folder;
}

} // namespace

WindowTest::WindowTest()
    : m_User(PictureFolder())
{}

void WindowTest::SetUp()
{
    // Windows that close while the toolkit asks the server about them.
    Expect(QStringLiteral("QXcbConnection: XCB error: 3 (BadWindow)"));
    m_Home = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_Home->path()));
    QString fault;
    PrepareSampleLibrary(QStringLiteral(SAMPLE_LIBRARY), GetLibraryPath(), &fault);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    Start();
    QVERIFY(m_Editor->GetWindow().OpenLibrary(GetLibraryPath()));
    QVERIFY(QTest::qWaitForWindowActive(&m_Editor->GetWindow()));
}

void WindowTest::TearDown()
{
    m_Editor.reset();
    m_Home.reset();
}

void WindowTest::Start()
{
    // There is one host at a time.
    m_Editor.reset();
    m_Editor = std::make_unique<EditorRun>(m_Home->filePath(QStringLiteral("journal")));
    QString const last = CSettings().GetRecentLibraries().value(0);
    if (!last.isEmpty())
        m_Editor->GetWindow().OpenLibrary(last);
}

void WindowTest::Search(QString const& text)
{
    m_User.Click(RealUser::OnScreen([&] { return m_Editor->GetSearchPoint(); }));
    m_User.Press(QStringLiteral("ctrl+a"));
    if (text.isEmpty())
        m_User.Press(QStringLiteral("BackSpace"));
    else
        m_User.Type(text);
}

void WindowTest::OpenRowMenu(int row)
{
    m_User.Click(RealUser::OnScreen([&] { return m_Editor->GetRowPoint(row); }), 3);
}

void WindowTest::ChooseInMenuBar(QStringList const& texts)
{
    m_User.Click(RealUser::OnScreen([&] { return m_Editor->GetMenuPoint(texts.first()); }));
    m_User.ChooseInMenu(texts.mid(1));
}

void WindowTest::ShowCompound(QString const& name)
{
    Search(name);
    WaitForFirstRow(name);
    m_User.DoubleClick(RealUser::OnScreen([&] { return m_Editor->GetRowPoint(0); }));
    RealUser::WaitUntil(name + QStringLiteral(" on the canvas"),
                        [&] { return m_Editor->GetCompoundName() == name; });
}

void WindowTest::WaitForFirstRow(QString const& name)
{
    RealUser::WaitUntil(name + QStringLiteral(" in the first row"),
                        [&] { return m_Editor->GetRows().value(0) == name; });
}

QString WindowTest::GetLibraryPath(QString const& file) const
{
    QString const folder = m_Home->filePath(QStringLiteral("library"));
    return file.isEmpty() ? folder : folder + QLatin1Char('/') + file;
}
