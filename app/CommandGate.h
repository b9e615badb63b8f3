// CommandGate: whether the program takes menu, toolbar and accelerator commands now — off while any box or
// dialog is open, and for good once the tray's Exit is under way — and the window the tray brings forward.
#pragma once

#include "Prompts.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

class CommandGate : public QObject, public Prompts::Gate
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// True while commands are accepted.
    bool HotKeysEnabled() const { return m_hotKeysEnabled; }
    void setHotKeysEnabled(bool on);
    /// Accepts commands again, unless the tray's Exit is under way.
    void EnableHotKeys();

    /// Set by the tray's Exit just before the window goes; a refused close clears it.
    bool TrayExitPending() const { return m_trayExitPending; }
    void setTrayExitPending(bool pending) { m_trayExitPending = pending; }

    /// The window most recently shown by ShowForm, or the main window.
    QWidget *ActiveDialogWindow() const { return m_activeDialogWindow; }
    void setActiveDialogWindow(QWidget *window) { m_activeDialogWindow = window; }

    /// Whether a box or dialog is open now.
    bool dialogOpen() const { return !m_wereOn.isEmpty(); }

    void dialogOpened() override;
    void dialogClosed() override;
    bool commandsEnabled() const override { return m_hotKeysEnabled; }
    bool exitPending() const override { return m_trayExitPending; }

Q_SIGNALS:
    /// The last open box or dialog closed.
    void dialogsClosed();
    /// Commands were turned on or off (the HUD preview is usable exactly while they are on).
    void hotKeysEnabledChanged(bool on);

private:
    bool m_hotKeysEnabled = false;
    bool m_trayExitPending = false;
    QPointer<QWidget> m_activeDialogWindow;
    QList<bool> m_wereOn; // for each open box or dialog, whether commands were on when it opened
};
