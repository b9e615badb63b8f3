// WindowSettings: the program settings in force — the game folder among them — and how they map onto the
// window: its place, the title strip's gradient, always-on-top and the HUD preview, and back again when the
// window closes and the settings file is written.
#pragma once

#include "ProgramSettings.h"

#include <QPoint>
#include <QString>

class Commands;
class QWidget;
class frmMain;
class frmOptions;

class WindowSettings
{
public:
    WindowSettings(frmMain &window, Commands &commands);

    /// Reads the settings file (a window without a place of its own is centred on the screen) and applies it;
    /// the close request writes the same file.
    void load(const QString &file);
    /// Writes the settings in force to the file load() read; true when there is none. A minimized window keeps
    /// the place the file had.
    bool save(bool minimized, QString *error) const;
    void apply(const ProgramSettings &settings);
    /// The settings in force, as the close request writes them.
    ProgramSettings current() const;

    /// The game folder: "" until the settings or the user name one.
    QString gameFolder() const { return m_settings.q3dir; }
    void setGameFolder(const QString &folder) { m_settings.q3dir = folder; }
    /// The game folder itself, for a window that looks for the game on its own (LocateGameFolder stores the
    /// folder chosen there).
    QString &gameFolderSetting() { return m_settings.q3dir; }
    /// Makes sure the game folder holds the game, asking over `owner` while it does not (see LocateGameFolder).
    bool locateGameFolder(QWidget *owner, const QString &problem);
    bool gradient() const { return m_settings.gradient == 1; }
    void setGradient(bool on);

    /// The Options command: the game folder and the gradient.
    void showOptions();

private:
    frmMain &m_window;
    Commands &m_commands;
    ProgramSettings m_settings;
    QString m_file;
    QPoint m_previewPlaced; // where the settings put the preview, in pixels
    frmOptions *m_options = nullptr;
};
