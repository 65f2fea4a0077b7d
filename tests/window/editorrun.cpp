#include "editorrun.h"

#include "realuser.h"

#include <canvas.h>
#include <graphscene.h>
#include <nodebrowser.h>

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>

#include <stdexcept>

using namespace tarno::datamodel;

namespace {

int const kRowHeight = 24;
/// Left of the scroll bar and right of the icon, in a panel of any width.
int const kRowCentre = 60;
QSize const kWindowSize(1200, 800);

/// Opens the protected rows of the panel to tests.
struct SPanelInside : CNodeBrowser
{
    static std::vector<unsigned long> const& GetRows(CNodeBrowser const& panel)
    {
        return panel.*(&SPanelInside::m_VisibleItems);
    }

    static std::vector<Item> const& GetItems(CNodeBrowser const& panel)
    {
        return panel.*(&SPanelInside::m_Items);
    }

    static int GetHeaderHeight(CNodeBrowser const& panel)
    {
        return panel.*(&SPanelInside::m_HeaderHeight);
    }

    static int GetScrollOffset(CNodeBrowser const& panel)
    {
        return panel.*(&SPanelInside::m_ScrollOffset);
    }
};

QString GetName(CEmbeddedHost& host, ItemID const& id)
{
    return QString::fromLatin1(host.GetLibrary().GetItemName(id, true, nullptr).c_str());
}

} // namespace

EditorRun::EditorRun(QString const& journalFolder)
    : m_Journal(m_Host, journalFolder)
    , m_Window(m_Host)
{
    m_Window.resize(kWindowSize);
    m_Window.UseSettings(m_Settings);
    m_Window.UseJournal(m_Journal);
    m_Window.show();
}

CEmbeddedHost& EditorRun::GetHost()
{
    return m_Host;
}

CMainWindow& EditorRun::GetWindow()
{
    return m_Window;
}

CNodeBrowser& EditorRun::GetPanel()
{
    return *m_Window.findChild<CNodeBrowser*>();
}

CCanvas& EditorRun::GetCanvas()
{
    return *m_Window.findChild<CCanvas*>();
}

QStringList EditorRun::GetRows()
{
    QStringList names;
    auto const& items = SPanelInside::GetItems(GetPanel());
    for (unsigned long const position : SPanelInside::GetRows(GetPanel()))
        names << GetName(m_Host, items.at(position).GetItemID());
    return names;
}

QPoint EditorRun::GetRowPoint(int row)
{
    CNodeBrowser const& panel = GetPanel();
    int const top = SPanelInside::GetHeaderHeight(panel) - SPanelInside::GetScrollOffset(panel);
    return OnScreenPoint(panel, QPoint(kRowCentre, top + row * kRowHeight + kRowHeight / 2));
}

int EditorRun::GetScrollOffset()
{
    return SPanelInside::GetScrollOffset(GetPanel());
}

QRect EditorRun::GetRowArea()
{
    CNodeBrowser const& panel = GetPanel();
    int const top = SPanelInside::GetHeaderHeight(panel);
    return QRect(0, top, panel.width(), panel.height() - top);
}

QPoint EditorRun::GetSearchPoint()
{
    QLineEdit const& field = *GetPanel().findChild<QLineEdit*>();
    return OnScreenPoint(field, field.rect().center());
}

QPoint EditorRun::GetMenuPoint(QString const& menu)
{
    QMenuBar const& bar = *m_Window.menuBar();
    for (QAction* const action : bar.actions()) {
        if (action->text().remove(QLatin1Char('&')) == menu)
            return OnScreenPoint(bar, bar.actionGeometry(action).center());
    }
    throw std::runtime_error("there is no menu " + menu.toStdString());
}

QPoint EditorRun::GetNodePoint(std::string const& id)
{
    auto const& scene = static_cast<CGraphScene const&>(*GetCanvas().scene());
    auto const position = scene.FindNodePosition(id);
    if (!position)
        throw std::runtime_error("there is no node " + id);
    return GetCanvasPoint(*position + QPointF(2 * kGridPitch, kHeaderHeight / 2));
}

QPoint EditorRun::GetPortPoint(GraphEnd const& end, bool isOutput)
{
    auto const& scene = static_cast<CGraphScene const&>(*GetCanvas().scene());
    auto const port = scene.GetPort(end, isOutput);
    if (!port)
        throw std::runtime_error("there is no port " + end.node + '.' + end.port);
    return GetCanvasPoint(port->position);
}

QPoint EditorRun::GetCanvasPoint(QPointF const& scenePoint)
{
    CCanvas const& canvas = GetCanvas();
    return OnScreenPoint(*canvas.viewport(), canvas.mapFromScene(scenePoint));
}

QPoint EditorRun::GetFreeCanvasPoint(double across, double down)
{
    QWidget const& viewport = *GetCanvas().viewport();
    return OnScreenPoint(viewport,
                         QPoint(int(viewport.width() * across), int(viewport.height() * down)));
}

QString EditorRun::GetCompoundName()
{
    CompoundAccessor compound = m_Host.GetCompoundTarget();
    return compound.IsValid() ? GetName(m_Host, compound.GetItemID()) : QString();
}

GraphBody EditorRun::GetBody()
{
    return m_Host.GetBody(m_Host.GetCompoundTarget().GetItemID());
}
