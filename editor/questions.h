#ifndef EDITOR_QUESTIONS_H
#define EDITOR_QUESTIONS_H

#include <QDateTime>
#include <QStringList>

class QWidget;

// The editor's questions, each in a message box over the parent. Closing the box is the answer
// that changes nothing.

enum class eSaveAnswer
{
    kSave,
    kDiscard,
    kCancel
};
/// There are unsaved changes, and the library is about to be closed.
eSaveAnswer AskToSave(QWidget* parent, QString const& library);

/// Whether the compound is to be deleted; `users` are the names of those that use it.
bool AskToDelete(QWidget* parent, QString const& compound, QStringList const& users);

enum class eConflictAnswer
{
    kTakeTheirs,
    kOverwrite,
    kCancel
};
/// The files were changed by other programs, so they were not saved.
eConflictAnswer AskAboutConflicts(QWidget* parent, QStringList const& files);

enum class eRecoverAnswer
{
    kRecover,
    kDiscard,
    kLater
};
/// The editor was not closed as it should be, and these are its unsaved changes.
eRecoverAnswer AskToRecover(QWidget* parent, QDateTime const& written, int objectCount);

#endif
