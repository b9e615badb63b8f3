// GameFolder: whether a folder holds Quake III Arena, and the paths the program derives from the game folder
// (which the program settings carry).
#pragma once

#include <QString>
#include <QStringList>

namespace GameFolder {

/// The names of the game programs a folder may hold: the original's, then current engines' builds.
const QStringList &executableNames();
/// The first game program found in `folder` (its full path), or "" when there is none.
QString executableIn(const QString &folder);
/// A folder holds the game when one of the game programs is a file in it; baseq3 plays no part.
bool isValid(const QString &folder);

/// Paths formed by appending to the folder as it stands, so an empty folder gives paths at the root.
QString dataFolder(const QString &folder); // folder/baseq3
QString demoFolder(const QString &folder); // folder/baseq3/demos
QString playerModels(const QString &folder); // folder/baseq3/models/players/

} // namespace GameFolder
