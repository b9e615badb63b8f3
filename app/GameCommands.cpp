#include "GameCommands.h"

#include "CommandGate.h"
#include "Commands.h"
#include "GameFolder.h"
#include "GameLaunch.h"
#include "Prompts.h"
#include "ShellWindow.h"
#include "WindowSettings.h"
#include "frmTimeDemo.h"

#include <QFileInfo>

GameCommands::GameCommands(
    ShellWindow &shell, CommandGate &gate, WindowSettings &settings, Commands &commands, QObject *parent)
    : QObject(parent)
    , m_shell(shell)
    , m_gate(gate)
    , m_settings(settings)
{
    commands.setHandler(QStringLiteral("Game1"), [this] { RunGameCommand(); });
    commands.setHandler(QStringLiteral("TDemo1"), [this] { RunTimedemoCommand(); });
}

void GameCommands::RunGameCommand()
{
    QWidget *window = m_shell.widget();
    if (!m_settings.locateGameFolder(window, QStringLiteral("can not locate Quake3.exe")))
        return;
    m_gate.setHotKeysEnabled(false);
    if (Prompts::ask(window, Prompts::programTitle(), QStringLiteral("Do you want to run Quake III Arena now?"),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::Question)
        != QMessageBox::Yes) {
        m_gate.EnableHotKeys();
        return;
    }
    if (!GameLaunch::StartGame(m_settings.gameFolder(), {})) {
        Prompts::ask(window, Prompts::programTitle(), QStringLiteral("Cannot start Quake3.exe"), QMessageBox::Ok,
            QMessageBox::Critical);
        m_gate.EnableHotKeys();
    }
}

void GameCommands::RunTimedemoCommand()
{
    QWidget *window = m_shell.widget();
    if (!m_timeDemo) {
        m_timeDemo = new frmTimeDemo(m_settings.gameFolderSetting(), window);
        // Through the window's own close request, so a modified configuration is still offered for saving.
        connect(m_timeDemo, &frmTimeDemo::exitRequested, this, [this, window] {
            if (window->close())
                m_timeDemo->reject();
        });
    }
    m_gate.setActiveDialogWindow(m_timeDemo);
    // Whatever the answer, the dialog opens: without the game its list stays empty.
    const QString folder = m_settings.gameFolder();
    if (!GameFolder::isValid(folder)) {
        const bool noData = !QFileInfo(GameFolder::dataFolder(folder)).isDir();
        m_settings.locateGameFolder(window,
            noData ? QStringLiteral("cannot locate Quake3.exe and Baseq3 dir")
                   : QStringLiteral("can not locate Quake3.exe"));
    }
    m_timeDemo->load();
    m_shell.ShowForm(m_timeDemo, true);
    m_gate.EnableHotKeys();
}
