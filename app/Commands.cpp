#include "Commands.h"

#include "DocumentCommands.h"
#include "ImageList.h"
#include "PopMenu.h"
#include "Program.h"
#include "Prompts.h"
#include "VirtualKeys.h"
#include "frmAbout.h"
#include "frmMain.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <QWindow>

namespace {

struct MenuRow
{
    const char *parent;
    const char *caption;
    const char *key;
    const char *help;
    const char *icon;
};

// The menu from left to right and top to bottom; a caption of "-" is a separator.
const MenuRow menuRows[] = {
    { "", "&File", "File1TOP", "", "" },
    { "File1TOP", "&New\tCtrl+N", "New1", "Create a New Configuration File", "NEW" },
    { "File1TOP", "&Open\tCtrl+O", "Open1", "Open an Existing File", "OPEN" },
    { "File1TOP", "&Save\tCtrl+S", "Save1", "Save Current Configuration", "SAVE" },
    { "File1TOP", "Save &As\tCtrl+Alt+S", "SaveAs1", "Save Current Configuration As...", "" },
    { "File1TOP", "-", "sepFile1", "", "" },
    { "File1TOP", "&Export...", "Export1TOP", "", "EXPORT" },
    { "Export1TOP", "Controls", "Ctrl1", "Exoprt Control Settings", "" },
    { "Export1TOP", "Renderer", "Gfx1", "Exoprt Renderer Settings", "" },
    { "Export1TOP", "HUD Display", "Hud1", "Exoprt HUD Display Settings", "" },
    { "Export1TOP", "Railgun", "RGun1", "Exoprt Railgun Settings", "" },
    { "File1TOP", "&Import...", "Import1TOP", "", "IMPORT" },
    { "Import1TOP", "Controls", "Ctrl2", "Import Control Settings", "" },
    { "Import1TOP", "Renderer", "Gfx2", "Import Renderer Settings", "" },
    { "Import1TOP", "HUD Display", "Hud2", "Import HUD Display Settings", "" },
    { "Import1TOP", "Railgun", "RGun2", "Import Railgun Settings", "" },
    { "File1TOP", "-", "sepFile2", "", "" },
    { "File1TOP", "&Preview File", "PrevFile1", "Preview Configuration File (Not in this version)", "" },
    { "File1TOP", "-", "sepFile4", "", "" },
    { "File1TOP", "&Restore Defaults", "Def1", "Restore default file settings", "DEFAULTS" },
    { "File1TOP", "-", "sepFile5", "", "" },
    { "File1TOP", "E&xit\tAlt+Q", "Exit1", "Exit Tarnwick", "" },
    { "", "&Tools", "Tools1TOP", "", "" },
    { "Tools1TOP", "Server Wizard", "Wiz1", "I'm working on it...", "WIZ" },
    { "Tools1TOP", "-", "sepTools0", "", "" },
    { "Tools1TOP", "Run...", "Run1TOP", "", "" },
    { "Run1TOP", "&Quake 3 Arena\tShift+F5", "Game1", "Run Quake 3 Arena", "RUNQ3" },
    { "Run1TOP", "&Timedemo\tShift+F6", "TDemo1", "Run Timedemo", "TDEMO" },
    { "Tools1TOP", "-", "sepTools1", "", "" },
    { "Tools1TOP", "Show &Preview", "Prev1", "", "" },
    { "Tools1TOP", "-", "sepTools2", "", "" },
    { "Tools1TOP", "&Q3Config Search\tF3", "Search1", "", "SEARCH" },
    { "Tools1TOP", "&Options...\tF4", "Options1", "", "OPTIONS" },
    { "Tools1TOP", "-", "sepTools3", "", "" },
    { "Tools1TOP", "Always On &Top", "OnTop1", "Toggle 'Always On Top' attribute", "" },
    { "", "&Help", "Help1TOP", "", "" },
    { "Help1TOP", "Contents", "Contents1", "", "HELP" },
    { "Help1TOP", "-", "sepHelp1", "", "" },
    { "Help1TOP", "On The &Web", "Websites1", "", "WEB" },
    { "Websites1", "Tarnwick", "Site1WEB", "Tarnwick Homepage", "HOME" },
    { "Websites1", "-", "sepWebs1", "", "" },
    { "Websites1", "id Software", "Site2WEB", "id Software Homepage", "LINK" },
    { "Websites1", "Official Q3A Website", "Site3WEB", "Official Quake 3 Arena Website", "LINK" },
    { "Websites1", "Q3A Center", "Site4WEB", "Quake 3 Center", "LINK" },
    { "Websites1", "Quake 3 Mods", "Site5WEB", "Quake 3 Modifications Site", "LINK" },
    { "Websites1", "Quake 3 World", "Site6WEB", "Quake 3 World Homepage", "LINK" },
    { "Websites1", "PlanetQuake Homepage", "Site7WEB", "PlanetQuake Homepage. Mods, Models, Maps and more...", "LINK" },
    { "Websites1", "-", "sepWebs2", "", "" },
    { "Websites1", "Send Your E-Mail", "Email1WEB", "Send your comments/suggestions and/or bugs reports", "EMAIL" },
    { "Help1TOP", "-", "sepHelp2", "", "" },
    { "Help1TOP", "&About...", "About1", "About Tarnwick", "ABOUT" },
};

// Where the web items lead: the game's and its engines' living pages.
const std::pair<const char *, const char *> webAddresses[] = {
    { "Site1WEB", "https://github.com/tarnwick/tarnwick" },
    { "Site2WEB", "https://www.idsoftware.com/" },
    { "Site3WEB", "https://store.steampowered.com/app/2200/Quake_III_Arena/" },
    { "Site4WEB", "https://ioquake3.org/" },
    { "Site5WEB", "https://www.moddb.com/games/quake-iii-arena/mods" },
    { "Site6WEB", "https://www.quake3world.com/forum/" },
    { "Site7WEB", "https://lvlworld.com/" },
    { "Email1WEB", "mailto:feedback@tarnwick.invalid?subject=Tarnwick" },
};

struct ButtonRow
{
    const char *key;
    const char *toolTip;
    const char *icon;
    const char *menuKey;
};

// The toolbar from left to right; a button without a key is a separator.
const ButtonRow buttonRows[] = {
    { "NEW1", "Create a New Config File (Ctrl+N)", "NEW", "New1" },
    { "OPEN1", "Open an Existing Config File (Ctrl+O)", "OPEN", "Open1" },
    { "SAVE1", "Save Current Config File (Ctrl+S)", "SAVE", "Save1" },
    { "SEP1", "", "", "" },
    { "DEFAULTS1", "Restore Default File Settings", "DEFAULTS", "Def1" },
    { "SEP2", "", "", "" },
    { "WIZ1", "Server Wizard", "WIZ", "Wiz1" },
    { "OPTIONS1", "Options (F4)", "OPTIONS", "Options1" },
    { "SEARCH1", "CFG Search (F3)", "SEARCH", "Search1" },
    { "SEP3", "", "", "" },
    { "ONWEB1", "On the Web", "WEB", "" },
    { "ABOUT1", "About Tarnwick", "ABOUT", "About1" },
};

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

} // namespace

