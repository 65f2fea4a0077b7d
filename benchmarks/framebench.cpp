// What a frame of the canvas costs: a compound of 500 nodes is opened, moved and zoomed in a view
// of the size of a large window.

#include <canvas.h>
#include <embeddedhost/embeddedhost.h>
#include <theme.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <stdexcept>

namespace {

int const kNodes = 500;
int const kRows = 25;
int const kSolvers = 60;
QSize const kViewSize(1600, 1000);

char const* const kTypes[] = {"Float", "Colour", "Text"};
int const kTypeCount = 3;

QString Uid(int group, int number)
{
    return QStringLiteral("CCCCCCCC-0000-0000-%1-%2")
        .arg(group, 4, 10, QLatin1Char('0'))
        .arg(number, 12, 10, QLatin1Char('0'));
}

QString MakeType(int number)
{
    return QStringLiteral("{\"uid\": \"%1\", \"kind\": \"type\", \"name\": \"%2\"}")
        .arg(Uid(1, number), QString::fromLatin1(kTypes[number]));
}

QString MakePort(char const* name, int type)
{
    return QStringLiteral("{\"name\": \"%1\", \"type\": \"%2\"}")
        .arg(QString::fromLatin1(name), Uid(1, type % kTypeCount));
}

/// Takes and gives two of each solver's type, and mixes in another one.
QString MakeSolver(int number)
{
    return QStringLiteral("{\"uid\": \"%1\", \"kind\": \"solver\", \"name\": \"Blend Layers %2\", "
                          "\"inputs\": [%3, %4, %5], \"outputs\": [%6, %7]}")
        .arg(Uid(2, number))
        .arg(number)
        .arg(MakePort("foreground", 0), MakePort("background", 0), MakePort("amount", number),
             MakePort("result", 0), MakePort("coverage", 0));
}

QString MakeNode(int number)
{
    return QStringLiteral("{\"id\": \"%1\", \"item\": \"%2\", \"position\": [%3, %4]}")
        .arg(number)
        .arg(Uid(2, number % kSolvers))
        .arg(220 * (number / kRows))
        .arg(120 * (number % kRows));
}

QString MakeConnection(int from, char const* output, int to, char const* input)
{
    return QStringLiteral("{\"from\": [\"%1\", \"%2\"], \"to\": [\"%3\", \"%4\"]}")
        .arg(from)
        .arg(QString::fromLatin1(output))
        .arg(to)
        .arg(QString::fromLatin1(input));
}

QString MakeCompound()
{
    QStringList nodes;
    QStringList connections;
    for (int number = 0; number < kNodes; ++number) {
        nodes << MakeNode(number);
        if (number < kRows)
            continue;
        // Most come from near by, as in graphs that people lay out, and some from far away.
        int const far = number % 10 == 0 ? number / 2 : number - kRows + 1 - number % 3;
        connections << MakeConnection(number - kRows, "result", number, "foreground")
                    << MakeConnection(std::max(0, far), "coverage", number, "background");
    }
    return QStringLiteral("{\"uid\": \"%1\", \"kind\": \"compound\", \"name\": \"Large\", "
                          "\"nodes\": [%2], \"connections\": [%3]}")
        .arg(Uid(3, 1), nodes.join(QStringLiteral(", ")), connections.join(QStringLiteral(", ")));
}

void Write(QString const& path, QString const& text)
{
    QFile file(path);
    QByteArray const bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error(path.toStdString() + " cannot be written");
}

void WriteLibrary(QString const& folder)
{
    QDir(folder).mkpath(QStringLiteral("project"));
    Write(folder + QStringLiteral("/library.json"),
          QStringLiteral("{\"format\": 1, \"name\": \"Frames\", \"dataSources\": [{\"uid\": "
                         "\"%1\", \"name\": \"Project\", \"path\": \"project\", \"access\": "
                         "\"read-write\"}]}")
              .arg(Uid(4, 1)));
    QStringList objects{MakeCompound()};
    for (int number = 0; number < kTypeCount; ++number)
        objects << MakeType(number);
    for (int number = 0; number < kSolvers; ++number)
        objects << MakeSolver(number);
    Write(folder + QStringLiteral("/project/objects.json"),
          QLatin1Char('[') + objects.join(QStringLiteral(",\n")) + QLatin1Char(']'));
}

/// A canvas over the library, in a window of its own.
class CSubject
{
public:
    CSubject()
    {
        WriteLibrary(m_Folder.path());
        if (!m_Host.OpenLibrary(m_Folder.path()))
            throw std::runtime_error("the library cannot be opened");
        m_Canvas.resize(kViewSize);
        m_Canvas.show();
        QApplication::processEvents();
    }

