// ProgramSettings: Tarnwick's own settings (tarnwick.ini): the game folder, the gradient and
// always-on-top options, and where the main and HUD preview windows stand.
#pragma once

#include <QString>

struct ProgramSettings
{
    QString q3dir;
    int gradient = 1;
    int aot = 0;
    int wx = 0; // twips
    int wy = 0;
    int pv_wx = 3600;
    int pv_wy = 3600;
    int pv_open = 0;
};

namespace IniFile {

/// The value of `key` in `section` of `file` (both matched without regard to case; blanks around keys and values
/// ignored; a value wholly in double quotes loses them; at most 749 characters are returned, as a 750-character
/// buffer would). An empty or missing value gives `defaultValue` lower-cased. `key` is lower-cased first.
QString ReadSetting(const QString &section, const QString &key, const QString &defaultValue, const QString &file);
/// Writes `key` (lower-cased) = `value` into `section`, creating the file and the section when missing, replacing the
/// key's line where it stands otherwise, and keeping every other line (other sections, comments, blank lines) as it
/// was. The file is replaced whole only once the new content is written (QSaveFile). False (with a message in
/// *error) when the file could not be written; the old file is then untouched.
bool WriteSetting(
    const QString &section, const QString &key, const QString &value, const QString &file, QString *error = nullptr);

} // namespace IniFile

/// Reads all eight keys, in the order q3dir, gradient, aot, wx, wy, pv_wx, pv_wy, pv_open. Numbers are read as whole
/// numbers (rounded half to even, e.g. "1.5" -> 2, "2.5" -> 2; blanks around them allowed). When any value after q3dir
/// is not a number, the whole load falls back: gradient 1, aot 0, wx/wy the centred edges, pv_wx 3600, pv_wy 3600,
/// pv_open 0 — while q3dir keeps the value read. *fellBack tells whether that happened.
ProgramSettings pbLoadOptions(const QString &file, int centredLeft, int centredTop, bool *fellBack = nullptr);
/// Writes all keys in the order q3dir, gradient, aot, wx and wy (only when `minimized` is false — otherwise the file
/// keeps the wx/wy it had), pv_wx, pv_wy, pv_open; window positions as the decimal text of the number. Writes the file
/// once (not once per key), keeping unknown keys and other sections. False with *error when it could not be written.
bool pbSaveOptions(const QString &file, const ProgramSettings &settings, bool minimized, QString *error = nullptr);
/// Where tarnwick.ini lives: in `programFolder` when that folder is writable and not an installed copy's (a portable
/// copy), else in the user's configuration folder (QStandardPaths::AppConfigLocation, created when missing).
QString settingsFilePath(const QString &programFolder);
/// The folder of Tarnwick's data files when the program in `programFolder` is an installed copy (the data folder
/// where `cmake --install` puts it beside the program folder: ../share/tarnwick from bin); "" otherwise.
QString installedDataFolder(const QString &programFolder);
/// The program's data file `name` ("Images/hud.img"): beside the program where it is there, else in the installed
/// data folder where that is there, else the path beside the program.
QString programDataFile(const QString &programFolder, const QString &name);
