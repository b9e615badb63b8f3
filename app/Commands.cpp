#include "Commands.h"

#include "CommandGate.h"
#include "ConfigDocument.h"
#include "DocumentCommands.h"
#include "ImageList.h"
#include "PopMenu.h"
#include "Prompts.h"
#include "ShellWindow.h"
#include "VirtualKeys.h"
#include "frmAbout.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <QWindow>

struct Commands::Row
{
    const char *parent;
    const char *caption; // "-" makes a separator
    const char *key;
    const char *help = "";
    const char *icon = "";
    QKeyCombination accelerator = Qt::Key_unknown; // also shown after the caption
    const char *button = ""; // the toolbar button that runs it
    const char *toolTip = "";
    void (*run)(Commands &) = nullptr; // none: carried out by a registered handler, or a web address
    const char *address = ""; // where a web item leads
};

// The menu from left to right and top to bottom, with each command's shortcut, toolbar button and action.
const QList<Commands::Row> &Commands::table()
{
    using C = Commands;
    static const QList<Row> rows {
        { .parent = "", .caption = "&File", .key = "File1TOP" },
        { .parent = "File1TOP",
            .caption = "&New",
            .key = "New1",
            .help = "Create a New Configuration File",
            .icon = "NEW",
            .accelerator = Qt::CTRL | Qt::Key_N,
            .button = "NEW1",
            .toolTip = "Create a New Config File (Ctrl+N)",
            .run = [](C &c) { c.m_documents.newCommand(); } },
        { .parent = "File1TOP",
            .caption = "&Open",
            .key = "Open1",
            .help = "Open an Existing File",
            .icon = "OPEN",
            .accelerator = Qt::CTRL | Qt::Key_O,
            .button = "OPEN1",
            .toolTip = "Open an Existing Config File (Ctrl+O)",
            .run = [](C &c) { c.m_documents.openCommand(); } },
        { .parent = "File1TOP",
            .caption = "&Save",
            .key = "Save1",
            .help = "Save Current Configuration",
            .icon = "SAVE",
            .accelerator = Qt::CTRL | Qt::Key_S,
            .button = "SAVE1",
            .toolTip = "Save Current Config File (Ctrl+S)",
            .run = [](C &c) { c.m_documents.saveCommand(); } },
        { .parent = "File1TOP",
            .caption = "Save &As",
            .key = "SaveAs1",
            .help = "Save Current Configuration As...",
            .accelerator = Qt::CTRL | Qt::ALT | Qt::Key_S,
            .run = [](C &c) { c.m_documents.saveAsCommand(); } },
        { .parent = "File1TOP", .caption = "-", .key = "sepFile1" },
        { .parent = "File1TOP", .caption = "&Export...", .key = "Export1TOP", .icon = "EXPORT" },
        { .parent = "Export1TOP",
            .caption = "Controls",
            .key = "Ctrl1",
            .help = "Exoprt Control Settings",
            .run = [](C &c) { c.m_documents.ExportFile(QString(), PartialKind::Controls); } },
        { .parent = "Export1TOP",
            .caption = "Renderer",
            .key = "Gfx1",
            .help = "Exoprt Renderer Settings",
            .run = [](C &c) { c.m_documents.ExportFile(QString(), PartialKind::Renderer); } },
        { .parent = "Export1TOP",
            .caption = "HUD Display",
            .key = "Hud1",
            .help = "Exoprt HUD Display Settings",
            .run = [](C &c) { c.m_documents.ExportFile(QString(), PartialKind::HudDisplay); } },
        { .parent = "Export1TOP",
            .caption = "Railgun",
            .key = "RGun1",
            .help = "Exoprt Railgun Settings",
            .run = [](C &c) { c.m_documents.ExportFile(QString(), PartialKind::Railgun); } },
        { .parent = "File1TOP", .caption = "&Import...", .key = "Import1TOP", .icon = "IMPORT" },
        { .parent = "Import1TOP",
            .caption = "Controls",
            .key = "Ctrl2",
            .help = "Import Control Settings",
            .run = [](C &c) { c.m_documents.ImportFile(QString(), PartialKind::Controls); } },
        { .parent = "Import1TOP",
            .caption = "Renderer",
            .key = "Gfx2",
            .help = "Import Renderer Settings",
            .run = [](C &c) { c.m_documents.ImportFile(QString(), PartialKind::Renderer); } },
        { .parent = "Import1TOP",
            .caption = "HUD Display",
            .key = "Hud2",
            .help = "Import HUD Display Settings",
            .run = [](C &c) { c.m_documents.ImportFile(QString(), PartialKind::HudDisplay); } },
        { .parent = "Import1TOP",
            .caption = "Railgun",
            .key = "RGun2",
            .help = "Import Railgun Settings",
            .run = [](C &c) { c.m_documents.ImportFile(QString(), PartialKind::Railgun); } },
        { .parent = "File1TOP", .caption = "-", .key = "sepFile2" },
        { .parent = "File1TOP",
            .caption = "&Preview File",
            .key = "PrevFile1",
            .help = "Preview Configuration File (Not in this version)" },
        { .parent = "File1TOP", .caption = "-", .key = "sepFile4" },
        { .parent = "File1TOP",
            .caption = "&Restore Defaults",
            .key = "Def1",
            .help = "Restore default file settings",
            .icon = "DEFAULTS",
            .button = "DEFAULTS1",
            .toolTip = "Restore Default File Settings",
            .run = [](C &c) { c.m_documents.restoreDefaultsCommand(); } },
        { .parent = "File1TOP", .caption = "-", .key = "sepFile5" },
        { .parent = "File1TOP",
            .caption = "E&xit",
            .key = "Exit1",
            .help = "Exit Tarnwick",
            .accelerator = Qt::ALT | Qt::Key_Q,
            .run = [](C &c) { c.m_shell.widget()->close(); } },
        { .parent = "", .caption = "&Tools", .key = "Tools1TOP" },
        { .parent = "Tools1TOP",
            .caption = "Server Wizard",
            .key = "Wiz1",
            .help = "I'm working on it...",
            .icon = "WIZ",
            .button = "WIZ1",
            .toolTip = "Server Wizard" },
        { .parent = "Tools1TOP", .caption = "-", .key = "sepTools0" },
        { .parent = "Tools1TOP", .caption = "Run...", .key = "Run1TOP" },
        { .parent = "Run1TOP",
            .caption = "&Quake 3 Arena",
            .key = "Game1",
            .help = "Run Quake 3 Arena",
            .icon = "RUNQ3",
            .accelerator = Qt::SHIFT | Qt::Key_F5 },
        { .parent = "Run1TOP",
            .caption = "&Timedemo",
            .key = "TDemo1",
            .help = "Run Timedemo",
            .icon = "TDEMO",
            .accelerator = Qt::SHIFT | Qt::Key_F6 },
        { .parent = "Tools1TOP", .caption = "-", .key = "sepTools1" },
        { .parent = "Tools1TOP", .caption = "Show &Preview", .key = "Prev1", .run = [](C &c) { c.togglePreview(); } },
        { .parent = "Tools1TOP", .caption = "-", .key = "sepTools2" },
        { .parent = "Tools1TOP",
            .caption = "&Q3Config Search",
            .key = "Search1",
            .icon = "SEARCH",
            .accelerator = QKeyCombination(Qt::Key_F3),
            .button = "SEARCH1",
            .toolTip = "CFG Search (F3)" },
        { .parent = "Tools1TOP",
            .caption = "&Options...",
            .key = "Options1",
            .icon = "OPTIONS",
            .accelerator = QKeyCombination(Qt::Key_F4),
            .button = "OPTIONS1",
            .toolTip = "Options (F4)" },
        { .parent = "Tools1TOP", .caption = "-", .key = "sepTools3" },
        { .parent = "Tools1TOP",
            .caption = "Always On &Top",
            .key = "OnTop1",
            .help = "Toggle 'Always On Top' attribute",
            .run = [](C &c) { c.toggleAlwaysOnTop(); } },
        { .parent = "", .caption = "&Help", .key = "Help1TOP" },
        { .parent = "Help1TOP",
            .caption = "Contents",
            .key = "Contents1",
            .icon = "HELP",
            .run = [](C &c) { c.showContents(); } },
        { .parent = "Help1TOP", .caption = "-", .key = "sepHelp1" },
        { .parent = "Help1TOP",
            .caption = "On The &Web",
            .key = "Websites1",
            .icon = "WEB",
            .button = "ONWEB1",
            .toolTip = "On the Web" },
        // The web items lead to the game's and its engines' living pages.
        { .parent = "Websites1",
            .caption = "Tarnwick",
            .key = "Site1WEB",
            .help = "Tarnwick Homepage",
            .icon = "HOME",
            .address = "https://github.com/tarnwick/tarnwick" },
        { .parent = "Websites1", .caption = "-", .key = "sepWebs1" },
        { .parent = "Websites1",
            .caption = "id Software",
            .key = "Site2WEB",
            .help = "id Software Homepage",
            .icon = "LINK",
            .address = "https://www.idsoftware.com/" },
        { .parent = "Websites1",
            .caption = "Official Q3A Website",
            .key = "Site3WEB",
            .help = "Official Quake 3 Arena Website",
            .icon = "LINK",
            .address = "https://store.steampowered.com/app/2200/Quake_III_Arena/" },
        { .parent = "Websites1",
            .caption = "Q3A Center",
            .key = "Site4WEB",
            .help = "Quake 3 Center",
            .icon = "LINK",
            .address = "https://ioquake3.org/" },
        { .parent = "Websites1",
            .caption = "Quake 3 Mods",
            .key = "Site5WEB",
            .help = "Quake 3 Modifications Site",
            .icon = "LINK",
            .address = "https://www.moddb.com/games/quake-iii-arena/mods" },
        { .parent = "Websites1",
            .caption = "Quake 3 World",
            .key = "Site6WEB",
            .help = "Quake 3 World Homepage",
            .icon = "LINK",
            .address = "https://www.quake3world.com/forum/" },
        { .parent = "Websites1",
            .caption = "PlanetQuake Homepage",
            .key = "Site7WEB",
            .help = "PlanetQuake Homepage. Mods, Models, Maps and more...",
            .icon = "LINK",
            .address = "https://lvlworld.com/" },
        { .parent = "Websites1", .caption = "-", .key = "sepWebs2" },
        { .parent = "Websites1",
            .caption = "Send Your E-Mail",
            .key = "Email1WEB",
            .help = "Send your comments/suggestions and/or bugs reports",
            .icon = "EMAIL",
            .address = "mailto:feedback@tarnwick.invalid?subject=Tarnwick" },
        { .parent = "Help1TOP", .caption = "-", .key = "sepHelp2" },
        { .parent = "Help1TOP",
            .caption = "&About...",
            .key = "About1",
            .help = "About Tarnwick",
            .icon = "ABOUT",
            .button = "ABOUT1",
            .toolTip = "About Tarnwick",
            .run = [](C &c) { c.showAbout(); } },
    };
    return rows;
}