    void Open()
    {
        tarno::datamodel::CompoundAccessor compound;
        compound.SetFrom(
            m_Host.GetLibrary().GetModel(m_Host.FindItem(Uid(3, 1).toStdString()), nullptr));
        m_Host.SetCompoundTarget(compound);
    }

    void Close()
    {
        m_Host.SetCompoundTarget(tarno::datamodel::CompoundAccessor());
    }

    /// What the event loop does for a frame, without its waiting for the next one.
    void PaintFrame()
    {
        QApplication::sendPostedEvents();
        QEvent request(QEvent::UpdateRequest);
        QApplication::sendEvent(&m_Canvas, &request);
    }

    void PaintWholeFrame()
    {
        m_Canvas.viewport()->update();
        PaintFrame();
    }

    CCanvas& GetCanvas()
    {
        return m_Canvas;
    }

private:
    QTemporaryDir m_Folder;
    CEmbeddedHost m_Host;
    CCanvas m_Canvas{m_Host};
};

CSubject* gSubject = nullptr;

void Open(benchmark::State& state)
{
    for (auto _ : state) {
        gSubject->Open();
        gSubject->PaintFrame();
        state.PauseTiming();
        gSubject->Close();
        state.ResumeTiming();
    }
}

/// The zoom is given in percent; 0 has the whole graph in view.
void PrepareZoom(int percent)
{
    CCanvas& canvas = gSubject->GetCanvas();
    gSubject->Open();
    canvas.Fit();
    if (percent == 0)
        return;
    canvas.ResetZoom();
    for (double zoom = 100; zoom > percent; zoom /= 1.25)
        canvas.ZoomOut();
}

void Pan(benchmark::State& state)
{
    PrepareZoom(static_cast<int>(state.range(0)));
    QScrollBar* const bar = gSubject->GetCanvas().horizontalScrollBar();
    gSubject->PaintFrame();
    int step = 7;
    for (auto _ : state) {
        bar->setValue(bar->value() + step);
        gSubject->PaintFrame();
        step = -step;
    }
}

void Zoom(benchmark::State& state)
{
    PrepareZoom(static_cast<int>(state.range(0)));
    bool isIn = true;
    for (auto _ : state) {
        if (isIn)
            gSubject->GetCanvas().ZoomIn();
        else
            gSubject->GetCanvas().ZoomOut();
        isIn = !isIn;
        gSubject->PaintFrame();
    }
}

void SelectAllFrame(benchmark::State& state)
{
    PrepareZoom(0);
    gSubject->GetCanvas().SelectAll();
    for (auto _ : state)
        gSubject->PaintWholeFrame();
}

void WholeFrame(benchmark::State& state)
{
    PrepareZoom(static_cast<int>(state.range(0)));
    for (auto _ : state)
        gSubject->PaintWholeFrame();
}

void EachZoom(benchmark::internal::Benchmark* benchmark)
{
    for (int const percent : {100, 65, 50, 40, 32, 0})
        benchmark->Arg(percent);
    benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(Open)->Unit(benchmark::kMillisecond);
BENCHMARK(Pan)->Apply(EachZoom);
BENCHMARK(Zoom)->Apply(EachZoom);
BENCHMARK(WholeFrame)->Apply(EachZoom);
BENCHMARK(SelectAllFrame)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    CTheme const theme;
    CSubject subject;
    gSubject = &subject;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    gSubject = nullptr;
    return 0;
}
