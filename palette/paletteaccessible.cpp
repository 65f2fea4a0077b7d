#include "paletteaccessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QHash>
#include <QPointer>
#include <QTextDocumentFragment>

#include <algorithm>

using namespace tarno::datamodel;

namespace nodepalette {

namespace {

/// In a list with more rows, changes are not announced to screen readers one by one.
int const kMaximumToldRows = 200;

/// Exceptions of the host must not pass through the bus: the answer is empty then.
template <class Question>
auto AskSafely(Question const& question) -> decltype(question())
{
    try {
        return question();
    } catch (...) {
        return decltype(question())();
    }
}

/// One row. It names a place in the list rather than an item, as rows of the toolkit's own views.
class CAccessibleRow : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    CAccessibleRow(CNodePalette* palette, int row);

    bool isValid() const override;
    QObject* object() const override;
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int childCount() const override;
    int indexOfChild(QAccessibleInterface const* child) const override;
    QString text(QAccessible::Text text) const override;
    void setText(QAccessible::Text text, QString const& value) override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    QString localizedActionName(QString const& name) const override;
    QString localizedActionDescription(QString const& name) const override;
    void doAction(QString const& name) override;
    QStringList keyBindingsForAction(QString const& name) const override;

    int GetRow() const;

private:
    CNodePalette* GetPalette() const;

    // Not of the palette's own type while it is being destroyed.
    QPointer<QObject> const m_Object;
    int const m_Row;
};

/// The palette: its rows come first, so that their number among the children is that in the list,
/// then its child widgets.
class CAccessiblePalette : public QAccessibleWidget
{
public:
    explicit CAccessiblePalette(CNodePalette* palette);
    ~CAccessiblePalette() override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(QAccessibleInterface const* child) const override;

    void ForgetRows();

private:
    CNodePalette* GetPalette() const;
    int GetRowCount() const;
    QAccessibleInterface* GetRow(int row) const;

