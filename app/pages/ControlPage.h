// ControlPage: the Control page — four sub-pages of actions, each with its key button, and the
// always-run, sensitivity and weapon-switch settings beside them.
#pragma once

#include "ActionBindings.h"
#include "Pages.h"

#include <QWidget>
#include <array>

class ConfigDocument;
class ControlBinder;
class Keys;
class QGridLayout;
class QLabel;
class QStackedLayout;
class ShellWindow;

class ControlPage : public QWidget
{
    Q_OBJECT

public:
    /// Key captures show through `shell`, as every dialog of the program does.
    ControlPage(ConfigDocument &doc, ControlBinder &binder, ShellWindow &shell, QWidget *parent = nullptr);

    /// Move, Shoot, Look, Miscellaneous: picMove, picShoot, picLook, picMisc.
    QWidget *subPage(ControlSubPage subPage) const;
    void showSubPage(ControlSubPage subPage);
    ControlSubPage currentSubPage() const;
    Keys *keyButton(int action) const { return m_keys.at(action); }

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *buildSubPage(const char *name, const char *page, const char *labels, QWidget *settings);
    void alignKeyColumns();
    void showBindings();
    void defineKey(int action, KeySlot slot);

    ConfigDocument &m_doc;
    ShellWindow &m_shell;
    QStackedLayout *m_stack;
    QList<QGridLayout *> m_grids;
    QList<QLabel *> m_captions;
    std::array<Keys *, ActionTable::Count> m_keys {};
};
