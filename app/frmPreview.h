// frmPreview: the HUD preview — a small tool window showing a mock-up of the game screen with the HUD elements
// the document's HUD settings switch on. The mock-up is put together from pieces of a sprite sheet,
// "Images/hud.img" beside the program; off the HUD Display page, or without the sheet, it reads "No Preview".
#pragma once

#include <QPixmap>
#include <QWidget>

class ConfigDocument;
class QLabel;

class frmPreview : public QWidget
{
    Q_OBJECT

public:
    /// Follows every change of `doc`'s HUD settings; the sprite sheet is loaded from sheetPath() when the window first
    /// shows, unless LoadHudImage has taken one before.
    explicit frmPreview(const ConfigDocument &doc, QWidget *parent = nullptr);

    /// Where the sprite sheet is looked for: "Images/hud.img" in the program's folder, else in an installed copy's
    /// data folder.
    static QString sheetPath();

    /// Takes the sprite sheet from `path` (any picture format Qt reads, whatever the name says), lays out the
    /// pieces that never change and redraws the rest. A missing or unreadable file, or a picture too small to
    /// hold every piece, leaves no sheet: the window then reads "No Preview" on every page, and says nothing.
    void LoadHudImage(const QString &path);
    bool HudImageLoaded() const { return !m_sheet.isNull(); }
    /// Redraws the mock-up from the HUD check boxes of the document.
    void PreviewHud();
    /// The mock-up (when a sheet is loaded) or the plain "No Preview": the HUD page asks for the mock-up.
    void showHudPicture(bool hud);

    /// Puts the window at `topLeft` when that lies on a screen, else beside `mainWindow` (a frame geometry).
    void placeAt(QPoint topLeft, const QRect &mainWindow);

Q_SIGNALS:
    /// The window's own close box hid it.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    /// Clears `target` and copies that rectangle of the sprite sheet to its top-left corner.
    void BlitPiece(QLabel *target, int x, int y, int width, int height);

    const ConfigDocument &m_doc;
    QPixmap m_sheet; // null while no sprite sheet is loaded
    bool m_sheetRead = false; // whether a sheet has been looked for
    bool m_hudWanted = false;
    QLabel *m_hud; // the scene, holding the pieces below
    QLabel *m_status;
    QLabel *m_ammoWarning;
    QLabel *m_counters;
    QLabel *m_crosshair;
    QLabel *m_lagometer;
    QLabel *m_message;
    QLabel *m_plain; // "No Preview"
};
