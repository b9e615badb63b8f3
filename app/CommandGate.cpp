#include "CommandGate.h"

void CommandGate::setHotKeysEnabled(bool on)
{
    if (m_hotKeysEnabled == on)
        return;
    m_hotKeysEnabled = on;
    Q_EMIT hotKeysEnabledChanged(on);
}

void CommandGate::EnableHotKeys()
{
    if (!m_hotKeysEnabled && !m_trayExitPending)
        setHotKeysEnabled(true);
}

void CommandGate::dialogOpened()
{
    m_wereOn.append(m_hotKeysEnabled);
    setHotKeysEnabled(false);
}

void CommandGate::dialogClosed()
{
    if (m_wereOn.isEmpty())
        return;
    // A box shown from inside a dialog leaves the commands off for the dialog.
    if (m_wereOn.takeLast())
        EnableHotKeys();
    if (m_wereOn.isEmpty())
        Q_EMIT dialogsClosed();
}
