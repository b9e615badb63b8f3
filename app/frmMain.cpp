#include "frmMain.h"

#include "AllVariablesPage.h"
#include "CommandLineRouter.h"
#include "Commands.h"
#include "ControlBinder.h"
#include "ControlPage.h"
#include "Defaults.h"
#include "DocumentCommands.h"
#include "GameCommands.h"
#include "HoverButton.h"
#include "LeftBar.h"
#include "MemoryPanel.h"
#include "MsgBoard.h"
#include "PageLayouts.h"
#include "Pk3ExplorerPage.h"
#include "PopMenu.h"
#include "Prompts.h"
#include "SearchCommands.h"
#include "SettingsPage.h"
#include "TitleStrip.h"
#include "Twips.h"
#include "WindowSettings.h"
#include "frmMdls.h"
#include "frmPassword.h"
#include "frmPreview.h"
#include "frmSysTray.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCloseEvent>
#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QStatusBar>
#include <QTimer>
#include <QWindow>

namespace {

struct PageInfo
{
    const char *button;
    const char *container;
    const char *title;
};

const std::array<PageInfo, PageCount> pageInfo { {
    { "Client", "picPlayer", "Client Settings" },
    { "Server", "picServer", "Server Settings" },
    { "Control", "picCtrls", "Control - Move" },
    { "Renderer", "picGFX", "Renderer Settings" },
    { "Sound / Network", "picNet", "Sound & Network Settings" },
    { "HUD Display", "picHUD", "HUD Display Settings" },
    { "Railgun", "picRail", "Railgun Settings" },
    { "PK3 Explorer", "picPK3", "PK3 Explorer" },
    { "All Variables", "picVars", "All Variables" },
} };

const std::array<const char *, ControlSubPageCount> subPageCaptions { "Move", "Shoot", "Look", "Miscellaneous" };

// Measures of the window's regions, in twips.
constexpr int toolbarHeight = 390;
constexpr int leftBarWidth = 1630;
constexpr int leftBarTop = 400;
constexpr int titleHeight = 300;
constexpr int pageTop = 740;
constexpr int helpHeight = 480;
constexpr int gap = 30;
constexpr int buttonHeight = 375;
constexpr int buttonPitch = 390;

} // namespace

frmMain::frmMain(QWidget *parent)
    : QMainWindow(parent)
    , m_binder(new ControlBinder(m_document, this))
    , m_documentCommands(new DocumentCommands(*this, m_document, this))
    , m_client(new QWidget(this))
    , m_toolbarBand(new QWidget(m_client))
    , m_leftBar(new LeftBar(m_client))
    , m_titleStrip(new TitleStrip(m_client))
    , m_msgBoard(new MsgBoard(m_client))
{
    setObjectName(QStringLiteral("frmMain"));
    m_client->setObjectName(QStringLiteral("frmMainClient"));
    m_toolbarBand->setObjectName(QStringLiteral("picTBar1"));
    m_leftBar->setObjectName(QStringLiteral("picLBar"));
    m_titleStrip->setObjectName(QStringLiteral("picMsg"));
    m_msgBoard->setObjectName(QStringLiteral("MsgBoard1"));
    setCentralWidget(m_client);
    m_client->installEventFilter(this);
    Prompts::setGate(&m_gate);

    StartUpDocument(m_document);
    buildLeftBar();
    connect(
        m_documentCommands, &DocumentCommands::opened, this, [this](const QString &path, const DroppedLines &dropped) {
            if (!m_variablesPage)
                m_lastOpened.emplace(path, dropped);
        });
    buildStatusBar();
    m_binder->showDocument();

    connect(m_binder, &ControlBinder::helpRequested, this, &frmMain::SetText);
    connect(m_binder, &ControlBinder::clientPasswordRequested, this, &frmMain::askClientPassword);
    connect(m_binder, &ControlBinder::modelButtonClicked, this, &frmMain::chooseModel);
    connect(&m_document, &ConfigDocument::fileChanged, this, &frmMain::SetTitle);
    m_commands = new Commands(*this, menuBar(), m_toolbarBand, *m_documentCommands, m_gate, this);
    m_tray = new frmSysTray(*this, m_gate, this);
    connect(m_tray, &frmSysTray::onTopToggled, this, [this] { setAlwaysOnTop(!m_alwaysOnTop); });
    connect(m_tray, &frmSysTray::menuHelp, this, &frmMain::setMenuHelp);
    m_settings = std::make_unique<WindowSettings>(*this, *m_commands);
    m_commandLine = new CommandLineRouter(*this, m_gate, *m_documentCommands, *m_commands, this);
    m_commands->setHandler(QStringLiteral("Options1"), [this] { m_settings->showOptions(); });
    new GameCommands(*this, m_gate, *m_settings, *m_commands, this); // the window owns it
    buildPreview();
    new SearchCommands(*this, m_gate, *m_documentCommands, *m_commands, this);
    m_gate.setActiveDialogWindow(this);
    m_gate.setHotKeysEnabled(true);

    // No page is selected at start.
    m_titleStrip->setText(Prompts::programTitle());
    SetText(QStringLiteral("Welcome to Tarnwick."), MsgType::Information);
    ShowControls(false);
    SetTitle();
    resize(Twips::px(10425), Twips::px(7500));
}

