// StartUp: the first copy's way from the splash window to a running main window — the program settings (which
// place the window and name the game folder), the file types, the game folder, then the command line.
#pragma once

#include <QString>

class QWidget;
class frmMain;

namespace StartUp {

/// The steps that reach beyond the window, while the splash shows: the settings file (written again when the
/// window closes), the file types of `executable`, and the game folder (asked for over `splash` while it does not
/// hold the game). Returns what went wrong registering the file types ("" when nothing did).
QString prepare(frmMain &window, QWidget *splash, const QString &settingsFile, const QString &executable);
/// Shows the window, closes the splash, greets — "Welcome to Tarnwick." in the help board, or the file-type
/// problem `registration` as a caution — and runs the command line.
void finish(frmMain &window, QWidget *splash, const QString &commandLine, const QString &registration);
/// TARNWICK_QUIT_WHEN_IDLE=1: the program asks for no game folder and ends (status 0) as soon as its window is
/// shown and the event loop idle, so a start can be timed.
bool quitWhenIdle();

} // namespace StartUp
