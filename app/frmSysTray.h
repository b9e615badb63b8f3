// frmSysTray: the program's icon in the desktop's notification area, for as long as the program runs, and its
// menu: Show Main, Always On Top, Exit. Where the desktop has no notification area there is no icon, and
// everything else works as before.
#pragma once

#include <QIcon>
#include <QObject>
#include <QPointer>

#include <memory>

class CommandGate;
class PopMenu;
class QMenu;
class QMenuBar;
class QSystemTrayIcon;
class QWidget;

class frmSysTray : public QObject
{
    Q_OBJECT

public:
    /// Adds the icon (when the desktop has a notification area) with the window's icon and the program's tip.
    frmSysTray(QWidget &mainWindow, CommandGate &gate, QObject *parent = nullptr);
    ~frmSysTray() override;

    /// Whether the icon is in the notification area.
    bool hasIcon() const { return m_icon != nullptr; }

    /// The icon's tip; setting the same text again leaves the icon alone.
    QString ToolTip() const { return m_toolTip; }
    void setToolTip(const QString &text);
    /// The icon's picture; setting the same one again leaves the icon alone.
    QIcon IconHandle() const { return m_iconHandle; }
    void setIconHandle(const QIcon &icon);
    /// How many times the icon's tip or picture changed after it was made.
    int iconUpdates() const { return m_iconUpdates; }

    /// The menu: "PopUp1" with "Show1", "OnTop1", "sepPopup1", "Exit1".
    PopMenu &menu() { return *m_menu; }
    /// Brings the window the tray shows first (an open dialog, else the main window) to the front, then
    /// opens the menu at the mouse pointer.
    void ShowPopup();
    /// Runs a menu item as its click would.
    void run(const QString &key);

    void setOnTopChecked(bool on);
    void setGradient(bool gradient);

    /// Out of minimized state, then in front.
    static void RestoreWindow(QWidget *window);

Q_SIGNALS:
    /// "Always On Top" was chosen.
    void onTopToggled();
    /// The highlighted item's help for the status bar; empty when the menu closes.
    void menuHelp(const QString &text);

private:
    void activated(int reason);
    void exitProgram();

    QWidget &m_mainWindow;
    CommandGate &m_gate;
    std::unique_ptr<QMenuBar> m_bar; // never shown: the menu's root
    PopMenu *m_menu;
    QMenu *m_popup;
    QSystemTrayIcon *m_icon = nullptr;
    bool m_desktopShowsMenu = false; // the desktop opens the menu itself (a StatusNotifierItem host)
    QString m_toolTip;
    QIcon m_iconHandle;
    int m_iconUpdates = 0;
};
