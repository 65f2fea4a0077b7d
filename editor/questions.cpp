#include "questions.h"

#include "shorttext.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

namespace {

QString Translate(char const* text)
{
    return QCoreApplication::translate("Questions", text);
}

} // namespace

eSaveAnswer AskToSave(QWidget* parent, QString const& library)
{
    QMessageBox box(QMessageBox::Warning, Translate("Unsaved Changes"),
                    Translate("Save the changes in \"%1\"?").arg(library),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Translate("Changes that are discarded cannot be brought back."));
    // Not every style gives each its key.
    box.button(QMessageBox::Save)->setText(Translate("&Save"));
    box.button(QMessageBox::Discard)->setText(Translate("&Discard"));
    box.button(QMessageBox::Cancel)->setText(Translate("&Cancel"));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        return eSaveAnswer::kSave;
    case QMessageBox::Discard:
        return eSaveAnswer::kDiscard;
    default:
        return eSaveAnswer::kCancel;
    }
}

bool AskToDelete(QWidget* parent, QString const& compound, QStringList const& users)
{
    QMessageBox box(QMessageBox::Warning, Translate("Delete Compound"),
                    Translate("Delete \"%1\"?").arg(compound), QMessageBox::Cancel, parent);
    box.setTextFormat(Qt::PlainText);
    QString const use =
        users.isEmpty() ? Translate("It is used nowhere.")
        : users.size() < 4
            ? Translate("It is used in %1, where it will be missing.")
                  .arg(users.join(QStringLiteral(", ")))
            : Translate("It is used in %L1 compounds, where it will be missing.").arg(users.size());
    box.setInformativeText(use + QLatin1Char('\n')
                           + Translate("Its file goes with the next save. It can be undone."));
    if (users.size() >= 4)
        box.setDetailedText(ListSome(users));
    QAbstractButton const* const answer =
        box.addButton(Translate("&Delete"), QMessageBox::DestructiveRole);
    box.button(QMessageBox::Cancel)->setText(Translate("&Cancel"));
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == answer;
}

eConflictAnswer AskAboutConflicts(QWidget* parent, QStringList const& files)
{
    QString const text =
        files.size() == 1
            ? Translate("%1 was not saved: another program has changed or removed it.")
                  .arg(files.front())
            : Translate("%1 files were not saved: other programs have changed or removed them.")
                  .arg(files.size());
    QMessageBox box(QMessageBox::Warning, Translate("Files Changed on Disk"), text,
                    QMessageBox::Cancel, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Translate("Take what is on disk, or overwrite it with what is here? "
                                     "Taking it can be undone. What is not on disk any more goes "
                                     "from the library, too."));
    if (files.size() > 1)
        box.setDetailedText(ListSome(files));
    QPushButton const* const take =
        box.addButton(Translate("&Take from Disk"), QMessageBox::AcceptRole);
    QPushButton const* const overwrite =
        box.addButton(Translate("&Overwrite"), QMessageBox::DestructiveRole);
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    if (box.clickedButton() == take)
        return eConflictAnswer::kTakeTheirs;
    return box.clickedButton() == overwrite ? eConflictAnswer::kOverwrite
                                            : eConflictAnswer::kCancel;
}

eRecoverAnswer AskToRecover(QWidget* parent, QDateTime const& written, int objectCount)
{
    QMessageBox box(QMessageBox::Question, Translate("Recover Changes"),
                    Translate("The editor ended before changes were saved. Recover them?"),
                    QMessageBox::NoButton, parent);
    QString const time = QLocale().toString(written, QLocale::ShortFormat);
    box.setInformativeText(
        (objectCount == 1 ? Translate("One item was changed, last on %1.")
                          : Translate("%1 items were changed, last on %2.").arg(objectCount))
            .arg(time)
        + QLatin1Char(' ') + Translate("Recovered changes are not saved yet, and can be undone."));
    QPushButton* const recover = box.addButton(Translate("&Recover"), QMessageBox::AcceptRole);
    QPushButton const* const discard =
        box.addButton(Translate("&Discard"), QMessageBox::DestructiveRole);
    QPushButton* const later = box.addButton(Translate("Ask &Later"), QMessageBox::RejectRole);
    box.setDefaultButton(recover);
    box.setEscapeButton(later);
    box.exec();
    if (box.clickedButton() == recover)
        return eRecoverAnswer::kRecover;
    return box.clickedButton() == discard ? eRecoverAnswer::kDiscard : eRecoverAnswer::kLater;
}
