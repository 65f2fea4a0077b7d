#include "windowtest.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QUndoStack>

using namespace tarno::datamodel;

namespace {

QString const kSignature = QStringLiteral("TintStage");
QString const kCompound = QStringLiteral("WarmTint");
QString const kCapitals = QStringLiteral("WARMTINT");
QString const kTag = QStringLiteral("cosiness");
QString const kGraph = QStringLiteral("AddedTwice");

/// The dialog that is open can be confirmed.
bool CanConfirm()
{
    QWidget const* const dialog = QApplication::activeModalWidget();
    return dialog
           && dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled();
}

} // namespace

/// What people do with the editor, from the first click to what is on disk.
class TestEditorStory : public WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void managesItems();
    void keepsAGraph();

private:
    bool HasItem(QString const& name)
    {
        return IsNameInNodeLibraryHierarchy(m_Editor->GetHost().GetLibrary(),
                                            name.toStdString().c_str());
    }

    QUndoStack& GetStack()
    {
        return m_Editor->GetHost().GetCommandManager().GetUndoStack();
    }

    /// What the git command says about the library, a line a file.
    QStringList GetGitStatus()
    {
        QProcess git;
        git.start(QStringLiteral("git"), {QStringLiteral("-C"), GetLibraryPath(),
                                          QStringLiteral("status"), QStringLiteral("--porcelain")});
        git.waitForFinished();
        return QString::fromUtf8(git.readAllStandardOutput())
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    void CreateSignature();
    void CreateCompound();
    void RenameCompound();
    void TagCompound();
    void MoveCompound();
    void UndoAll();
    void RedoAll();
    void Save();

    void CreateGraph();
    void DropItem(QString const& name, double across);
    void ConnectNodes();
};

void TestEditorStory::CreateSignature()
{
    ChooseInMenuBar({QStringLiteral("Create"), QStringLiteral("Compound signature")});
    RealUser::WaitForDialog(QStringLiteral("Create signature"));
    m_User.Press(QStringLiteral("ctrl+a"));
    m_User.Type(kSignature);
    m_User.Press(QStringLiteral("Return"));
    RealUser::WaitForNoDialog();
    RealUser::WaitUntil(QStringLiteral("the signature to be there"),
                        [&] { return HasItem(kSignature); });
}

void TestEditorStory::CreateCompound()
{
    ChooseInMenuBar({QStringLiteral("Create"), QStringLiteral("Public compound")});
    RealUser::WaitForDialog(QStringLiteral("Create compound"));
    m_User.Press(QStringLiteral("ctrl+a"));
    m_User.Type(kCompound);
    m_User.Click(RealUser::OnScreen([] {
        QComboBox const& box = *QApplication::activeModalWidget()->findChild<QComboBox*>();
        return OnScreenPoint(box, box.rect().center());
    }));
    m_User.Type(kSignature);
    m_User.Press(QStringLiteral("Return"));
    m_User.TakePicture(QStringLiteral("create-compound"));
    m_User.Press(QStringLiteral("Return"));
    RealUser::WaitForNoDialog();
    RealUser::WaitUntil(QStringLiteral("the new compound on the canvas"),
                        [&] { return m_Editor->GetCompoundName() == kCompound; });
}

void TestEditorStory::RenameCompound()
{
    Search(kCompound);
    WaitForFirstRow(kCompound);
    OpenRowMenu(0);
    m_User.ChooseInMenu({QStringLiteral("Rename ") + kCompound});
    RealUser::WaitForDialog(QStringLiteral("Rename ") + kCompound);
    m_User.Press(QStringLiteral("ctrl+a"));
    m_User.Type(QStringLiteral("Rolling Hills"));
    m_User.Press(QStringLiteral("Return"));
    m_User.TakePicture(QStringLiteral("rename-refused"));
    RealUser::Check(QStringLiteral("a name in use is refused"),
                    [] { return QApplication::activeModalWidget() && !CanConfirm(); });
    m_User.Press(QStringLiteral("ctrl+a"));
    m_User.Type(kCapitals);
    m_User.Press(QStringLiteral("Return"));
    RealUser::WaitForNoDialog();
    WaitForFirstRow(kCapitals);
}

void TestEditorStory::TagCompound()
{
    OpenRowMenu(0);
    m_User.ChooseInMenu({QStringLiteral("Edit Tags for ") + kCapitals});
    RealUser::WaitForDialog(QStringLiteral("Edit Item Tags"));
    m_User.Type(kTag);
    m_User.TakePicture(QStringLiteral("tags"));
    m_User.Press(QStringLiteral("Return"));
    RealUser::WaitForNoDialog();
    Search(kTag);
    RealUser::WaitUntil(QStringLiteral("the compound found by its tag"),
                        [&] { return m_Editor->GetRows() == QStringList(kCapitals); });
}

void TestEditorStory::MoveCompound()
{
    OpenRowMenu(0);
    m_User.ChooseInMenu({QStringLiteral("Compound source"), QStringLiteral("Shared")});
    RealUser::WaitForNoDialog();
}

void TestEditorStory::UndoAll()
{
    // The search field would undo what was typed.
    m_User.Click(RealUser::OnScreen([&] { return m_Editor->GetFreeCanvasPoint(0.5, 0.1); }));
    while (RealUser::OnScreen([&] { return GetStack().canUndo(); }))
        m_User.Press(QStringLiteral("ctrl+z"));
    RealUser::Check(QStringLiteral("nothing is left of it"),
                    [&] { return !HasItem(kCapitals) && !HasItem(kSignature); });
}

