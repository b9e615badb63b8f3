#include "PopMenu.h"

#include <QAction>
#include <QLinearGradient>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>

// Paints the menus' items: a colour gradient behind the highlighted item, and pictures instead of the
// toolkit's check marks.
class PopMenuStyle : public QProxyStyle
{
public:
    PopMenu::HighlightStyle highlight = PopMenu::Flat;
    QColor start;
    QColor end;
    QPixmap checked;
    QPixmap unchecked;

    void drawControl(
        ControlElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const override
    {
        const auto *source = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element != CE_MenuItem || !source) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionMenuItem item(*source);
        if (item.checkType != QStyleOptionMenuItem::NotCheckable && !checked.isNull()) {
            item.icon = QIcon(item.checked ? checked : unchecked);
            item.checkType = QStyleOptionMenuItem::NotCheckable;
            item.checked = false;
        }
        const bool selected = item.state.testFlag(State_Selected) && item.state.testFlag(State_Enabled)
            && item.menuItemType != QStyleOptionMenuItem::Separator;
        if (highlight == PopMenu::Gradient && selected) {
            const QColor base = item.palette.color(QPalette::Highlight);
            QLinearGradient gradient(item.rect.topLeft(), item.rect.topRight());
            gradient.setColorAt(0, start.isValid() ? start : base.darker(125));
            gradient.setColorAt(1, end.isValid() ? end : base.lighter(135));
            painter->fillRect(item.rect, gradient);
            // The rest of the item is painted as unselected, in the highlighted text's colour.
            item.state &= ~State_Selected;
            const QColor text = item.palette.color(QPalette::HighlightedText);
            for (QPalette::ColorRole role : { QPalette::Text, QPalette::WindowText, QPalette::ButtonText })
                item.palette.setColor(role, text);
        }
        QProxyStyle::drawControl(element, &item, painter, widget);
    }
};

PopMenu::PopMenu(QMenuBar *bar, QObject *parent)
    : QObject(parent)
    , m_bar(bar)
    , m_style(new PopMenuStyle)
{
    m_style->setParent(this);
}

PopMenu::~PopMenu()
{
    // The menus outlive nothing of ours but must not paint with a style that is gone.
    for (const Item &item : std::as_const(m_items)) {
        if (item.menu)
            item.menu->setStyle(nullptr);
    }
}

int PopMenu::addItem(
    const QString &parentKey, const QString &caption, const QString &key, const QString &helpText, const QIcon &icon)
{
    Item item;
    item.key = key;
    item.parentKey = parentKey;
    item.helpText = helpText;
    if (parentKey.isEmpty()) {
        item.menu = m_bar->addMenu(caption);
        item.action = item.menu->menuAction();
        watch(item.menu, true);
    } else {
        Item *parent = find(parentKey);
        Q_ASSERT(parent);
        QMenu *menu = menuFor(*parent);
        item.action = caption == u"-" ? menu->addSeparator() : menu->addAction(caption);
    }
    if (!icon.isNull())
        item.action->setIcon(icon);
    const int index = int(m_items.size());
    if (!parentKey.isEmpty() && !item.action->isSeparator())
        connect(item.action, &QAction::triggered, this, [this, index] { Q_EMIT click(index); });
    m_items.append(item);
    return index;
}

QMenu *PopMenu::menuFor(Item &parent)
{
    if (!parent.menu) {
        parent.menu = new QMenu(m_bar);
        parent.action->setMenu(parent.menu.data());
        watch(parent.menu, false);
    }
    return parent.menu;
}

void PopMenu::watch(QMenu *menu, bool topLevel)
{
    menu->setStyle(m_style);
    menu->installEventFilter(this);
    connect(menu, &QMenu::hovered, this, [this](QAction *action) {
        for (const Item &item : std::as_const(m_items)) {
            if (item.action == action) {
                Q_EMIT highlighted(action->isSeparator() ? QString() : item.helpText);
                return;
            }
        }
    });
    // A submenu closing while the menu it hangs from stays open is no end of the menu; one that was popped up
    // on its own (a toolbar's drop-down) is.
    connect(menu, &QMenu::aboutToHide, this, [this, menu, topLevel] {
        if (topLevel || !parentMenuOpen(menu))
            Q_EMIT closed();
    });
}

