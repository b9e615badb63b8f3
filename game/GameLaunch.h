// GameLaunch: what the Run commands start (the game program, its arguments, its folder) and the demos a
// timedemo can play. Nothing here draws; the window asks for the game folder and shows the outcome.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace GameLaunch {

/// A program started detached: the arguments go to it as a list, never through a shell.
struct StartRequest
{
    QString program; // "" when the folder holds no game program
    QStringList arguments;
    QString workingFolder;
};

/// What starts the game in `gameFolder` with `parameters` (empty for a plain start), the folder as working
/// folder. On Windows the first game program GameFolder finds; elsewhere the first native one allowed to run
/// comes first, then a Windows build through wine when wine is on PATH, else the first program found, so the
/// platform says why it can't start.
StartRequest gameStartRequest(const QString &gameFolder, const QStringList &parameters);
/// Starts the game detached; false, with the platform's reason in *error, when it could not start.
bool StartGame(const QString &gameFolder, const QStringList &parameters, QString *error = nullptr);

/// One entry of the timedemo list.
struct Demo
{
    QString name; // as the list shows it: "intro" for intro.DM3, "four.dm_68" whole
    QString file; // what the game is told to play: "intro.dm3", "four.dm_68"
};

/// The demos of the game folder, in the order the timedemo dialog lists them.
struct DemoList
{
    QList<Demo> demos;
    QStringList unreadable; // archives skipped because they could not be read, full paths
};

/// The game's home data folder, where current engines keep recorded demos and downloaded archives.
QString homeDataFolder(); // ~/.q3a/baseq3
/// The folders a scan of the game's data reads: its baseq3, then the home data folder when it exists and is
/// not that baseq3. Empty without a baseq3 folder.
QStringList dataFolders(const QString &gameFolder);
/// The PK3 archives directly in `folder` (links to archives count, links to folders don't), full paths, in
/// name order without regard to case.
QStringList archivesIn(const QString &folder);
/// Collects the demos: the files of baseq3/demos, then the entries of baseq3's PK3 archives (links to archives
/// count) in name order without regard to case; files ending in ".dm3" (any case) or ".dm_" and digits. Then
/// the same from the home data folder when it exists and is not the game's baseq3. Each name once (exact
/// comparison, first found kept). Nothing without a baseq3 folder. `betweenArchives` runs after each archive,
/// so a window can repaint during a long scan.
DemoList FillDemoList(const QString &gameFolder, const std::function<void()> &betweenArchives = {});
/// A `betweenArchives` for a window's scan: lets the event loop turn (timers fire, windows repaint; user input
/// waits) at most every `intervalMs`, the first time at once, so a long scan freezes nothing.
std::function<void()> eventLoopTurns(int intervalMs = 20);
/// The parameters of a timedemo of `demo`: "+timedemo", "1", "+demo", the demo's file.
QStringList timedemoParameters(const Demo &demo);

} // namespace GameLaunch