    mutable QHash<int, QAccessible::Id> m_Rows;
};

/// Not one of the toolkit's.
QString SelectAction()
{
    return QStringLiteral("Select");
}

CAccessibleRow::CAccessibleRow(CNodePalette* palette, int row)
    : m_Object(palette)
    , m_Row(row)
{}

CNodePalette* CAccessibleRow::GetPalette() const
{
    return qobject_cast<CNodePalette*>(m_Object.data());
}

int CAccessibleRow::GetRow() const
{
    return m_Row;
}

bool CAccessibleRow::isValid() const
{
    CNodePalette* const palette = GetPalette();
    return palette && AskSafely([&] { return m_Row < palette->GetRowCount(); });
}

QObject* CAccessibleRow::object() const
{
    return nullptr;
}

QWindow* CAccessibleRow::window() const
{
    QAccessibleInterface* const list = parent();
    return list ? list->window() : nullptr;
}

QAccessibleInterface* CAccessibleRow::parent() const
{
    return QAccessible::queryAccessibleInterface(GetPalette());
}

QAccessibleInterface* CAccessibleRow::child(int /*index*/) const
{
    return nullptr;
}

QAccessibleInterface* CAccessibleRow::childAt(int /*x*/, int /*y*/) const
{
    return nullptr;
}

int CAccessibleRow::childCount() const
{
    return 0;
}

int CAccessibleRow::indexOfChild(QAccessibleInterface const* /*child*/) const
{
    return -1;
}

QString CAccessibleRow::text(QAccessible::Text text) const
{
    CNodePalette* const palette = GetPalette();
    if (!palette)
        return QString();
    switch (text) {
    case QAccessible::Name:
        return AskSafely([&] { return palette->GetRowName(m_Row); });
    case QAccessible::Description:
        return AskSafely([&] {
            return CNodePalette::tr("%1 of %2; %3")
                .arg(m_Row + 1)
                .arg(palette->GetRowCount())
                .arg(palette->GetRowDescription(m_Row));
        });
    case QAccessible::Help:
        return AskSafely([&] {
            return QTextDocumentFragment::fromHtml(palette->GetRowToolTip(m_Row)).toPlainText();
        });
    default:
        return QString();
    }
}

void CAccessibleRow::setText(QAccessible::Text /*text*/, QString const& /*value*/) {}

QRect CAccessibleRow::rect() const
{
    CNodePalette* const palette = GetPalette();
    if (!palette)
        return QRect();
    QRect const row = AskSafely([&] { return palette->GetRowRect(m_Row); });
    return QRect(palette->mapToGlobal(row.topLeft()), row.size());
}

QAccessible::Role CAccessibleRow::role() const
{
    return QAccessible::ListItem;
}

QAccessible::State CAccessibleRow::state() const
{
    QAccessible::State state;
    CNodePalette* const palette = GetPalette();
    if (!palette) {
        state.invalid = true;
        return state;
    }
    QWidget const* const focus = QApplication::focusWidget();
    bool const hasFocus = focus && (focus == palette || palette->isAncestorOf(focus));
    state.selectable = true;
    state.focusable = true;
    state.selected = AskSafely([&] { return palette->GetSelectedRow() == m_Row; });
    state.focused = state.selected && hasFocus;
    state.invisible = !palette->isVisible();
    QRect const row = AskSafely([&] { return palette->GetRowRect(m_Row); });
    state.offscreen = !palette->GetRowArea().intersects(row);
    return state;
}

void* CAccessibleRow::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList CAccessibleRow::actionNames() const
{
    return {pressAction(), SelectAction(), showMenuAction()};
}

QString CAccessibleRow::localizedActionName(QString const& name) const
{
    if (name == pressAction())
        return CNodePalette::tr("Activate");
    if (name == SelectAction())
        return CNodePalette::tr("Select");
    return QAccessibleActionInterface::localizedActionName(name);
}

QString CAccessibleRow::localizedActionDescription(QString const& name) const
{
    if (name == pressAction())
        return CNodePalette::tr("Takes the item");
    if (name == SelectAction())
        return CNodePalette::tr("Selects the row");
    return QAccessibleActionInterface::localizedActionDescription(name);
}

/// Menus and hosts run event loops, which the screen reader is not to wait for. By then the item
/// may stand in another row.
void CAccessibleRow::doAction(QString const& name)
{
    CNodePalette* const palette = GetPalette();
    if (!palette)
        return;
    void (CNodePalette::*action)(int) = nullptr;
    if (name == SelectAction())
        action = &CNodePalette::SelectRow;
    else if (name == pressAction())
        action = &CNodePalette::ActivateRow;
    else if (name == showMenuAction())
        action = &CNodePalette::ShowRowMenu;
    if (!action)
        return;
    ItemID const id = AskSafely([&] { return palette->GetItemAt(m_Row); });
    QMetaObject::invokeMethod(
        palette, [palette, id, action] { (palette->*action)(palette->FindRowOf(id)); },
        Qt::QueuedConnection);
}

QStringList CAccessibleRow::keyBindingsForAction(QString const& name) const
{
    if (name == pressAction())
        return {QStringLiteral("Return")};
    return name == showMenuAction() ? QStringList{QStringLiteral("Menu")} : QStringList();
}

CAccessiblePalette::CAccessiblePalette(CNodePalette* palette)
    : QAccessibleWidget(palette, QAccessible::List)
{}

CAccessiblePalette::~CAccessiblePalette()
{
    ForgetRows();
}

CNodePalette* CAccessiblePalette::GetPalette() const
{
    return qobject_cast<CNodePalette*>(object());
}

int CAccessiblePalette::GetRowCount() const
{
    CNodePalette* const palette = GetPalette();
    return palette ? AskSafely([&] { return palette->GetRowCount(); }) : 0;
}

int CAccessiblePalette::childCount() const
{
    return GetRowCount() + QAccessibleWidget::childCount();
}

QAccessibleInterface* CAccessiblePalette::child(int index) const
{
    int const rowCount = GetRowCount();
    return index < rowCount ? GetRow(index) : QAccessibleWidget::child(index - rowCount);
}

QAccessibleInterface* CAccessiblePalette::GetRow(int row) const
{
    if (row < 0)
        return nullptr;
    auto const known = m_Rows.constFind(row);
    if (known != m_Rows.constEnd())
        return QAccessible::accessibleInterface(known.value());
    auto* const made = new CAccessibleRow(GetPalette(), row);
    m_Rows.insert(row, QAccessible::registerAccessibleInterface(made));
    return made;
}

QAccessibleInterface* CAccessiblePalette::childAt(int x, int y) const
{
    CNodePalette* const palette = GetPalette();
    if (QAccessibleInterface* const widget = QAccessibleWidget::childAt(x, y))
        return widget;
    if (!palette)
        return nullptr;
    return AskSafely([&]() -> QAccessibleInterface* {
        return GetRow(palette->GetRowAt(palette->mapFromGlobal(QPoint(x, y))));
    });
}

int CAccessiblePalette::indexOfChild(QAccessibleInterface const* child) const
{
    if (auto const* const row = dynamic_cast<CAccessibleRow const*>(child))
        return row->GetRow();
    int const index = QAccessibleWidget::indexOfChild(child);
    return index < 0 ? index : index + GetRowCount();
}

void CAccessiblePalette::ForgetRows()
{
    QHash<int, QAccessible::Id> rows;
    rows.swap(m_Rows);
    for (QAccessible::Id const id : rows)
        QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* MakeAccessible(QString const& /*className*/, QObject* object)
{
    auto* const palette = qobject_cast<CNodePalette*>(object);
    return palette ? new CAccessiblePalette(palette) : nullptr;
}

void TellOfSelectedRow(CNodePalette& palette, QAccessible::Event type)
{
    if (!QAccessible::isActive())
        return;
    int const row = palette.GetSelectedRow();
    if (row < 0)
        return;
    QAccessibleEvent event(&palette, type);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void InstallPaletteAccessible()
{
    // A factory that is installed already is not installed again.
    QAccessible::installFactory(MakeAccessible);
}

void AnnounceSelection(CNodePalette& palette)
{
    TellOfSelectedRow(palette, QAccessible::Selection);
}

void AnnounceFocusedRow(CNodePalette& palette)
{
    TellOfSelectedRow(palette, QAccessible::Focus);
}

void AnnounceRows(CNodePalette& palette)
{
    if (!QAccessible::isActive())
        return;
    auto* const list =
        dynamic_cast<CAccessiblePalette*>(QAccessible::queryAccessibleInterface(&palette));
    if (!list)
        return;
    list->ForgetRows();
    // The bus announces each child itself if children are reported as changed.
    bool const areMany = palette.GetRowCount() > kMaximumToldRows;
    QAccessibleEvent event(&palette,
                           areMany ? QAccessible::VisibleDataChanged : QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

} // namespace nodepalette