const QList<Commands::Accelerator> &Commands::accelerators()
{
    static const QList<Accelerator> list {
        { QStringLiteral("NEW1"), 78, 2, QStringLiteral("New1") },
        { QStringLiteral("OPEN1"), 79, 2, QStringLiteral("Open1") },
        { QStringLiteral("SAVE1"), 83, 2, QStringLiteral("Save1") },
        { QStringLiteral("SAVEAS1"), 83, 2 | 4, QStringLiteral("SaveAs1") },
        { QStringLiteral("EXIT1"), 81, 4, QStringLiteral("Exit1") },
        { QStringLiteral("GAME1"), 116, 1, QStringLiteral("Game1") },
        { QStringLiteral("TIEMDEMO1"), 117, 1, QStringLiteral("TDemo1") },
        { QStringLiteral("SEARCH1"), 114, 0, QStringLiteral("Search1") },
        { QStringLiteral("OPTIONS1"), 115, 0, QStringLiteral("Options1") },
    };
    return list;
}

QString Commands::menuKeyOfButton(const QString &buttonKey)
{
    for (const ButtonRow &row : buttonRows) {
        if (buttonKey == latin(row.key))
            return latin(row.menuKey);
    }
    return QString();
}

QString Commands::menuKeyOfKeystroke(int virtualKey, int mask)
{
    for (const Accelerator &a : accelerators()) {
        if (a.virtualKey == virtualKey && a.mask == mask)
            return a.menuKey;
    }
    return QString();
}