namespace {

// The toolbar from left to right by button key; "|" is a separator.
const char *const toolbarOrder[]
    = { "NEW1", "OPEN1", "SAVE1", "|", "DEFAULTS1", "|", "WIZ1", "OPTIONS1", "SEARCH1", "|", "ONWEB1", "ABOUT1" };

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

const Commands::Row *rowOfKey(const QString &key)
{
    for (const Commands::Row &row : Commands::table()) {
        if (key == latin(row.key))
            return &row;
    }
    return nullptr;
}

const Commands::Row *rowOfButton(const QString &button)
{
    for (const Commands::Row &row : Commands::table()) {
        if (button == latin(row.button))
            return &row;
    }
    return nullptr;
}

// A row whose items hang below it is a menu, not a command; its toolbar button drops the menu down.
bool isMenu(const Commands::Row &row)
{
    for (const Commands::Row &other : Commands::table()) {
        if (qstrcmp(other.parent, row.key) == 0)
            return true;
    }
    return false;
}

constexpr Qt::KeyboardModifiers acceleratorModifiers = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;

} // namespace

QString Commands::menuKeyOfButton(const QString &buttonKey)
{
    const Row *row = rowOfButton(buttonKey);
    return row && !isMenu(*row) ? latin(row->key) : QString();
}

