// Prompts: every message box and file dialog of the window goes through here, so the fixed texts live
// in one place and tests answer them without a person (setNextAnswers).
#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

namespace Prompts {

/// A question box titled `title`; returns the button chosen.
QMessageBox::StandardButton ask(QWidget *parent, const QString &title, const QString &text,
    QMessageBox::StandardButtons buttons, QMessageBox::Icon icon);
/// The common error box: critical icon, titled with the operation's name.
void reportError(QWidget *parent, const QString &operation, int number, const QString &description);
/// The box's text for reportError.
QString errorText(int number, const QString &description);
/// A file to open or to save to; empty when cancelled. `filter` is in the "a|b|c|d" form.
QString openFileName(QWidget *parent, const QString &title, const QString &filter, const QString &folder);
QString saveFileName(
    QWidget *parent, const QString &title, const QString &filter, const QString &defaultSuffix, const QString &folder);
/// A folder chosen in the folder picker, starting at `initialFolder` (none when empty); empty when cancelled.
QString folderName(QWidget *parent, const QString &title, const QString &initialFolder);
/// "Configuration Files (*.cfg;*.config)|*.cfg;*.config" as a dialog filter list.
QStringList filterList(const QString &filter);

// Test hook: answers handed out instead of showing boxes and dialogs, first in first out. A button
// answers a box, a string a file dialog or the folder picker ("" = Cancel). Every box and dialog shown is recorded.
struct Answer
{
    Answer(QMessageBox::StandardButton b)
        : button(b)
    { }
    Answer(const QString &p)
        : path(p)
        , isPath(true)
    { }
    Answer(const char *p)
        : path(QString::fromUtf8(p))
        , isPath(true)
    { }
    QMessageBox::StandardButton button = QMessageBox::Cancel;
    QString path;
    bool isPath = false;
};
void setNextAnswers(const QList<Answer> &answers);
bool hasPendingAnswers();
struct Shown
{
    QString title;
    QString text; // a box's text, or a dialog's filter
    bool commandsOff = false; // the commands were off while it showed
    QString folder; // where a file dialog started
};
QList<Shown> takeShown();
/// Runs each time a box or dialog "shows" under the test hook, before it is answered.
void setWhileShown(std::function<void()> hook);

} // namespace Prompts