frmMain::~frmMain()
{
    Prompts::setGate(nullptr);
}

void frmMain::buildLeftBar()
{
    auto *pages = new QButtonGroup(this);
    for (int i = 0; i < PageCount; ++i) {
        auto *button = new HoverButton(QString::fromLatin1(pageInfo[i].button), m_leftBar);
        button->setObjectName(QStringLiteral("btnMain_%1").arg(i));
        button->setCheckable(true);
        pages->addButton(button, i);
        connect(button, &HoverButton::clicked, this, [this, i] { SelectPage(Page(i)); });
        m_pageButtons[i] = button;
    }
    auto *subPages = new QButtonGroup(this);
    for (int i = 0; i < ControlSubPageCount; ++i) {
        auto *button = new HoverButton(QString::fromLatin1(subPageCaptions[i]), m_leftBar);
        button->setObjectName(QStringLiteral("btnCtrls_%1").arg(i));
        button->setCheckable(true);
        subPages->addButton(button, i);
        connect(button, &HoverButton::clicked, this, [this, i] { SelectControlSubPage(ControlSubPage(i)); });
        m_subPageButtons[i] = button;
    }
}

QScrollArea *frmMain::page(Page which)
{
    // A page costs more to build than the rest of the window together, and none shows before the player picks
    // one: each is built on its first showing.
    const int index = int(which);
    if (m_pages[index])
        return m_pages[index];
    QWidget *contents = nullptr;
    switch (which) {
    case Page::Client:
        contents = PageLayouts::clientPage(*m_binder);
        break;
    case Page::Server:
        contents = PageLayouts::serverPage(*m_binder);
        break;
    case Page::Control:
        contents = m_controlPage = new ControlPage(m_document, *m_binder, *this);
        break;
    case Page::Renderer:
        contents = PageLayouts::rendererPage(*m_binder);
        break;
    case Page::SoundNetwork:
        contents = PageLayouts::soundNetworkPage(*m_binder);
        break;
    case Page::HudDisplay:
        contents = PageLayouts::hudPage(*m_binder);
        break;
    case Page::Railgun:
        contents = PageLayouts::railgunPage(*m_binder);
        break;
    case Page::Pk3Explorer:
        contents = m_pk3Page = new Pk3ExplorerPage;
        connect(m_pk3Page, &Pk3ExplorerPage::titleChanged, this, [this](const QString &title) {
            if (m_currentPage == Page::Pk3Explorer)
                m_titleStrip->setText(title);
        });
        break;
    case Page::AllVariables:
        contents = m_variablesPage = new AllVariablesPage(m_document, *this);
        connect(m_documentCommands, &DocumentCommands::opened, m_variablesPage, &AllVariablesPage::showDroppedLines);
        if (m_lastOpened)
            m_variablesPage->showDroppedLines(m_lastOpened->first, m_lastOpened->second);
        break;
    }
    auto *scroller = new SettingsPage(QString::fromLatin1(pageInfo[index].container), contents, m_client);
    scroller->hide();
    m_pages[index] = scroller;
    // The new controls take the document's values and the rules' enablement as the others have them.
    m_binder->showDocument();
    layoutRegions();
    return scroller;
}

Pk3ExplorerPage *frmMain::pk3Page()
{
    page(Page::Pk3Explorer);
    return m_pk3Page;
}

AllVariablesPage *frmMain::variablesPage()
{
    page(Page::AllVariables);
    return m_variablesPage;
}

void frmMain::buildPreview()
{
    // The preview follows the document, shows its mock-up on the HUD page only, and is out of reach while a box
    // or dialog is open.
    m_preview = new frmPreview(m_document, this);
    m_preview->setEnabled(m_gate.HotKeysEnabled());
    m_commands->setPreviewWindow(m_preview);
    connect(m_preview, &frmPreview::closed, m_commands, [this] { m_commands->setPreviewOpen(false); });
    connect(this, &frmMain::pageSelected, m_preview,
        [this](Page page) { m_preview->showHudPicture(page == Page::HudDisplay); });
    connect(&m_gate, &CommandGate::hotKeysEnabledChanged, m_preview, &QWidget::setEnabled);
}

