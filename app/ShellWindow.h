// ShellWindow: what the commands need of the main window — a parent for their boxes, the one way dialogs are
// shown, the status bar's menu help, the page area and the window's always-on-top state.
#pragma once

#include "Pages.h"
#include "SettingCatalog.h"

#include <QString>

class QWidget;

class ShellWindow
{
public:
    /// The window itself: the parent of boxes and dialogs.
    virtual QWidget *widget() = 0;
    /// Shows one of the program's windows owned by this one, modal (the result of its dialog) or modeless (0),
    /// with the commands off while a modal one is open.
    virtual int ShowForm(QWidget *form, bool modal) = 0;
    virtual void SelectPage(Page page) = 0;
    /// The status bar's menu help panel.
    virtual void setMenuHelp(const QString &text) = 0;
    /// The help board's text and message type.
    virtual void SetText(const QString &text, MsgType msgType) = 0;
    virtual bool alwaysOnTop() const = 0;
    virtual void setAlwaysOnTop(bool on) = 0;
    /// The game folder as the program settings hold it.
    virtual QString gameFolder() const = 0;

protected:
    ~ShellWindow() = default;
};