void TestEditorStory::RedoAll()
{
    while (RealUser::OnScreen([&] { return GetStack().canRedo(); }))
        m_User.Press(QStringLiteral("ctrl+shift+z"));
    RealUser::Check(QStringLiteral("all of it is back"),
                    [&] { return HasItem(kCapitals) && HasItem(kSignature); });
}

void TestEditorStory::Save()
{
    m_User.Press(QStringLiteral("ctrl+s"));
    RealUser::WaitUntil(QStringLiteral("everything to be saved"),
                        [&] { return !m_Editor->GetHost().IsModified(); });
}

void TestEditorStory::managesItems()
{
    QString const fault = m_User.Play([&] {
        CreateSignature();
        CreateCompound();
        RenameCompound();
        TagCompound();
        MoveCompound();
        UndoAll();
        RedoAll();
        Save();
        m_User.TakePicture(QStringLiteral("managed"));
    });
    QVERIFY2(fault.isEmpty(), qPrintable(fault));

    QStringList const status = GetGitStatus();
    QCOMPARE(status.size(), 2);
    QVERIFY2(status.value(0).startsWith(QLatin1String("?? project/")), qPrintable(status.value(0)));
    QVERIFY2(status.value(1).startsWith(QLatin1String("?? shared/")), qPrintable(status.value(1)));
    QFile file(GetLibraryPath(status.value(1).mid(3)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray const content = file.readAll();
    QVERIFY(content.contains(kCapitals.toUtf8()) && content.contains(kTag.toUtf8()));
}

void TestEditorStory::CreateGraph()
{
    ChooseInMenuBar({QStringLiteral("Create"), QStringLiteral("Public compound")});
    RealUser::WaitForDialog(QStringLiteral("Create compound"));
    m_User.Press(QStringLiteral("ctrl+a"));
    m_User.Type(kGraph);
    m_User.Press(QStringLiteral("Return"));
    RealUser::WaitUntil(QStringLiteral("the new compound on the canvas"),
                        [&] { return m_Editor->GetCompoundName() == kGraph; });
}

void TestEditorStory::DropItem(QString const& name, double across)
{
    std::size_t const before = RealUser::OnScreen([&] { return m_Editor->GetBody().nodes.size(); });
    Search(name);
    WaitForFirstRow(name);
    m_User.Drag(RealUser::OnScreen([&] { return m_Editor->GetRowPoint(0); }),
                RealUser::OnScreen([&] { return m_Editor->GetFreeCanvasPoint(across, 0.3); }));
    RealUser::WaitUntil(QStringLiteral("a node of ") + name,
                        [&] { return m_Editor->GetBody().nodes.size() == before + 1; });
}

void TestEditorStory::ConnectNodes()
{
    struct SWay
    {
        QPoint from;
        QPoint to;
    };
    SWay const way = RealUser::OnScreen([&] {
        GraphBody const body = m_Editor->GetBody();
        CEmbeddedHost const& host = m_Editor->GetHost();
        GraphBody const first = host.GetBody(host.FindItem(body.nodes.at(0).item));
        GraphBody const second = host.GetBody(host.FindItem(body.nodes.at(1).item));
        GraphEnd const from = {body.nodes[0].id, first.outputs.at(0).name};
        GraphEnd const to = {body.nodes[1].id, second.inputs.at(0).name};
        return SWay{m_Editor->GetPortPoint(from, true), m_Editor->GetPortPoint(to, false)};
    });
    m_User.Drag(way.from, way.to);
    RealUser::WaitUntil(QStringLiteral("a connection"),
                        [&] { return m_Editor->GetBody().connections.size() == 1; });
}

void TestEditorStory::keepsAGraph()
{
    GraphBody before;
    QString const fault = m_User.Play([&] {
        CreateGraph();
        DropItem(QStringLiteral("Add"), 0.25);
        DropItem(QStringLiteral("Multiply"), 0.7);
        ConnectNodes();
        Save();
        m_User.TakePicture(QStringLiteral("graph"));
        before = RealUser::OnScreen([&] { return m_Editor->GetBody(); });
        m_User.Press(QStringLiteral("ctrl+q"));
        RealUser::WaitUntil(QStringLiteral("the window to close"),
                            [&] { return !m_Editor->GetWindow().isVisible(); });
    });
    QVERIFY2(fault.isEmpty(), qPrintable(fault));

    Start();
    QVERIFY(QTest::qWaitForWindowActive(&m_Editor->GetWindow()));
    QCOMPARE(m_Editor->GetCompoundName(), kGraph);
    GraphBody const after = m_Editor->GetBody();
    QCOMPARE(after.nodes.size(), before.nodes.size());
    for (std::size_t node = 0; node < before.nodes.size(); ++node) {
        QCOMPARE(after.nodes[node].item, before.nodes[node].item);
        QCOMPARE(after.nodes[node].position, before.nodes[node].position);
    }
    QCOMPARE(after.connections.size(), std::size_t(1));
    QCOMPARE(after.connections[0].from.port, before.connections[0].from.port);
    QVERIFY(!m_Editor->GetHost().IsModified());
    QVERIFY(m_User.Play([&] { m_User.TakePicture(QStringLiteral("graph-again")); }).isEmpty());
}

NODEBROWSER_TEST_MAIN(TestEditorStory)

#include "tst_editorstory.moc"
