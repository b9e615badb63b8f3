// frmMain: Tarnwick's main window — the page buttons on the left, the page under its title strip,
// the help board below it and the status bar; the owner of the open document.
#pragma once

#include "ConfigDocument.h"
#include "ProgramSettings.h"

#include <QList>
#include <QMainWindow>
#include <QTimer>
#include <array>

class Commands;
class ControlBinder;
class ControlPage;
class DocumentCommands;
class HoverButton;
class LeftBar;
class MemoryPanel;
class MsgBoard;
class Pk3ExplorerPage;
class QLabel;
class QScrollArea;
class TitleStrip;
class frmOptions;
class frmPassword;

class frmMain : public QMainWindow
{
    Q_OBJECT

public:
    static constexpr int PageCount = 8;
    static constexpr int PK3Page = 7;

    explicit frmMain(QWidget *parent = nullptr);
    ~frmMain() override;

    ConfigDocument &document() { return m_document; }
    DocumentCommands &documentCommands() { return *m_documentCommands; }
    Commands &commands() { return *m_commands; }
    /// The caption: the document's name, " - ", and the program title; the title alone for a blank name.
    void SetTitle();
    /// Shows a page (0 Client ... 7 PK3 Explorer); other indices do nothing.
    void SelectPage(int index);
    /// Shows a sub-page of the Control page (0 Move ... 3 Miscellaneous); other indices do nothing.
    void SelectControlSubPage(int index);
    /// Shows or hides the Control page's sub-page buttons, moving the lower page buttons.
    void ShowControls(bool show);
    /// The help board's text and message type.
    void SetText(const QString &text, int msgType);
    /// The status bar's menu help panel.
    void setMenuHelp(const QString &text);
    /// The title strip's colour gradient (flat when off).
    void setGradient(bool on);
    /// The PK3 Explorer page's content.
    Pk3ExplorerPage *pk3Page() const { return m_pk3Page; }
    /// Shows a window of the program owned by this one, modal (the result of its dialog) or modeless (0),
    /// with the commands off while a modal one is open.
    int ShowForm(QWidget *form, bool modal);
    bool alwaysOnTop() const { return m_alwaysOnTop; }
    /// Keeps this window, and every window it shows, above all others.
    void setAlwaysOnTop(bool on);
    /// The band at the top that holds the toolbar.
    QWidget *toolbarBand() const { return m_toolbarBand; }

    /// The start-up steps that reach beyond the window: the program settings (placing the window), the
    /// file types, the game folder (asked for over `splash` when it does not hold the game). The settings
    /// file is written again when the window closes. Returns what went wrong registering the file types
    /// ("" when nothing did).
    QString startUp(QWidget *splash, const QString &settingsFile, const QString &executable);
    /// Opens what a command line names (also one handed over by a later copy) and brings the window to the
    /// front; an empty text only brings it to the front.
    void HandleCommandLine(const QString &text);
    /// Applies program settings: the window's place, the gradient, always-on-top, the preview's state.
    void applySettings(const ProgramSettings &settings);
    /// The program settings in force, as the close request writes them.
    ProgramSettings currentSettings() const;
    /// Where the close request writes the program settings; empty: nowhere.
    void setSettingsFile(const QString &path) { m_settingsFile = path; }
    /// The Options command: the game folder and the gradient.
    void showOptions();

    int currentPage() const { return m_currentPage; }
    QString title() const;
    static QString programTitle() { return QStringLiteral("Tarnwick"); }

Q_SIGNALS:
    /// A page was selected (the HUD preview shows its HUD picture for the HUD Display page).
    void pageSelected(int index);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildLeftBar();
    void buildPages();
    void buildStatusBar();
    void layoutRegions();
    void placeButtons();
    void askClientPassword();

    ConfigDocument m_document;
    ControlBinder *m_binder;
    DocumentCommands *m_documentCommands;
    Commands *m_commands = nullptr;
    QWidget *m_client;
    QWidget *m_toolbarBand;
    LeftBar *m_leftBar;
    TitleStrip *m_titleStrip;
    MsgBoard *m_msgBoard;
    QLabel *m_menuHelp = nullptr;
    MemoryPanel *m_memory = nullptr;
    QTimer m_memoryTimer;
    std::array<HoverButton *, PageCount> m_pageButtons {};
    std::array<HoverButton *, 4> m_subPageButtons {};
    std::array<QScrollArea *, PageCount> m_pages {};
    ControlPage *m_controlPage = nullptr;
    Pk3ExplorerPage *m_pk3Page = nullptr;
    frmPassword *m_password = nullptr;
    QString m_clientPassword;
    bool m_controlsShown = false;
    bool m_sizedToFrame = false;
    bool m_alwaysOnTop = false;
    ProgramSettings m_settings;
    QString m_settingsFile;
    frmOptions *m_options = nullptr;
    int m_currentPage = -1;
};
