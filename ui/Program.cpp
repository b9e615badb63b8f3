#include "Program.h"

Q_LOGGING_CATEGORY(lcShell, "tarnwick.shell", QtWarningMsg)

namespace Program {

bool HotKeysEnabled = false;
bool TrayExitPending = false;
bool LoadingConfiguration = false;
QString PendingLoadPath;
QPointer<QWidget> ActiveDialogWindow;

void EnableHotKeys()
{
    if (!HotKeysEnabled && !TrayExitPending)
        HotKeysEnabled = true;
}

} // namespace Program
