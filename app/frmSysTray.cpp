#include "frmSysTray.h"

#include "CommandGate.h"
#include "ImageList.h"
#include "PopMenu.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWidget>

#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#endif

namespace {

// Whether icons go to a StatusNotifierItem host, which shows their menu itself, rather than into an XEmbed
// notification area, where the program opens it.
bool desktopShowsTrayMenu()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface() || !bus.interface()->isServiceRegistered(watcher))
        return false;
    QDBusInterface watcherObject(watcher, QStringLiteral("/StatusNotifierWatcher"), watcher, bus);
    return watcherObject.property("IsStatusNotifierHostRegistered").toBool();
#else
    return false;
#endif
}

} // namespace

frmSysTray::frmSysTray(QWidget &mainWindow, CommandGate &gate, QObject *parent)
    : QObject(parent)
    , m_mainWindow(mainWindow)
    , m_gate(gate)
    , m_bar(std::make_unique<QMenuBar>())
    , m_menu(new PopMenu(m_bar.get(), this))
{
    const QString root = QStringLiteral("PopUp1");
    m_menu->addItem({}, root, root);
    m_menu->addItem(root, QStringLiteral("Show &Main"), QStringLiteral("Show1"));
    m_menu->addItem(root, QStringLiteral("Always On &Top"), QStringLiteral("OnTop1"));
    m_menu->addItem(root, QStringLiteral("-"), QStringLiteral("sepPopup1"));
    m_menu->addItem(root, QStringLiteral("&Exit"), QStringLiteral("Exit1"));
    m_menu->setChecked(QStringLiteral("OnTop1"), false);
    m_menu->setCheckPictures(ImageList::drawn(QStringLiteral("CHK1")), ImageList::drawn(QStringLiteral("CHK2")));
    m_popup = m_menu->subMenu(root);
    m_popup->setObjectName(root);
    QAction *show = m_menu->action(QStringLiteral("Show1"));
    m_popup->setDefaultAction(show);
    QFont bold = show->font();
    bold.setBold(true); // the item a double click on the icon runs
    show->setFont(bold);
    connect(m_menu, &PopMenu::click, this, [this](int index) { run(m_menu->keyOf(index)); });
    connect(m_menu, &PopMenu::highlighted, this, &frmSysTray::menuHelp);
    connect(m_menu, &PopMenu::closed, this, [this] { Q_EMIT menuHelp(QString()); });

    m_toolTip = QStringLiteral("Tarnwick v0.91 (BETA)");
    m_iconHandle = m_mainWindow.windowIcon();
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    m_icon = new QSystemTrayIcon(m_iconHandle, this);
    m_icon->setObjectName(QStringLiteral("frmSysTray"));
    m_icon->setToolTip(m_toolTip);
    m_desktopShowsMenu = desktopShowsTrayMenu();
    if (m_desktopShowsMenu)
        m_icon->setContextMenu(m_popup);
    connect(m_icon, &QSystemTrayIcon::activated, this,
        [this](QSystemTrayIcon::ActivationReason reason) { activated(int(reason)); });
    m_icon->show();
}

frmSysTray::~frmSysTray()
{
    delete m_icon; // the icon leaves the notification area first
}

void frmSysTray::setToolTip(const QString &text)
{
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    ++m_iconUpdates;
    if (m_icon)
        m_icon->setToolTip(text);
}

void frmSysTray::setIconHandle(const QIcon &icon)
{
    if (icon.cacheKey() == m_iconHandle.cacheKey())
        return;
    m_iconHandle = icon;
    ++m_iconUpdates;
    if (m_icon)
        m_icon->setIcon(icon);
}

void frmSysTray::activated(int reason)
{
    switch (QSystemTrayIcon::ActivationReason(reason)) {
    case QSystemTrayIcon::DoubleClick:
        run(QStringLiteral("Show1"));
        break;
    case QSystemTrayIcon::Trigger:
        // A notification area reports a double click as such, and a single click is nothing; a
        // StatusNotifierItem host reports its activation, a single click, as a trigger.
        if (m_desktopShowsMenu)
            run(QStringLiteral("Show1"));
        break;
    case QSystemTrayIcon::Context:
        if (m_desktopShowsMenu) {
            QWidget *front = QApplication::activeModalWidget();
            RestoreWindow(front ? front : m_gate.ActiveDialogWindow());
        } else {
            ShowPopup();
        }
        break;
    default:
        break;
    }
}

void frmSysTray::ShowPopup()
{
    // An open box or dialog comes first: it is what the program waits for.
    QWidget *front = QApplication::activeModalWidget();
    RestoreWindow(front ? front : m_gate.ActiveDialogWindow());
    m_popup->popup(QCursor::pos());
}

void frmSysTray::run(const QString &key)
{
    if (key == u"Show1")
        RestoreWindow(&m_mainWindow);
    else if (key == u"OnTop1")
        Q_EMIT onTopToggled();
    else if (key == u"Exit1")
        exitProgram();
}

void frmSysTray::exitProgram()
{
    m_gate.setTrayExitPending(true);
    // Whatever is open is closed as its Cancel would; each of them sees the exit pending and asks nothing.
    while (QWidget *modal = QApplication::activeModalWidget()) {
        modal->close();
        if (QApplication::activeModalWidget() == modal) {
            break; // it will not go (a scan under way): the exit waits for it no more
        }
    }
    // The close sequence runs once the dialogs' own event loops have ended.
    QTimer::singleShot(0, &m_mainWindow, [this] { m_mainWindow.close(); });
}

void frmSysTray::setOnTopChecked(bool on)
{
    m_menu->setChecked(QStringLiteral("OnTop1"), on);
}

void frmSysTray::setGradient(bool gradient)
{
    m_menu->setHighlightStyle(gradient ? PopMenu::Gradient : PopMenu::Flat);
}

void frmSysTray::RestoreWindow(QWidget *window)
{
    if (!window)
        return;
    if (window->isMinimized())
        window->setWindowState((window->windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window->show();
    window->raise();
    window->activateWindow();
}
