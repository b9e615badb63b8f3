#include "frmMain.h"

#include "CommandLine.h"
#include "Commands.h"
#include "ControlBinder.h"
#include "ControlPage.h"
#include "Defaults.h"
#include "DocumentCommands.h"
#include "FileAssociations.h"
#include "GameFolder.h"
#include "HoverButton.h"
#include "LeftBar.h"
#include "LocateGameFolder.h"
#include "MemoryPanel.h"
#include "MsgBoard.h"
#include "PageLayouts.h"
#include "Pk3ExplorerPage.h"
#include "PopMenu.h"
#include "Program.h"
#include "Prompts.h"
#include "SettingsPage.h"
#include "TitleStrip.h"
#include "Twips.h"
#include "frmOptions.h"
#include "frmPassword.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QScreen>
#include <QStatusBar>

namespace {

struct PageInfo
{
    const char *button;
    const char *container;
    const char *title;
};

const std::array<PageInfo, frmMain::PageCount> pageInfo { {
    { "Client", "picPlayer", "Client Settings" },
    { "Server", "picServer", "Server Settings" },
    { "Control", "picCtrls", "Control - Move" },
    { "Renderer", "picGFX", "Renderer Settings" },
    { "Sound / Network", "picNet", "Sound & Network Settings" },
    { "HUD Display", "picHUD", "HUD Display Settings" },
    { "Railgun", "picRail", "Railgun Settings" },
    { "PK3 Explorer", "picPK3", "PK3 Explorer" },
} };

const std::array<const char *, 4> subPageCaptions { "Move", "Shoot", "Look", "Miscellaneous" };

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
    , m_documentCommands(new DocumentCommands(this, m_document, this))
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

    StartUpDocument(m_document);
    buildLeftBar();
    buildPages();
    buildStatusBar();
    m_binder->showDocument();

    connect(m_binder, &ControlBinder::helpRequested, this, &frmMain::SetText);
    connect(m_binder, &ControlBinder::clientPasswordRequested, this, &frmMain::askClientPassword);
    connect(&m_document, &ConfigDocument::fileChanged, this, &frmMain::SetTitle);
    connect(m_documentCommands, &DocumentCommands::pageWanted, this, &frmMain::SelectPage);
    m_commands = new Commands(*this);
    m_commands->setHandler(QStringLiteral("Options1"), [this] { showOptions(); });
    Program::ActiveDialogWindow = this;
    Program::HotKeysEnabled = true;

    // No page is selected at start.
    m_titleStrip->setText(programTitle());
    SetText(QStringLiteral("Welcome to Tarnwick."), 2);
    ShowControls(false);
    SetTitle();
    resize(Twips::px(10425), Twips::px(7500));
}

frmMain::~frmMain() = default;

void frmMain::buildLeftBar()
{
    auto *pages = new QButtonGroup(this);
    for (int i = 0; i < PageCount; ++i) {
        auto *button = new HoverButton(QString::fromLatin1(pageInfo[i].button), m_leftBar);
        button->setObjectName(QStringLiteral("btnMain_%1").arg(i));
        button->setCheckable(true);
        pages->addButton(button, i);
        connect(button, &HoverButton::clicked, this, [this, i] { SelectPage(i); });
        m_pageButtons[i] = button;
    }
    auto *subPages = new QButtonGroup(this);
    for (int i = 0; i < 4; ++i) {
        auto *button = new HoverButton(QString::fromLatin1(subPageCaptions[i]), m_leftBar);
        button->setObjectName(QStringLiteral("btnCtrls_%1").arg(i));
        button->setCheckable(true);
        subPages->addButton(button, i);
        connect(button, &HoverButton::clicked, this, [this, i] { SelectControlSubPage(i); });
        m_subPageButtons[i] = button;
    }
}

