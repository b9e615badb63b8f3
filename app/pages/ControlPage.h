// ControlPage: the Control page — four sub-pages of actions, each with its key button, and the
// always-run, sensitivity and weapon-switch settings beside them.
#pragma once

#include "ActionBindings.h"

#include <QWidget>
#include <array>

class ConfigDocument;
class ControlBinder;
class Keys;
class QGridLayout;
class QLabel;
class QStackedLayout;

class ControlPage : public QWidget
{
    Q_OBJECT

public:
    ControlPage(ConfigDocument &doc, ControlBinder &binder, QWidget *parent = nullptr);

    static constexpr int SubPageCount = 4;
    /// Move, Shoot, Look, Miscellaneous: picMove, picShoot, picLook, picMisc.
    QWidget *subPage(int index) const;
    void showSubPage(int index);
    int currentSubPage() const;
    Keys *keyButton(int action) const { return m_keys.at(action); }

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *buildSubPage(const char *name, const char *page, const char *labels, QWidget *settings);
    void alignKeyColumns();
    void showBindings();
    void defineKey(int action, KeySlot slot);

    ConfigDocument &m_doc;
    QStackedLayout *m_stack;
    QList<QGridLayout *> m_grids;
    QList<QLabel *> m_captions;
    std::array<Keys *, ActionTable::Count> m_keys {};
};
