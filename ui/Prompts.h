// Prompts: every message box and file dialog of the window goes through here, so the fixed texts live
// in one place and tests answer them without a person (setNextAnswers). While one shows, the program's
// commands are off: the application installs a Gate that hears of every box and dialog opening and closing.
#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QFileDialog;
class QWidget;

namespace Prompts {

/// The title of the program's own questions and messages.
inline QString programTitle()
{
    return QStringLiteral("Tarnwick");
}

/// What the program does while a box or dialog shows. Every opening is followed by one closing, innermost first.
class Gate
{
public:
    virtual ~Gate() = default;
    /// A box or dialog opens: the commands go off.
    virtual void dialogOpened() = 0;
    /// It closed: the commands come back when they were on before it opened.
    virtual void dialogClosed() = 0;
    /// Whether menu, toolbar and accelerator commands are accepted now.
    virtual bool commandsEnabled() const = 0;
    /// The program is on its way out: a folder or file chosen now counts as cancelled.
    virtual bool exitPending() const = 0;
};
/// Installs the gate (null: none; boxes then change nothing).
void setGate(Gate *gate);
/// Whether the program is on its way out (false without a gate).
bool exitPending();

/// Turns the commands off while it lives, for a box or dialog shown some other way (a modal window, a long
/// read under the splash window). Nested ones leave the commands off until the outermost ends.
class CommandsOff
{
public:
    CommandsOff();
    ~CommandsOff();
    CommandsOff(const CommandsOff &) = delete;
    CommandsOff &operator=(const CommandsOff &) = delete;
};

/// A question box titled `title`; returns the button chosen.
QMessageBox::StandardButton ask(QWidget *parent, const QString &title, const QString &text,
    QMessageBox::StandardButtons buttons, QMessageBox::Icon icon);
/// The common error box: critical icon, titled with the operation's name.
void reportError(QWidget *parent, const QString &operation, int number, const QString &description);
/// The box's text for reportError.
QString errorText(int number, const QString &description);

/// A file to open or to save to; empty when cancelled. `filter` is in the "a|b|c|d" form; a name typed
/// without an extension gets `defaultSuffix`.
QString openFileName(
    QWidget *parent, const QString &title, const QString &filter, const QString &defaultSuffix, const QString &folder);
QString saveFileName(
    QWidget *parent, const QString &title, const QString &filter, const QString &defaultSuffix, const QString &folder);
/// The file dialog as openFileName (`save` false) and saveFileName show it, at a size that shows its columns.
std::unique_ptr<QFileDialog> fileDialog(QWidget *parent, bool save, const QString &title, const QString &filter,
    const QString &defaultSuffix, const QString &folder);

/// A file to open whose name `fits`: asks with openFileName while `path` is empty; after a name that does not
/// fit, the "Incorrect file extension" question (`notThisKind`, a line break, "Do you want to choose another
/// file?") offers the dialog again. Empty when cancelled or declined.
QString fileOfKind(QWidget *parent, QString path, const std::function<bool(const QString &)> &fits,
    const QString &notThisKind, const QString &filter, const QString &defaultSuffix, const QString &folder);

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