void frmMain::buildPages()
{
    m_controlPage = new ControlPage(m_document, *m_binder);
    m_pk3Page = new Pk3ExplorerPage;
    connect(m_pk3Page, &Pk3ExplorerPage::titleChanged, this, [this](const QString &title) {
        if (m_currentPage == PK3Page)
            m_titleStrip->setText(title);
    });
    const std::array<QWidget *, PageCount> contents {
        PageLayouts::clientPage(*m_binder),
        PageLayouts::serverPage(*m_binder),
        m_controlPage,
        PageLayouts::rendererPage(*m_binder),
        PageLayouts::soundNetworkPage(*m_binder),
        PageLayouts::hudPage(*m_binder),
        PageLayouts::railgunPage(*m_binder),
        m_pk3Page,
    };
    for (int i = 0; i < PageCount; ++i) {
        m_pages[i] = new SettingsPage(QString::fromLatin1(pageInfo[i].container), contents[i], m_client);
        m_pages[i]->hide();
    }
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
    const QString name = m_document.displayName().trimmed();
    setWindowTitle(name.isEmpty() ? programTitle() : m_document.displayName() + QStringLiteral(" - ") + programTitle());
}

QString frmMain::title() const
{
    return m_titleStrip->text();
}

void frmMain::SelectPage(int index)
{
    if (index < 0 || index >= PageCount)
        return;
    m_msgBoard->setVisible(index != PK3Page);
    if (index == 0)
        SetText(QStringLiteral("Client / Player Settings"), 2);
    else if (index == 2)
        SetText(QStringLiteral("To define the key use the left button on your mouse.\r\n"
                               "To delete the key use the right button on your mouse."),
            2);
    if (index == PK3Page)
        m_titleStrip->setText(m_pk3Page->title());
    else
        m_titleStrip->setText(QString::fromLatin1(pageInfo[index].title));
    m_currentPage = index;
    Q_EMIT pageSelected(index);
    ShowControls(index == 2);
    for (int i = 0; i < PageCount; ++i)
        m_pages[i]->setVisible(i == index);
    m_pageButtons[index]->setChecked(true);
    if (index == 2) {
        m_controlPage->showSubPage(0);
        m_subPageButtons[0]->setChecked(true);
    }
}

void frmMain::SelectControlSubPage(int index)
{
    if (index < 0 || index >= ControlPage::SubPageCount)
        return;
    m_titleStrip->setText(QStringLiteral("Control - ") + QString::fromLatin1(subPageCaptions[index]));
    m_pages[2]->show();
    m_controlPage->showSubPage(index);
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
        const int slot = i < 3 || !m_controlsShown ? i : i + 4;
        m_pageButtons[i]->setGeometry(Twips::rect(30, 30 + slot * buttonPitch, 1560, buttonHeight));
    }
    for (int i = 0; i < 4; ++i)
        m_subPageButtons[i]->setGeometry(Twips::rect(105, 30 + (3 + i) * buttonPitch, 1410, buttonHeight));
}

void frmMain::SetText(const QString &text, int msgType)
{
    m_msgBoard->DrawMsg(text, msgType);
}

void frmMain::setMenuHelp(const QString &text)
{
    m_menuHelp->setText(text);
}

void frmMain::setGradient(bool on)
{
    m_settings.gradient = on ? 1 : 0;
    m_titleStrip->setGradient(on);
    m_commands->setGradient(on);
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
    for (QScrollArea *page : m_pages)
        page->setGeometry(left, px(pageTop), areaWidth, pageHeight);
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
        event->ignore();
        return;
    }
    if (!m_settingsFile.isEmpty()) {
        QString error;
        if (!pbSaveOptions(m_settingsFile, currentSettings(), isMinimized(), &error))
            Prompts::reportError(this, QStringLiteral("Program Exit"), 75, error);
    }
    event->accept();
}

