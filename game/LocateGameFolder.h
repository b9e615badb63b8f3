// LocateGameFolder: makes sure the game folder holds the game, asking for it while it does not.
#pragma once

#include <QString>

class QWidget;

/// True when `folder` (the game folder the program settings hold) holds the game on return. A valid folder
/// returns at once; otherwise the folder picker asks, owned by `owner` and opening at the first installation
/// found where the game usually is (GameFolder::firstInstallation), until a folder with the game is chosen
/// (it is stored in `folder`), the picker is cancelled, or the user declines to try again after a folder
/// without the game (the question names `problem`).
bool LocateGameFolder(QWidget *owner, const QString &problem, QString &folder);
