// Commands: the main window's menu, toolbar and keyboard accelerators, all ending in one dispatcher that
// runs a command by the key of its menu item ("New1", "Save1", ...). One table holds every command: its
// menu item, shortcut, help text, icon, toolbar button and what it does.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <optional>

class CommandGate;
class DocumentCommands;
class PopMenu;
class QMenuBar;
class QToolBar;
class QUrl;
class QWidget;
class ShellWindow;
class frmAbout;

class Commands : public QObject
{
    Q_OBJECT

public:
    Commands(ShellWindow &shell, QMenuBar *bar, QWidget *toolbarBand, DocumentCommands &documents, CommandGate &gate,
        QObject *parent = nullptr);
    ~Commands() override;

    PopMenu &menu() { return *m_menu; }
    QToolBar *toolbar() const { return m_toolbar; }

    /// The dispatcher: runs the command of the item at `itemIndex`.
    void PopMenu1_Click(int itemIndex);
    /// Runs a command by menu key, as the toolbar and the accelerators do.
    void run(const QString &menuKey);
    /// A toolbar button was clicked: its command runs while commands are accepted.
    void toolbarClick(const QString &buttonKey);
    /// The menu key of a toolbar button; empty for a button that runs none.
    static QString menuKeyOfButton(const QString &buttonKey);
    /// The menu key of the accelerator a key (its virtual-key code) going down with exactly `modifiers` held
    /// runs (Shift, Ctrl and Alt count; keypad and others do not); empty when none.
    static QString menuKeyOfKeystroke(int virtualKey, Qt::KeyboardModifiers modifiers);

    /// The commands that other parts of the program carry out (the game, the timedemo, the config search,
    /// the options): until one is set, its item does nothing.
    void setHandler(const QString &menuKey, std::function<void()> run);
    /// Opens a web address with the desktop (a test may answer instead); a failure is said in a box.
    void setUrlOpener(std::function<bool(const QUrl &)> open);

    /// The HUD preview window that "Prev1" shows and hides.
    void setPreviewWindow(QWidget *preview);
    /// Opens or closes the preview as the settings say (the caption follows even before the window exists).
    void setPreviewOpen(bool open);
    struct PreviewState
    {
        bool open;
        int left; // pixels
        int top;
    };
    /// Whether the preview shows and where; nothing while there is no preview window.
    std::optional<PreviewState> previewState() const;
    /// The gradient option: the menus' highlight is a gradient when it is on and the screen has colours.
    void setGradient(bool on);

    /// Every command: its menu item, accelerator, toolbar button and what it does, in menu order.
    struct Row;
    static const QList<Row> &table();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildMenu();
    void buildToolbar();
    void openAddress(const QString &address);
    void showAbout();
    void showContents();
    void toggleAlwaysOnTop();
    void togglePreview();
    void updatePreviewCaption();
    void setRestoreEnabled(bool enabled);

    ShellWindow &m_shell;
    DocumentCommands &m_documents;
    CommandGate &m_gate;
    PopMenu *m_menu;
    QToolBar *m_toolbar = nullptr;
    QHash<QString, std::function<void()>> m_handlers;
    std::function<bool(const QUrl &)> m_openUrl;
    QPointer<QWidget> m_preview;
    bool m_previewWanted = false;
    frmAbout *m_about = nullptr;
};