QString Commands::menuKeyOfKeystroke(int virtualKey, Qt::KeyboardModifiers modifiers)
{
    modifiers &= acceleratorModifiers;
    for (const Row &row : table()) {
        const QKeyCombination a = row.accelerator;
        if (a.key() != Qt::Key_unknown && a.keyboardModifiers() == modifiers
            && VirtualKeys::fromQtKey(a.key(), Qt::NoModifier) == virtualKey)
            return latin(row.key);
    }
    return QString();
}

Commands::Commands(ShellWindow &shell, QMenuBar *bar, QWidget *toolbarBand, DocumentCommands &documents,
    CommandGate &gate, QObject *parent)
    : QObject(parent)
    , m_shell(shell)
    , m_documents(documents)
    , m_gate(gate)
    , m_menu(new PopMenu(bar, this))
    , m_openUrl([](const QUrl &url) { return QDesktopServices::openUrl(url); })
{
    buildMenu();
    m_toolbar = new QToolBar(toolbarBand);
    buildToolbar();
    ConfigDocument &doc = documents.document();
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
    for (const Row &row : table()) {
        QString caption = latin(row.caption);
        if (row.accelerator.key() != Qt::Key_unknown)
            caption += u'\t' + QKeySequence(row.accelerator).toString(QKeySequence::PortableText);
        const QString icon = latin(row.icon);
        m_menu->addItem(latin(row.parent), caption, latin(row.key), latin(row.help),
            icon.isEmpty() ? QIcon() : ImageList::icon(icon));
        if (*row.address)
            m_menu->setTag(latin(row.key), latin(row.address));
    }
    m_menu->setEnabled(QStringLiteral("PrevFile1"), false);
    m_menu->setEnabled(QStringLiteral("Wiz1"), false);
    m_menu->setChecked(QStringLiteral("OnTop1"), false);
    m_menu->setCheckPictures(ImageList::drawn(QStringLiteral("CHK1")), ImageList::drawn(QStringLiteral("CHK2")));
    setGradient(true);

    connect(m_menu, &PopMenu::click, this, &Commands::PopMenu1_Click);
    connect(m_menu, &PopMenu::highlighted, this, [this](const QString &help) { m_shell.setMenuHelp(help); });
    connect(m_menu, &PopMenu::closed, this, [this] { m_shell.setMenuHelp(QString()); });
}

