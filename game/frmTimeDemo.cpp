#include "frmTimeDemo.h"

#include "GameFolder.h"
#include "LocateGameFolder.h"
#include "Prompts.h"
#include "WaitCursor.h"

#include <QCheckBox>
#include <QDir>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

frmTimeDemo::frmTimeDemo(QString &gameFolder, QWidget *parent)
    : QDialog(parent)
    , m_gameFolder(gameFolder)
    , m_list(new QListWidget)
    , m_loop(new QCheckBox(QStringLiteral("Loop demos")))
    , m_exit(new QCheckBox(QStringLiteral("Exit Tarnwick before starting the demo")))
    , m_start(new QPushButton(QStringLiteral("Start")))
{
    setObjectName(QStringLiteral("frmTimeDemo"));
    setWindowTitle(QStringLiteral("Run Timedemo"));
    m_list->setObjectName(QStringLiteral("lstDemos"));
    m_loop->setObjectName(QStringLiteral("chkLoop"));
    m_exit->setObjectName(QStringLiteral("chkExit"));
    m_start->setObjectName(QStringLiteral("cmdStart"));
    m_start->setDefault(true);

    auto *refresh = new QPushButton(QStringLiteral("Refresh"));
    refresh->setObjectName(QStringLiteral("cmdRefresh"));
    auto *cancel = new QPushButton(QStringLiteral("Cancel"));
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(refresh, &QPushButton::clicked, this, &frmTimeDemo::FillDemoList);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_start, &QPushButton::clicked, this, &frmTimeDemo::start);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(refresh);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(m_start);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    layout->addWidget(m_loop);
    layout->addWidget(m_exit);
    layout->addLayout(buttons);
    resize(360, 320);
}

void frmTimeDemo::load()
{
    m_loop->setChecked(false);
    m_exit->setChecked(false);
    if (GameFolder::isValid(m_gameFolder))
        FillDemoList();
    else
        showDemos({});
}

void frmTimeDemo::FillDemoList()
{
    if (!LocateGameFolder(this, QStringLiteral("cannot locate baseq3 dir"), m_gameFolder)) {
        m_start->setEnabled(false);
        return;
    }
    showDemos({});
    GameLaunch::DemoList found;
    {
        const WaitCursor busy;
        // A scan of many archives takes a while: the event loop keeps turning, so the window repaints.
        found = GameLaunch::FillDemoList(m_gameFolder, GameLaunch::eventLoopTurns());
    }
    showDemos(found.demos);
    if (found.unreadable.isEmpty())
        return;
    QStringList names;
    for (const QString &path : std::as_const(found.unreadable))
        names.append(QDir::toNativeSeparators(path));
    Prompts::ask(this, Prompts::programTitle(),
        QStringLiteral("These archives could not be read; their demos are not listed:\n%1").arg(names.join(u'\n')),
        QMessageBox::Ok, QMessageBox::Warning);
}

void frmTimeDemo::showDemos(const QList<GameLaunch::Demo> &demos)
{
    m_demos = demos;
    m_list->clear();
    for (const GameLaunch::Demo &demo : demos)
        m_list->addItem(demo.name);
    m_list->setCurrentRow(demos.isEmpty() ? -1 : 0);
    m_start->setEnabled(!demos.isEmpty());
}

void frmTimeDemo::start()
{
    if (!LocateGameFolder(this, QStringLiteral("can not locate Quake3.exe"), m_gameFolder))
        return;
    const int row = m_list->currentRow();
    if (row < 0 || row >= m_demos.size())
        return;
    // The outcome is not reported: the dialog stays open for the next timedemo.
    if (GameLaunch::StartGame(m_gameFolder, GameLaunch::timedemoParameters(m_demos[row])) && m_exit->isChecked())
        Q_EMIT exitRequested();
}