void frmMain::buildStatusBar()
{
    QStatusBar *bar = statusBar();
    bar->setObjectName(QStringLiteral("SBar1"));
    m_menuHelp = new QLabel(bar);
    m_menuHelp->setObjectName(QStringLiteral("PAN1"));
    m_menuHelp->setMinimumWidth(64);
    bar->addWidget(m_menuHelp, 1);
    m_memory = new MemoryPanel(bar);
    bar->addPermanentWidget(m_memory);
    m_memory->refresh();
    m_memoryTimer.setObjectName(QStringLiteral("cTimer1"));
    m_memoryTimer.setInterval(50);
    connect(&m_memoryTimer, &QTimer::timeout, m_memory, &MemoryPanel::refresh);
    m_memoryTimer.start();
}

void frmMain::SetTitle()
{
    const QString title = Prompts::programTitle();
    const QString name = m_document.displayName();
    setWindowTitle(name.trimmed().isEmpty() ? title : name + QStringLiteral(" - ") + title);
}

QString frmMain::title() const
{
    return m_titleStrip->text();
}

void frmMain::SelectPage(Page page)
{
    const int index = int(page);
    if (index < 0 || index >= PageCount)
        return;
    m_msgBoard->setVisible(page != Page::Pk3Explorer);
    if (page == Page::Client)
        SetText(QStringLiteral("Client / Player Settings"), MsgType::Information);
    else if (page == Page::Control)
        SetText(QStringLiteral("To define the key use the left button on your mouse.\r\n"
                               "To delete the key use the right button on your mouse."),
            MsgType::Information);
    else if (page == Page::AllVariables)
        SetText(AllVariablesPage::selectionHelp(), MsgType::Information);
    QScrollArea *shown = this->page(page);
    m_titleStrip->setText(page == Page::Pk3Explorer ? m_pk3Page->title() : QString::fromLatin1(pageInfo[index].title));
    m_currentPage = page;
    Q_EMIT pageSelected(page);
    ShowControls(page == Page::Control);
    for (QScrollArea *other : m_pages) {
        if (other && other != shown)
            other->hide();
    }
    shown->show();
    m_pageButtons[index]->setChecked(true);
    if (page == Page::Control) {
        m_controlPage->showSubPage(ControlSubPage::Move);
        m_subPageButtons[0]->setChecked(true);
    }
}

void frmMain::SelectControlSubPage(ControlSubPage subPage)
{
    const int index = int(subPage);
    if (index < 0 || index >= ControlSubPageCount)
        return;
    m_titleStrip->setText(QStringLiteral("Control - ") + QString::fromLatin1(subPageCaptions[index]));
    page(Page::Control)->show();
    m_controlPage->showSubPage(subPage);
    m_subPageButtons[index]->setChecked(true);
}

void frmMain::ShowControls(bool show)
{
    m_controlsShown = show;
    for (HoverButton *button : m_subPageButtons)
        button->setVisible(show);
    placeButtons();
}

void frmMain::placeButtons()
{
    for (int i = 0; i < PageCount; ++i) {
        const int slot = i <= int(Page::Control) || !m_controlsShown ? i : i + ControlSubPageCount;
        m_pageButtons[i]->setGeometry(Twips::rect(30, 30 + slot * buttonPitch, 1560, buttonHeight));
    }
    for (int i = 0; i < ControlSubPageCount; ++i)
        m_subPageButtons[i]->setGeometry(Twips::rect(105, 30 + (3 + i) * buttonPitch, 1410, buttonHeight));
}

void frmMain::SetText(const QString &text, MsgType msgType)
{
    m_msgBoard->DrawMsg(text, int(msgType));
}

void frmMain::setMenuHelp(const QString &text)
{
    m_menuHelp->setText(text);
}

void frmMain::setGradient(bool on)
{
    m_titleStrip->setGradient(on);
    m_commands->setGradient(on);
    if (m_tray)
        m_tray->menu().setHighlightStyle(m_commands->menu().highlightStyle());
}

QString frmMain::gameFolder() const
{
    return m_settings->gameFolder();
}