bool PopMenu::parentMenuOpen(const QMenu *menu) const
{
    for (const Item &item : m_items) {
        if (item.menu == menu) {
            const Item *parent = find(item.parentKey);
            return parent && parent->menu && parent->menu->isVisible();
        }
    }
    return false;
}

bool PopMenu::eventFilter(QObject *watched, QEvent *event)
{
    // The pointer over a separator, or over nothing, empties the help.
    if (event->type() == QEvent::MouseMove) {
        auto *menu = static_cast<QMenu *>(watched);
        const QAction *action = menu->actionAt(static_cast<QMouseEvent *>(event)->position().toPoint());
        if (!action || action->isSeparator())
            Q_EMIT highlighted(QString());
    }
    return QObject::eventFilter(watched, event);
}

const PopMenu::Item *PopMenu::find(const QString &key) const
{
    for (const Item &item : m_items) {
        if (item.key == key)
            return &item;
    }
    return nullptr;
}

PopMenu::Item *PopMenu::find(const QString &key)
{
    return const_cast<Item *>(std::as_const(*this).find(key));
}

QString PopMenu::keyOf(int index) const
{
    return index >= 0 && index < m_items.size() ? m_items[index].key : QString();
}

int PopMenu::indexOf(const QString &key) const
{
    const Item *item = find(key);
    return item ? int(item - m_items.constData()) : -1;
}

QString PopMenu::caption(const QString &key) const
{
    const Item *item = find(key);
    return item ? item->action->text() : QString();
}

QString PopMenu::helpText(const QString &key) const
{
    const Item *item = find(key);
    return item ? item->helpText : QString();
}

void PopMenu::setCaption(const QString &key, const QString &caption)
{
    if (Item *item = find(key))
        item->action->setText(caption);
}

bool PopMenu::isEnabled(const QString &key) const
{
    const Item *item = find(key);
    return item && item->action->isEnabled();
}

void PopMenu::setEnabled(const QString &key, bool enabled)
{
    if (Item *item = find(key))
        item->action->setEnabled(enabled);
}

bool PopMenu::isChecked(const QString &key) const
{
    const Item *item = find(key);
    return item && item->action->isChecked();
}

void PopMenu::setChecked(const QString &key, bool checked)
{
    Item *item = find(key);
    if (!item)
        return;
    item->action->setCheckable(true);
    item->action->setChecked(checked);
}

QString PopMenu::tag(const QString &key) const
{
    const Item *item = find(key);
    return item ? item->tag : QString();
}

void PopMenu::setTag(const QString &key, const QString &tag)
{
    if (Item *item = find(key))
        item->tag = tag;
}

QAction *PopMenu::action(const QString &key) const
{
    const Item *item = find(key);
    return item ? item->action : nullptr;
}

QMenu *PopMenu::subMenu(const QString &key) const
{
    const Item *item = find(key);
    return item ? item->menu.data() : nullptr;
}

void PopMenu::setHighlightStyle(HighlightStyle style)
{
    m_highlightStyle = style;
    m_style->highlight = style;
    repaintMenus();
}

void PopMenu::setGradientColors(const QColor &start, const QColor &end)
{
    m_style->start = start;
    m_style->end = end;
    repaintMenus();
}

void PopMenu::setCheckPictures(const QPixmap &checked, const QPixmap &unchecked)
{
    m_style->checked = checked;
    m_style->unchecked = unchecked;
    repaintMenus();
}

void PopMenu::repaintMenus()
{
    for (const Item &item : std::as_const(m_items)) {
        if (item.menu)
            item.menu->update();
    }
}