void Commands::buildToolbar()
{
    m_toolbar->setObjectName(QStringLiteral("cToolbar1"));
    m_toolbar->setIconSize(QSize(16, 16));
    m_toolbar->setMovable(false);
    m_toolbar->setFloatable(false);
    int separators = 0;
    for (const char *button : toolbarOrder) {
        const QString key = latin(button);
        if (key == u"|") {
            m_toolbar->addSeparator()->setObjectName(QStringLiteral("SEP%1").arg(++separators));
            continue;
        }
        const Row &row = *rowOfButton(key);
        QAction *action = nullptr;
        if (isMenu(row)) {
            auto *dropDown = new QToolButton(m_toolbar);
            dropDown->setPopupMode(QToolButton::InstantPopup);
            dropDown->setMenu(m_menu->subMenu(latin(row.key)));
            dropDown->setIcon(ImageList::icon(latin(row.icon)));
            dropDown->setToolTip(latin(row.toolTip));
            dropDown->setObjectName(key);
            action = m_toolbar->addWidget(dropDown);
        } else {
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
    const QScreen *screen = m_shell.widget()->screen();
    const bool colours = !screen || screen->depth() >= 9;
    m_menu->setHighlightStyle(on && colours ? PopMenu::Gradient : PopMenu::Flat);
}

void Commands::run(const QString &menuKey)
{
    PopMenu1_Click(m_menu->indexOf(menuKey));
}

void Commands::toolbarClick(const QString &buttonKey)
{
    if (!m_gate.HotKeysEnabled())
        return;
    const QString menuKey = menuKeyOfButton(buttonKey);
    if (!menuKey.isEmpty())
        run(menuKey);
}

void Commands::setHandler(const QString &menuKey, std::function<void()> run)
{
    m_handlers.insert(menuKey, std::move(run));
}

void Commands::setUrlOpener(std::function<bool(const QUrl &)> open)
{
    m_openUrl = std::move(open);
}

void Commands::PopMenu1_Click(int itemIndex)
{
    const QString key = m_menu->keyOf(itemIndex);
    const Row *row = rowOfKey(key);
    // A disabled item is not a command, whichever way its key arrives.
    if (!row || !m_menu->isEnabled(key))
        return;
    if (*row->address) {
        openAddress(m_menu->tag(key));
    } else if (row->run) {
        row->run(*this);
    } else if (const auto handler = m_handlers.constFind(key); handler != m_handlers.cend()) {
        // The game, the timedemo, the search and the options run with the commands off.
        const Prompts::CommandsOff off;
        (*handler)();
    }
}

void Commands::openAddress(const QString &address)
{
    if (m_openUrl(QUrl(address)))
        return;
    Prompts::ask(m_shell.widget(), Prompts::programTitle(),
        QStringLiteral("Tarnwick couldn't open %1.\nNo web browser or e-mail program answered; you can copy the "
                       "address from here.")
            .arg(address),
        QMessageBox::Ok, QMessageBox::Warning);
}

void Commands::showAbout()
{
    if (!m_about) {
        m_about = new frmAbout(m_shell.widget());
        connect(m_about, &frmAbout::linkActivated, this, [this](const QUrl &url) { openAddress(url.toString()); });
    }
    m_shell.ShowForm(m_about, true);
}

void Commands::showContents()
{
    Prompts::ask(m_shell.widget(), Prompts::programTitle(),
        QStringLiteral("Sorry, help contents are not available yet."), QMessageBox::Ok, QMessageBox::Information);
}

void Commands::toggleAlwaysOnTop()
{
    m_shell.setAlwaysOnTop(!m_shell.alwaysOnTop());
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
    const QString menuKey = menuKeyOfKeystroke(
        VirtualKeys::fromQtKey(key->key(), key->modifiers(), key->nativeVirtualKey()), key->modifiers());
    if (menuKey.isEmpty() || !m_gate.HotKeysEnabled() || m_shell.widget()->isMinimized()
        || QApplication::activeModalWidget() || QApplication::activePopupWidget())
        return false;
    run(menuKey);
    return false;
}
