#include "nodepalette_p.h"

#include "palettetext.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDataStream>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

using namespace nodepalette;
using namespace tarno::datamodel;

/// What a key is for, where the palette has a use for it.
enum class CNodePalette::eKeyUse
{
    eNone,
    eNavigate,
    eConfirm,
    /// Enter and Escape while an input method is composing: the text is taken or dropped, and
    /// nothing else happens.
    eCommit,
    eDiscard,
    eEscape,
    eRename,
    eMenu,
    eCopy,
    eTip
};

namespace {

bool IsEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool IsNavigation(int key)
{
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return false;
    }
}

/// A key that writes or deletes text, as opposed to a shortcut.
bool IsTyping(QKeyEvent const& event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    return event.key() == Qt::Key_Backspace
           || (!event.text().isEmpty() && event.text().at(0).isPrint());
}

} // namespace

CNodePalette::eKeyUse CNodePalette::FindKeyUse(QKeyEvent const& event) const
{
    int const key = event.key();
    Qt::KeyboardModifiers const modifiers = event.modifiers() & ~Qt::KeypadModifier;
    bool const isPlain = modifiers == Qt::NoModifier;
    if (m_Private->isComposing && key == Qt::Key_Escape)
        return eKeyUse::eDiscard;
    if (m_Private->isComposing)
        return IsEnter(key) ? eKeyUse::eCommit : eKeyUse::eNone;
    if (isPlain && IsNavigation(key))
        return m_VisibleItems.empty() ? eKeyUse::eNone : eKeyUse::eNavigate;
    if (isPlain && IsEnter(key))
        return eKeyUse::eConfirm;
    if (isPlain && key == Qt::Key_Escape)
        return eKeyUse::eEscape;
    // The rest is about the selected row.
    if (!HasSelection())
        return eKeyUse::eNone;
    if (isPlain && key == Qt::Key_F2)
        return eKeyUse::eRename;
    if ((isPlain && key == Qt::Key_Menu) || (modifiers == Qt::ShiftModifier && key == Qt::Key_F10))
        return HasRowMenus() ? eKeyUse::eMenu : eKeyUse::eNone;
    if (modifiers == Qt::AltModifier && IsEnter(key))
        return eKeyUse::eTip;
    if (event.matches(QKeySequence::Copy) && !m_SearchEdit->hasSelectedText())
        return eKeyUse::eCopy;
    return eKeyUse::eNone;
}

/// Undo and redo are about the library, unless there is typing of this visit to take back.
bool CNodePalette::IsUndoOfHost(QKeyEvent const& event) const
{
    return !m_Private->isTyped
           && (event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo));
}

/// False leaves the key to others.
bool CNodePalette::UseKey(QKeyEvent& event)
{
    EnsureRows();
    switch (FindKeyUse(event)) {
    case eKeyUse::eNone:
        return false;
    case eKeyUse::eNavigate:
        Navigate(event.key());
        break;
    case eKeyUse::eConfirm:
        // Others may listen to the field, too.
        Q_EMIT m_SearchEdit->returnPressed();
        break;
    case eKeyUse::eCommit:
        QGuiApplication::inputMethod()->commit();
        break;
    case eKeyUse::eDiscard:
        QGuiApplication::inputMethod()->reset();
        break;
    case eKeyUse::eEscape:
        Escape();
        break;
    case eKeyUse::eRename:
        RenameSelection();
        break;
    case eKeyUse::eMenu:
        ShowRowMenu(static_cast<int>(m_SelectedIndex));
        break;
    case eKeyUse::eCopy:
        CopySelection();
        break;
    case eKeyUse::eTip:
        ShowSelectionTip();
        break;
    }
    // Nothing of the palette is touched here: it may be gone.
    event.accept();
    return true;
}

bool CNodePalette::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_SearchEdit)
        return CNodeBrowser::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::InputMethod:
        m_Private->isComposing = !static_cast<QInputMethodEvent*>(event)->preeditString().isEmpty();
        return false;
    case QEvent::FocusOut:
        // Ends composing.
        m_Private->isComposing = false;
        m_Private->isTyped = false;
        return false;
    case QEvent::ShortcutOverride:
        // The field would claim these keys.
        if (IsUndoOfHost(*static_cast<QKeyEvent*>(event))) {
            event->ignore();
            return true;
        }
        // Ahead of the host's shortcuts for the same key.
        if (FindKeyUse(*static_cast<QKeyEvent*>(event)) == eKeyUse::eNone)
            return false;
        event->accept();
        return true;
    case QEvent::KeyPress:
        // Filtered and ignored, the key goes on to the palette and to the host.
        if (IsUndoOfHost(*static_cast<QKeyEvent*>(event))) {
            event->ignore();
            return true;
        }
        return UseKey(*static_cast<QKeyEvent*>(event));
    case QEvent::ContextMenu:
        // Where the system sends this for the Menu key, it sends the key as well.
        return static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard
               && HasSelection() && HasRowMenus();
    case QEvent::Resize:
        PlaceCount();
        return false;
    case QEvent::PaletteChange:
        ColourCount();
        return false;
    default:
        return false;
    }
}

