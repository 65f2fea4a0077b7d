#ifndef BENCHMARKS_SUBJECT_H
#define BENCHMARKS_SUBJECT_H

#include <QString>
#include <QWidget>

class QLineEdit;
class QScrollBar;

/// What is measured: a window that lists a library under a search field. Each operation ends
/// with the frame painted that shows its outcome.
class Subject : public QWidget
{
public:
    Subject();

    void ShowFirstFrame();
    void Type(QString const& text);
    /// A notch of the wheel down, three rows for every subject, or back to the top at the end.
    void Scroll();
    /// The left button on one of two rows in turn.
    void Press();
    /// The mouse rests on a row.
    void Hover();
    /// Makes the whole list anew.
    void Rebuild();
    /// An item gets another name, under which it stands elsewhere in the list.
    void Rename();
    /// An item is added, and removed again by RemoveAdded.
    void Add();
    void RemoveAdded();
    /// The tags of some item, another one each time, have changed. Whether a frame follows is
    /// up to the subject.
    void ChangeTags();

protected:
    /// Put before the name of an item that is renamed, and taken off again the next time.
    static char const kMovedPrefix[];
    static char const kAddedName[];

    /// The widget on which rows are painted.
    virtual QWidget& GetCanvas() = 0;
    virtual QScrollBar& GetScrollBar() = 0;
    virtual void StartRebuild() = 0;
    virtual void StartRename() = 0;
    virtual void StartAdd() = 0;
    virtual void StartRemove() = 0;
    virtual void NotifyTags() = 0;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void PaintFrame();

    bool m_IsPainted;
    bool m_IsLowerRow;
};

#endif
