#include "ControlPage.h"

#include "ConfigDocument.h"
#include "ControlBinder.h"
#include "Keys.h"
#include "ShellWindow.h"
#include "TwinLabel.h"
#include "frmKey.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace {

constexpr int rowHeight = 21;
constexpr int rowGap = 4; // 60 twips between one action's label and the next

QWidget *settingsColumn(ControlBinder &binder, std::initializer_list<const char *> controls)
{
    auto *column = new QWidget;
    auto *layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    for (const char *name : controls) {
        const QString control = QString::fromLatin1(name);
        if (control.startsWith(u"sld"))
            layout->addWidget(binder.label(control));
        layout->addWidget(binder.control(control));
    }
    layout->addStretch(1);
    return column;
}

} // namespace

ControlPage::ControlPage(ConfigDocument &doc, ControlBinder &binder, ShellWindow &shell, QWidget *parent)
    : QWidget(parent)
    , m_doc(doc)
    , m_shell(shell)
    , m_stack(new QStackedLayout(this))
{
    m_stack->setContentsMargins(0, 0, 0, 0);
    m_stack->addWidget(buildSubPage("picMove", "Move", "lblMove", settingsColumn(binder, { "chkRun", "sldMsSen" })));
    m_stack->addWidget(buildSubPage("picShoot", "Shoot", "lblShoot", settingsColumn(binder, { "chkWSwitch" })));
    m_stack->addWidget(buildSubPage("picLook", "Look", "lblLook", nullptr));
    m_stack->addWidget(buildSubPage("picMisc", "Misc", "lblMisc", nullptr));
    alignKeyColumns();
    connect(&m_doc, &ConfigDocument::bindingsChanged, this, &ControlPage::showBindings);
    showBindings();
}

QWidget *ControlPage::buildSubPage(const char *name, const char *page, const char *labels, QWidget *settings)
{
    auto *sub = new QWidget;
    sub->setObjectName(QString::fromLatin1(name));
    auto *grid = new QGridLayout(sub);
    m_grids.append(grid);
    grid->setContentsMargins(8, 4, 8, 4);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(rowGap);
    auto *heading = new QLabel(QStringLiteral("Function Key\\Button"));
    heading->setObjectName(QString::fromLatin1(labels) + QStringLiteral("Heading"));
    grid->addWidget(heading, 0, 1, Qt::AlignHCenter);
    int row = 1;
    for (int action = 0; action < ActionTable::Count; ++action) {
        if (qstrcmp(ActionTable::actions()[action].page, page) != 0)
            continue;
        auto *label = new QLabel(ActionTable::caption(action));
        label->setObjectName(QString::fromLatin1(labels) + u'_' + QString::number(row - 1));
        label->setFixedHeight(rowHeight);
        m_captions.append(label);
        grid->addWidget(label, row, 0);

        auto *keys = new Keys;
        keys->setObjectName(QStringLiteral("btnKeys_%1").arg(action));
        keys->Clear();
        keys->setBind(ActionTable::quotedCommand(action));
        keys->setForeColor(palette().color(QPalette::Highlight));
        keys->setFixedHeight(rowHeight);
        connect(keys, &Keys::Click, this, [this, action] { defineKey(action, KeySlot::First); });
        connect(keys, &Keys::Click2, this, [this, action] { defineKey(action, KeySlot::Second); });
        connect(keys, &Keys::MouseUp, this, [this, action](Qt::MouseButton button) {
            if (button == Qt::RightButton)
                m_doc.DeleteKey(action, KeySlot::First);
        });
        connect(keys, &Keys::MouseUp2, this, [this, action](Qt::MouseButton button) {
            if (button == Qt::RightButton)
                m_doc.DeleteKey(action, KeySlot::Second);
        });
        m_keys[action] = keys;
        grid->addWidget(keys, row, 1);
        ++row;
    }
    grid->setRowStretch(row, 1);
    grid->setColumnStretch(3, 1);
    if (settings)
        grid->addWidget(settings, 1, 2, row - 1, 1);
    return sub;
}

QWidget *ControlPage::subPage(ControlSubPage subPage) const
{
    return m_stack->widget(int(subPage));
}

void ControlPage::showSubPage(ControlSubPage subPage)
{
    m_stack->setCurrentIndex(int(subPage));
}

ControlSubPage ControlPage::currentSubPage() const
{
    return ControlSubPage(m_stack->currentIndex());
}

void ControlPage::alignKeyColumns()
{
    // The key buttons stand in one column on every sub-page: each page's captions take the width of the
    // widest caption of all four.
    int widest = 0;
    for (const QLabel *caption : std::as_const(m_captions))
        widest = std::max(widest, caption->sizeHint().width());
    for (QGridLayout *grid : std::as_const(m_grids))
        grid->setColumnMinimumWidth(0, widest);
}

void ControlPage::showBindings()
{
    for (int action = 0; action < ActionTable::Count; ++action) {
        const ActionBinding &b = m_doc.bindings().at(action);
        m_keys[action]->setCaption(b.firstKey);
        m_keys[action]->setCaption2(b.secondKey);
    }
}

void ControlPage::changeEvent(QEvent *event)
{
    // The first key of every action stands out in the desktop's highlight colour, whatever it now is.
    if (event->type() == QEvent::PaletteChange) {
        for (Keys *keys : m_keys)
            keys->setForeColor(palette().color(QPalette::Highlight));
    } else if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        alignKeyColumns(); // the captions' widths follow the font
    }
    QWidget::changeEvent(event);
}

void ControlPage::defineKey(int action, KeySlot slot)
{
    const KeyCaptureResult result = CaptureKey(window(), [this](QDialog *capture) { m_shell.ShowForm(capture, true); });
    if (!result.cancelled && !result.keyName.isEmpty())
        m_doc.DefineKey(action, slot, result.keyName);
}
