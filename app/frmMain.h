// frmMain: Tarnwick's main window — the page buttons on the left, the page under its title strip,
// the help board below it and the status bar; the owner of the open document and of the objects that
// act on it (commands, the command line, the program settings).
#pragma once

#include "CommandGate.h"
#include "ConfigDocument.h"
#include "ConfigReader.h"
#include "Pages.h"
#include "SettingCatalog.h"
#include "ShellWindow.h"

#include <QMainWindow>
#include <QTimer>
#include <array>
#include <memory>

class AllVariablesPage;
class CommandLineRouter;
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
class WindowSettings;
class frmMdls;
class frmSysTray;
class frmPassword;
class frmPreview;

class frmMain : public QMainWindow, public ShellWindow
{
    Q_OBJECT

public:
    explicit frmMain(QWidget *parent = nullptr);
    ~frmMain() override;

    ConfigDocument &document() { return m_document; }
    CommandGate &gate() { return m_gate; }
    DocumentCommands &documentCommands() { return *m_documentCommands; }
    Commands &commands() { return *m_commands; }
    CommandLineRouter &commandLine() { return *m_commandLine; }
    WindowSettings &settings() { return *m_settings; }
    /// The notification-area icon and its menu; null once the window has closed.
    frmSysTray *tray() const { return m_tray; }
    /// The HUD preview window ("Prev1" shows and hides it).
    frmPreview &preview() { return *m_preview; }

    /// The caption: the document's name, " - ", and the program title; the title alone for a blank name.
    void SetTitle();
    /// Shows a sub-page of the Control page.
    void SelectControlSubPage(ControlSubPage subPage);
    /// Shows or hides the Control page's sub-page buttons, moving the lower page buttons.
    void ShowControls(bool show);
    /// The title strip's colour gradient (flat when off), and the menus' highlight with it.
    void setGradient(bool on);
    /// A page's container, built now if the player has not opened the page yet (hidden until selected).
    QScrollArea *page(Page page);
    /// The PK3 Explorer and All Variables pages, built now if the player has not opened them yet.
    Pk3ExplorerPage *pk3Page();
    AllVariablesPage *variablesPage();
    /// The band at the top that holds the toolbar.
    QWidget *toolbarBand() const { return m_toolbarBand; }
    /// The selected page; none at start.
    std::optional<Page> currentPage() const { return m_currentPage; }
    QString title() const;

    // ShellWindow
    QWidget *widget() override { return this; }
    int ShowForm(QWidget *form, bool modal) override;
    void SelectPage(Page page) override;
    void setMenuHelp(const QString &text) override;
    void SetText(const QString &text, MsgType msgType) override;
    bool alwaysOnTop() const override { return m_alwaysOnTop; }
    /// Keeps this window, and every window it shows, above all others; both menus' check marks follow.
    void setAlwaysOnTop(bool on) override;
    /// Makes `window` stay above others or not, in place: a shown window keeps its place and size.
    static void SetOnTop(QWidget *window, bool on);
    QString gameFolder() const override;

Q_SIGNALS:
    /// A page was selected (the HUD preview shows its HUD picture for the HUD Display page).
    void pageSelected(Page page);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildLeftBar();
    void buildStatusBar();
    void buildPreview();
    void layoutRegions();
    void placeButtons();
    void askClientPassword();
    void chooseModel();
    void refuseClose(QCloseEvent *event);
    void takeKeyboardBackLater();

    CommandGate m_gate;
    ConfigDocument m_document;
    ControlBinder *m_binder;
    DocumentCommands *m_documentCommands;
    Commands *m_commands = nullptr;
    std::unique_ptr<WindowSettings> m_settings;
    CommandLineRouter *m_commandLine = nullptr;
    QWidget *m_client;
    QWidget *m_toolbarBand;
    LeftBar *m_leftBar;
    TitleStrip *m_titleStrip;
    MsgBoard *m_msgBoard;
    QLabel *m_menuHelp = nullptr;
    MemoryPanel *m_memory = nullptr;
    QTimer m_memoryTimer;
    std::array<HoverButton *, PageCount> m_pageButtons {};
    std::array<HoverButton *, ControlSubPageCount> m_subPageButtons {};
    std::array<QScrollArea *, PageCount> m_pages {}; // each built when first shown
    ControlPage *m_controlPage = nullptr;
    Pk3ExplorerPage *m_pk3Page = nullptr;
    AllVariablesPage *m_variablesPage = nullptr;
    std::optional<std::pair<QString, DroppedLines>> m_lastOpened; // for an All Variables page built later
    frmPassword *m_password = nullptr;
    frmMdls *m_models = nullptr;
    frmSysTray *m_tray = nullptr;
    bool m_modelsScanned = false; // the browser scans at its first opening only
    frmPreview *m_preview = nullptr;
    QString m_clientPassword;
    bool m_controlsShown = false;
    bool m_sizedToFrame = false;
    bool m_alwaysOnTop = false;
    std::optional<Page> m_currentPage;
};
