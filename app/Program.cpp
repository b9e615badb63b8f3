#include "Program.h"

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