void frmMain::layoutRegions()
{
    using Twips::px;
    const int width = m_client->width();
    const int height = m_client->height();
    m_toolbarBand->setGeometry(0, 0, width, px(toolbarHeight));
    m_leftBar->setGeometry(0, px(leftBarTop), px(leftBarWidth), height - px(toolbarHeight) - px(20));
    const int left = px(leftBarWidth) + px(gap);
    const int areaWidth = width - px(leftBarWidth) - px(2 * gap);
    m_titleStrip->setGeometry(left, px(toolbarHeight) + px(gap), areaWidth, px(titleHeight));
    const int pageHeight = height - px(pageTop) - px(helpHeight) - px(40);
    for (QScrollArea *page : m_pages) {
        if (page)
            page->setGeometry(left, px(pageTop), areaWidth, pageHeight);
    }
    m_msgBoard->setGeometry(left, px(pageTop) + pageHeight, areaWidth, px(helpHeight));
}

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_client && event->type() == QEvent::Resize)
        layoutRegions();
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    // The opening size is the outer size: once the frame is known, take it off the client area.
    if (!m_sizedToFrame && frameGeometry().size() != size()) {
        m_sizedToFrame = true;
        resize(size() - (frameGeometry().size() - size()));
    }
}

void frmMain::closeEvent(QCloseEvent *event)
{
    if (!m_documentCommands->saveChangesPrompt(QStringLiteral(" before closing?"))) {
        refuseClose(event);
        return;
    }
    QString error;
    if (!m_settings->save(isMinimized(), &error))
        Prompts::reportError(this, QStringLiteral("Program Exit"), 75, error);
    // The tray goes first: its icon leaves the notification area with the window.
    delete m_tray;
    m_tray = nullptr;
    event->accept();
}

void frmMain::refuseClose(QCloseEvent *event)
{
    // The program stays: a tray Exit that led here is over, and the commands come back.
    m_gate.setTrayExitPending(false);
    m_gate.EnableHotKeys();
    event->ignore();
}

int frmMain::ShowForm(QWidget *form, bool modal)
{
    SetOnTop(form, m_alwaysOnTop);
    m_gate.setActiveDialogWindow(form);
    if (!modal) {
        form->show();
        return 0;
    }
    int result = 0;
    {
        const Prompts::CommandsOff off;
        if (auto *dialog = qobject_cast<QDialog *>(form))
            result = dialog->exec();
    }
    m_gate.setActiveDialogWindow(this);
    takeKeyboardBackLater();
    return result;
}

void frmMain::takeKeyboardBackLater()
{
    // A closed modal form gives the keyboard back to this window, as on Windows. An X window manager decides that
    // itself, and one that saw a load's splash and then the dialog that asked for the load go at once gave it to
    // no window; so a moment later, when no shown window of the program has it, this one takes it.
    QTimer::singleShot(200, this, [this] {
        const QWidget *active = QApplication::activeWindow();
        if ((!active || !active->isVisible()) && isVisible() && !isMinimized() && !QApplication::activeModalWidget())
            activateWindow();
    });
}

void frmMain::setAlwaysOnTop(bool on)
{
    m_alwaysOnTop = on;
    m_commands->menu().setChecked(QStringLiteral("OnTop1"), on);
    if (m_tray)
        m_tray->setOnTopChecked(on);
    SetOnTop(this, on);
    // A dialog open now follows as well, as the next ones shown will.
    if (QWidget *dialog = m_gate.ActiveDialogWindow(); dialog && dialog != this && dialog->isVisible())
        SetOnTop(dialog, on);
}

void frmMain::SetOnTop(QWidget *window, bool on)
{
    Qt::WindowFlags flags = window->windowFlags();
    if (flags.testFlag(Qt::WindowStaysOnTopHint) == on)
        return;
    flags.setFlag(Qt::WindowStaysOnTopHint, on);
    if (window->isVisible() && window->windowHandle()) {
        // In place: setting the widget's flags would hide and re-create the window.
        window->overrideWindowFlags(flags);
        window->windowHandle()->setFlags(flags);
    } else {
        window->setWindowFlags(flags);
    }
}

void frmMain::chooseModel()
{
    m_gate.setHotKeysEnabled(false);
    if (!m_models)
        m_models = new frmMdls(m_settings->gameFolderSetting(), this);
    if (!m_modelsScanned)
        m_models->scanWhenShown();
    m_models->preselect(m_document.text(QStringLiteral("cmdModel")));
    ShowForm(m_models, true);
    m_gate.EnableHotKeys();
    m_modelsScanned = true;
    const ModelBrowserResult &chosen = m_models->result();
    // The document counts as modified only when the caption changes.
    if (!chosen.cancelled && !m_gate.TrayExitPending())
        m_document.setText(SettingCatalog::instance().indexOfControl(u"cmdModel"), 0, chosen.model);
}

void frmMain::askClientPassword()
{
    if (!m_password)
        m_password = new frmPassword(this);
    m_password->setPassword(m_clientPassword);
    if (ShowForm(m_password, true) == QDialog::Accepted)
        m_clientPassword = m_password->password();
}