void CNodePalette::keyPressEvent(QKeyEvent* event)
{
    if (UseKey(*event))
        return;
    if (!m_Private->isComposing && IsTyping(*event))
        TypeIntoSearch(*event);
    else
        CNodeBrowser::keyPressEvent(event);
}

/// Whether the palette would use the key, or hand it to the search field.
bool CNodePalette::TakesKey(QKeyEvent const& event) const
{
    return FindKeyUse(event) != eKeyUse::eNone || IsTyping(event);
}

void CNodePalette::TypeIntoSearch(QKeyEvent& event)
{
    m_SearchEdit->setFocus(Qt::OtherFocusReason);
    // Not through the application: a key that the field does not take would come back here.
    m_SearchEdit->event(&event);
}

/// Without a selection, the keys begin at the first visible row.
void CNodePalette::Navigate(int key)
{
    int const last = static_cast<int>(m_VisibleItems.size()) - 1;
    int const page = std::max(1, RowsInSight() - 1);
    int const firstInSight = (m_ScrollOffset + kRowHeight - 1) / kRowHeight;
    int row = HasSelection() ? static_cast<int>(m_SelectedIndex) : -1;
    if (key == Qt::Key_Home)
        row = 0;
    else if (key == Qt::Key_End)
        row = last;
    else if (row < 0)
        row = firstInSight;
    else if (key == Qt::Key_Up)
        row -= 1;
    else if (key == Qt::Key_Down)
        row += 1;
    else if (key == Qt::Key_PageUp)
        row -= page;
    else if (key == Qt::Key_PageDown)
        row += page;
    QToolTip::hideText();
    ChangeSelection(static_cast<unsigned long>(std::max(0, std::min(row, last))));
}

void CNodePalette::RenameSelection()
{
    ItemID const id = PlaceOfRow(m_SelectedIndex).id;
    CompoundAccessor compound;
    compound.SetFrom(m_ItemLibrary.GetModel(id, nullptr));
    CompoundModifierAccessor modifier;
    modifier.SetFrom(compound);
    // As the entry of the menu is available.
    if (id.GetType() == TarnoType::gCompound && modifier.CanModifyCompound(true)) {
        OnRenameItem();
        return;
    }
    QRect const row = GetRowRect(static_cast<int>(m_SelectedIndex));
    QToolTip::showText(mapToGlobal(row.bottomLeft()),
                       id.GetType() == TarnoType::gCompound ? tr("This compound cannot be changed")
                                                            : tr("Only compounds can be renamed"),
                       this);
}

/// In the format of the panel's drag.
void CNodePalette::CopySelection()
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream << FromHost(PlaceOfRow(m_SelectedIndex).id.Serialize());
    auto* const data = new QMimeData;
    data->setData(QStringLiteral("tarno/toc.key"), payload);
    QGuiApplication::clipboard()->setMimeData(data);
}

void CNodePalette::ShowSelectionTip()
{
    ShowRow(m_SelectedIndex);
    QRect const row = GetRowRect(static_cast<int>(m_SelectedIndex));
    ShowTip(mapToGlobal(QPoint(row.left() + kRowHeight, row.bottom())),
            static_cast<int>(m_SelectedIndex));
}

void CNodePalette::Escape()
{
    QToolTip::hideText();
    if (!m_SearchEdit->text().isEmpty()) {
        m_SearchEdit->clear();
        return;
    }
    GiveFocusBack();
    Q_EMIT Dismissed();
}

void CNodePalette::GiveFocusBack()
{
    QWidget* const before = m_Private->focusBefore;
    if (before && before->isVisible() && before->isEnabled())
        before->setFocus(Qt::OtherFocusReason);
    else if (QWidget* const focus = QApplication::focusWidget())
        focus->clearFocus();
}

void CNodePalette::RememberFocus(QWidget* before, QWidget* now)
{
    auto const isWithin = [this](QWidget* widget) {
        return widget == this || isAncestorOf(widget);
    };
    if (before && now && isWithin(now) && !isWithin(before))
        m_Private->focusBefore = before;
}