Commands::Commands(frmMain &window)
    : QObject(&window)
    , m_window(window)
    , m_menu(new PopMenu(window.menuBar(), this))
{
    buildMenu();
    buildToolbar();
    ConfigDocument &doc = window.document();
    setRestoreEnabled(doc.canRestore());
    connect(&doc, &ConfigDocument::canRestoreChanged, this, &Commands::setRestoreEnabled);
    qApp->installEventFilter(this);
}

Commands::~Commands()
{
    qApp->removeEventFilter(this);
}

void Commands::buildMenu()
{
    for (const MenuRow &row : menuRows) {
        const QString icon = latin(row.icon);
        m_menu->addItem(latin(row.parent), latin(row.caption), latin(row.key), latin(row.help),
            icon.isEmpty() ? QIcon() : ImageList::icon(icon));
    }
    for (const auto &[key, address] : webAddresses)
        m_menu->setTag(latin(key), latin(address));
    m_menu->setEnabled(QStringLiteral("PrevFile1"), false);
    m_menu->setEnabled(QStringLiteral("Wiz1"), false);
    m_menu->setChecked(QStringLiteral("OnTop1"), false);
    m_menu->setCheckPictures(ImageList::drawn(QStringLiteral("CHK1")), ImageList::drawn(QStringLiteral("CHK2")));
    setGradient(true);

    connect(m_menu, &PopMenu::click, this, [this](int index) {
        if (m_menu->keyOf(index) == u"Contents1")
            showContents();
        else
            PopMenu1_Click(index);
    });
    connect(m_menu, &PopMenu::highlighted, &m_window, &frmMain::setMenuHelp);
    connect(m_menu, &PopMenu::closed, &m_window, [this] { m_window.setMenuHelp(QString()); });
}

void Commands::buildToolbar()
{
    m_toolbar = new QToolBar(m_window.toolbarBand());
    m_toolbar->setObjectName(QStringLiteral("cToolbar1"));
    m_toolbar->setIconSize(QSize(16, 16));
    m_toolbar->setMovable(false);
    m_toolbar->setFloatable(false);
    for (const ButtonRow &row : buttonRows) {
        const QString key = latin(row.key);
        QAction *action = key.startsWith(u"SEP") ? m_toolbar->addSeparator() : nullptr;
        if (key == u"ONWEB1") {
            auto *web = new QToolButton(m_toolbar);
            web->setPopupMode(QToolButton::InstantPopup);
            web->setMenu(m_menu->subMenu(QStringLiteral("Websites1")));
            web->setIcon(ImageList::icon(latin(row.icon)));
            web->setToolTip(latin(row.toolTip));
            web->setObjectName(key);
            action = m_toolbar->addWidget(web);
        } else if (!action) {
            action = m_toolbar->addAction(ImageList::icon(latin(row.icon)), latin(row.toolTip));
            connect(action, &QAction::triggered, this, [this, key] { toolbarClick(key); });
        }
        action->setObjectName(key);
    }
    m_toolbar->findChild<QAction *>(QStringLiteral("WIZ1"))->setVisible(false);
}

void Commands::setRestoreEnabled(bool enabled)
{
    m_menu->setEnabled(QStringLiteral("Def1"), enabled);
    m_toolbar->findChild<QAction *>(QStringLiteral("DEFAULTS1"))->setEnabled(enabled);
}

void Commands::setGradient(bool on)
{
    const QScreen *screen = m_window.screen();
    const bool colours = !screen || screen->depth() >= 9;
    m_menu->setHighlightStyle(on && colours ? PopMenu::Gradient : PopMenu::Flat);
}

int Commands::indexOfKey(const QString &key) const
{
    return m_menu->indexOf(key);
}

void Commands::toolbarClick(const QString &buttonKey)
{
    if (!Program::HotKeysEnabled)
        return;
    const QString menuKey = menuKeyOfButton(buttonKey);
    if (!menuKey.isEmpty())
        run(menuKey);
}

void Commands::setHandler(const QString &menuKey, std::function<void()> run)
{
    m_handlers.insert(menuKey, std::move(run));
}

