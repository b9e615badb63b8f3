// GameCommands: the Run menu's two commands — start the game, and the timedemo dialog.
#pragma once

#include <QObject>

class CommandGate;
class Commands;
class ShellWindow;
class WindowSettings;
class frmTimeDemo;

class GameCommands : public QObject
{
    Q_OBJECT

public:
    /// Registers the commands "Game1" and "TDemo1" with `commands`.
    GameCommands(
        ShellWindow &shell, CommandGate &gate, WindowSettings &settings, Commands &commands, QObject *parent = nullptr);

    /// Asks, then starts the game plainly; the open configuration is neither saved nor handed to it.
    void RunGameCommand();
    /// Looks for the game when the folder lacks it, then shows the timedemo dialog.
    void RunTimedemoCommand();

private:
    ShellWindow &m_shell;
    CommandGate &m_gate;
    WindowSettings &m_settings;
    frmTimeDemo *m_timeDemo = nullptr;
};