QString frmMain::startUp(QWidget *splash, const QString &settingsFile, const QString &executable)
{
    const QRect screen = this->screen() ? this->screen()->availableGeometry() : QRect(0, 0, 1024, 768);
    const QSize outer = frameGeometry().size();
    const int centredLeft = (screen.width() - outer.width()) / 2 * Twips::perPixel;
    const int centredTop = (screen.height() - outer.height()) / 2 * Twips::perPixel;
    m_settingsFile = settingsFile;
    applySettings(pbLoadOptions(settingsFile, centredLeft, centredTop));
    const QString registration = FileAssociations::registerAll(executable);
    LocateGameFolder(splash, QStringLiteral("can not locate Quake3.exe"));
    return registration;
}

void frmMain::applySettings(const ProgramSettings &settings)
{
    m_settings = settings;
    GameFolder::setPath(settings.q3dir);
    setGradient(settings.gradient == 1);
    setAlwaysOnTop(settings.aot == 1);
    m_commands->menu().setChecked(QStringLiteral("OnTop1"), m_alwaysOnTop);
    m_commands->setPreviewOpen(settings.pv_open == 1);
    move(Twips::px(settings.wx), Twips::px(settings.wy));
}

ProgramSettings frmMain::currentSettings() const
{
    ProgramSettings settings = m_settings;
    settings.q3dir = GameFolder::path();
    settings.aot = m_alwaysOnTop ? 1 : 0;
    settings.wx = frameGeometry().x() * Twips::perPixel;
    settings.wy = frameGeometry().y() * Twips::perPixel;
    if (const auto preview = m_commands->previewState()) {
        settings.pv_open = preview->open ? 1 : 0;
        settings.pv_wx = preview->left * Twips::perPixel;
        settings.pv_wy = preview->top * Twips::perPixel;
    }
    return settings;
}

void frmMain::showOptions()
{
    if (!m_options)
        m_options = new frmOptions(this);
    m_options->prepare(GameFolder::path(), m_settings.gradient == 1);
    if (ShowForm(m_options, true) != QDialog::Accepted)
        return;
    GameFolder::setPath(m_options->gameFolder());
    setGradient(m_options->gradient());
}

void frmMain::HandleCommandLine(const QString &text)
{
    if (isMinimized() || !isVisible())
        showNormal();
    raise();
    activateWindow();
    const CommandLine::Request request = CommandLine::classify(text);
    switch (request.action) {
    case CommandLine::Action::Nothing:
        return;
    case CommandLine::Action::OpenDialog:
        m_commands->run(QStringLiteral("Open1"));
        return;
    case CommandLine::Action::OpenConfig:
        // A save the user agreed to but cancelled keeps the document: nothing is thrown away unasked.
        if (m_documentCommands->saveChangesPrompt(QStringLiteral(" before loading a new?"))
            && m_documentCommands->OpenCfg(request.path))
            qCInfo(lcShell) << "opened" << request.path;
        return;
    case CommandLine::Action::Import:
        if (m_documentCommands->ImportFile(request.path, request.kind))
            qCInfo(lcShell) << "imported" << request.path;
        return;
    }
}

int frmMain::ShowForm(QWidget *form, bool modal)
{
    form->setWindowFlag(Qt::WindowStaysOnTopHint, m_alwaysOnTop);
    Program::ActiveDialogWindow = form;
    if (!modal) {
        form->show();
        return 0;
    }
    int result = 0;
    {
        const Program::HotKeysOff off;
        if (auto *dialog = qobject_cast<QDialog *>(form))
            result = dialog->exec();
    }
    Program::ActiveDialogWindow = this;
    return result;
}

void frmMain::setAlwaysOnTop(bool on)
{
    if (m_alwaysOnTop == on)
        return;
    m_alwaysOnTop = on;
    const bool shown = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, on);
    if (shown)
        show(); // a changed window flag hides the window
}

void frmMain::askClientPassword()
{
    if (!m_password)
        m_password = new frmPassword(this);
    m_password->setPassword(m_clientPassword);
    if (ShowForm(m_password, true) == QDialog::Accepted)
        m_clientPassword = m_password->password();
}
