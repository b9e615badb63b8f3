// PopMenu: the window's menu bar as a tree of keyed items. Every item has one identity, its key; a chosen
// item is reported by its index, and the menus paint their own highlight and check marks.
#pragma once

#include <QColor>
#include <QIcon>
#include <QList>
#include <QObject>
#include <QPixmap>
#include <QPointer>
#include <QString>

class QAction;
class QMenu;
class QMenuBar;
class PopMenuStyle;

class PopMenu : public QObject
{
    Q_OBJECT

public:
    /// Highlight styles: the toolkit's flat highlight, or a colour gradient.
    enum HighlightStyle { Flat = 0, Gradient = 2 };

    explicit PopMenu(QMenuBar *bar, QObject *parent = nullptr);
    ~PopMenu() override;

    /// Adds an item under `parentKey` (empty: on the bar) and returns its index. A caption of "-" makes a
    /// separator; the text after a tab is the shortcut shown at the right. An item that gets children
    /// becomes a submenu.
    int addItem(const QString &parentKey, const QString &caption, const QString &key,
        const QString &helpText = QString(), const QIcon &icon = QIcon());

    QString keyOf(int index) const;
    /// The index of a key; -1 for a key the menu does not have.
    int indexOf(const QString &key) const;

    QString caption(const QString &key) const;
    QString helpText(const QString &key) const;
    void setCaption(const QString &key, const QString &caption);
    bool isEnabled(const QString &key) const;
    void setEnabled(const QString &key, bool enabled);
    bool isChecked(const QString &key) const;
    /// Checking an item makes it a check item: it shows the checked or the unchecked picture from then on.
    void setChecked(const QString &key, bool checked);
    QString tag(const QString &key) const;
    void setTag(const QString &key, const QString &tag);

    /// The action behind an item, and the menu of an item that has children (null otherwise).
    QAction *action(const QString &key) const;
    QMenu *subMenu(const QString &key) const;

    HighlightStyle highlightStyle() const { return m_highlightStyle; }
    void setHighlightStyle(HighlightStyle style);
    /// The gradient's colours; invalid colours follow the palette's highlight.
    void setGradientColors(const QColor &start, const QColor &end);
    void setCheckPictures(const QPixmap &checked, const QPixmap &unchecked);

Q_SIGNALS:
    /// An item without children was chosen.
    void click(int index);
    /// An item is highlighted: its help text, empty for a separator or an item without help.
    void highlighted(const QString &helpText);
    /// A menu closed: one of the bar, or a submenu popped up on its own.
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Item
    {
        QString key;
        QString parentKey;
        QString helpText;
        QString tag;
        QAction *action = nullptr;
        QPointer<QMenu> menu;
    };

    const Item *find(const QString &key) const;
    Item *find(const QString &key);
    QMenu *menuFor(Item &parent);
    void watch(QMenu *menu, bool topLevel);
    bool parentMenuOpen(const QMenu *menu) const;
    void repaintMenus();

    QMenuBar *m_bar;
    QList<Item> m_items;
    PopMenuStyle *m_style;
    HighlightStyle m_highlightStyle = Flat;
};
