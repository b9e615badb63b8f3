// Commands: the main window's menu, toolbar and keyboard accelerators, all ending in one dispatcher that
// runs a command by the key of its menu item ("New1", "Save1", ...).
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <optional>

class PopMenu;
class QAction;
class QToolBar;
class QWidget;
class frmAbout;
class frmMain;

class Commands : public QObject
{
    Q_OBJECT

public:
    /// A keyboard accelerator: a Windows virtual-key code and the whole modifier mask that must be held.
    struct Accelerator
    {
        QString key;
        int virtualKey;
        int mask; // 1 Shift, 2 Ctrl, 4 Alt
        QString menuKey;
    };
    static const QList<Accelerator> &accelerators();
    /// The menu key a toolbar button runs; empty for a button that runs none.
    static QString menuKeyOfButton(const QString &buttonKey);
    /// The menu key run by a key going down with `mask` held; empty when no accelerator matches.
    static QString menuKeyOfKeystroke(int virtualKey, int mask);

    explicit Commands(frmMain &window);
    ~Commands() override;

    PopMenu &menu() { return *m_menu; }
    QToolBar *toolbar() const { return m_toolbar; }

    /// The dispatcher: runs the command of the item at `itemIndex`.
    void PopMenu1_Click(int itemIndex);
    /// Runs a command by menu key, as the toolbar and the accelerators do.
    void run(const QString &menuKey) { PopMenu1_Click(indexOfKey(menuKey)); }
    int indexOfKey(const QString &key) const;
    /// A toolbar button was clicked: its command runs while commands are accepted.
    void toolbarClick(const QString &buttonKey);

    /// The commands that other parts of the program carry out (the game, the timedemo, the config search,
    /// the options): until one is set, its item does nothing.
    void setHandler(const QString &menuKey, std::function<void()> run);
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

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildMenu();
    void buildToolbar();
    void showContents();
    void togglePreview();
    void updatePreviewCaption();
    void setRestoreEnabled(bool enabled);

    frmMain &m_window;
    PopMenu *m_menu;
    QToolBar *m_toolbar = nullptr;
    QHash<QString, std::function<void()>> m_handlers;
    QPointer<QWidget> m_preview;
    bool m_previewWanted = false;
    frmAbout *m_about = nullptr;
};
