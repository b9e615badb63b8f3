// GameFolder: whether a folder holds Quake III Arena, and the paths the program derives from the game folder
// (which the program settings carry).
#pragma once

#include <QString>
#include <QStringList>

namespace GameFolder {

/// The names of the game programs a folder may hold: the original's, then current engines' builds (ioquake3,
/// Quake3e, OpenArena).
const QStringList &executableNames();
/// The first game program found in `folder` (its full path), or "" when there is none.
QString executableIn(const QString &folder);
/// A folder holds the game when one of the game programs is a file in it; baseq3 plays no part.
bool isValid(const QString &folder);

/// Paths formed by appending to the folder as it stands, so an empty folder gives paths at the root.
QString dataFolder(const QString &folder); // folder/baseq3
QString demoFolder(const QString &folder); // folder/baseq3/demos
QString playerModels(const QString &folder); // folder/baseq3/models/players/

/// The folders where an installation is usually found, those that exist, in this order: the folder of each game
/// program on PATH (links resolved), /opt and /usr/local/games and the folders directly in them, ~/ioquake3,
/// ~/Quake3e, "steamapps/common/Quake 3 Arena" under ~/.steam/steam and ~/.local/share/Steam, and
/// "drive_c/Program Files*/Quake III Arena" in Wine's prefix ($WINEPREFIX, else ~/.wine).
QStringList usualPlaces();
/// The first of the usual places that holds the game; "" when none does.
QString firstInstallation();

} // namespace GameFolder