void Commands::PopMenu1_Click(int itemIndex)
{
    const QString key = m_menu->keyOf(itemIndex);
    if (key.isEmpty())
        return;
    if (key.endsWith(u"WEB")) {
        QDesktopServices::openUrl(QUrl(m_menu->tag(key)));
        return;
    }
    // A disabled item is not a command, whichever way its key arrives.
    if (!m_menu->isEnabled(key))
        return;
    DocumentCommands &doc = m_window.documentCommands();
    static const QStringList exportKeys { "Ctrl1", "Gfx1", "Hud1", "RGun1" };
    static const QStringList importKeys { "Ctrl2", "Gfx2", "Hud2", "RGun2" };
    if (const qsizetype kind = exportKeys.indexOf(key); kind >= 0) {
        doc.ExportFile(QString(), int(kind));
    } else if (const qsizetype kind = importKeys.indexOf(key); kind >= 0) {
        doc.ImportFile(QString(), int(kind));
    } else if (key == u"New1") {
        doc.newCommand();
    } else if (key == u"Open1") {
        doc.openCommand();
    } else if (key == u"Save1") {
        doc.saveCommand();
    } else if (key == u"SaveAs1") {
        doc.saveAsCommand();
    } else if (key == u"Def1") {
        doc.restoreDefaultsCommand();
    } else if (key == u"Exit1") {
        m_window.close();
    } else if (key == u"Prev1") {
        togglePreview();
    } else if (key == u"OnTop1") {
        m_window.setAlwaysOnTop(!m_window.alwaysOnTop());
        m_menu->setChecked(key, m_window.alwaysOnTop());
    } else if (key == u"About1") {
        if (!m_about) {
            m_about = new frmAbout(&m_window);
            connect(m_about, &frmAbout::linkActivated, this, [](const QUrl &url) { QDesktopServices::openUrl(url); });
        }
        m_window.ShowForm(m_about, true);
    } else if (const auto handler = m_handlers.constFind(key); handler != m_handlers.cend()) {
        // The game, the timedemo, the search and the options run with the commands off.
        const Program::HotKeysOff off;
        (*handler)();
    }
}

void Commands::showContents()
{
    Prompts::ask(&m_window, frmMain::programTitle(), QStringLiteral("Sorry, help contents are not available yet."),
        QMessageBox::Ok, QMessageBox::Information);
}

void Commands::setPreviewWindow(QWidget *preview)
{
    m_preview = preview;
    updatePreviewCaption();
}

void Commands::setPreviewOpen(bool open)
{
    m_previewWanted = open;
    if (m_preview)
        m_preview->setVisible(open);
    updatePreviewCaption();
}

std::optional<Commands::PreviewState> Commands::previewState() const
{
    if (!m_preview)
        return std::nullopt;
    return PreviewState { m_preview->isVisible(), m_preview->x(), m_preview->y() };
}

void Commands::togglePreview()
{
    if (!m_preview)
        return;
    m_preview->setVisible(!m_preview->isVisible());
    updatePreviewCaption();
}

void Commands::updatePreviewCaption()
{
    const bool open = m_preview ? m_preview->isVisible() : m_previewWanted;
    m_menu->setCaption(
        QStringLiteral("Prev1"), open ? QStringLiteral("Hide &Preview") : QStringLiteral("Show &Preview"));
}

bool Commands::eventFilter(QObject *watched, QEvent *event)
{
    // Every key reaches a window before its widgets: looking at it there sees each keystroke once. The key
    // goes on to the focused control afterwards.
    if (event->type() != QEvent::KeyPress || !watched->isWindowType())
        return false;
    const auto *key = static_cast<const QKeyEvent *>(event);
    if (key->isAutoRepeat())
        return false;
    int mask = 0;
    if (key->modifiers().testFlag(Qt::ShiftModifier))
        mask |= 1;
    if (key->modifiers().testFlag(Qt::ControlModifier))
        mask |= 2;
    if (key->modifiers().testFlag(Qt::AltModifier))
        mask |= 4;
    const QString menuKey
        = menuKeyOfKeystroke(VirtualKeys::fromQtKey(key->key(), key->modifiers(), key->nativeVirtualKey()), mask);
    if (menuKey.isEmpty() || !Program::HotKeysEnabled || m_window.isMinimized() || QApplication::activeModalWidget()
        || QApplication::activePopupWidget())
        return false;
    run(menuKey);
    return false;
}
