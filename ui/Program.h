// Program: the state every command consults, one for the whole run — whether commands are accepted,
// the file the splash window is to read, and the dialog the tray brings to the front.
#pragma once

#include <QLoggingCategory>
#include <QPointer>
#include <QString>
#include <QWidget>

/// What the shell does at start-up and when a later copy hands over ("tarnwick.shell.info=true" to see it).
Q_DECLARE_LOGGING_CATEGORY(lcShell)

namespace Program {

/// True while menu, toolbar and accelerator commands are accepted; every prompt and dialog turns it off.
extern bool HotKeysEnabled;
/// Set by the tray's Exit just before the window goes; EnableHotKeys then leaves the commands off.
extern bool TrayExitPending;
/// False during start-up; afterwards the splash window, shown again, reads PendingLoadPath.
extern bool LoadingConfiguration;
/// The configuration file the splash window is to read.
extern QString PendingLoadPath;
/// The window most recently shown by ShowForm, or the main window.
extern QPointer<QWidget> ActiveDialogWindow;

/// Accepts commands again (not once the tray's Exit is under way).
void EnableHotKeys();

/// Turns the commands off while it lives, and back on afterwards when they were on before — a box shown
/// from inside a dialog leaves them off for the dialog.
class HotKeysOff
{
public:
    HotKeysOff()
        : m_wereOn(HotKeysEnabled)
    {
        HotKeysEnabled = false;
    }
    ~HotKeysOff()
    {
        if (m_wereOn)
            EnableHotKeys();
    }
    HotKeysOff(const HotKeysOff &) = delete;
    HotKeysOff &operator=(const HotKeysOff &) = delete;

private:
    bool m_wereOn;
};

} // namespace Program
