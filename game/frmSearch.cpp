#include "frmSearch.h"

#include "Prompts.h"
#include "TwinLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// How often a running search shows what it found and where it is.
constexpr int progressInterval = 50; // ms

} // namespace

frmSearch::frmSearch(QWidget *parent)
    : QDialog(parent)
    , m_check1(new QCheckBox(QStringLiteral("Search &all drives on this PC (Fixed, Removeble etc.)")))
    , m_lookIn(new TwinLabel(QStringLiteral("lblLookIn"), QStringLiteral("lblDisTxt")))
    , m_drive1(new QComboBox)
    , m_results(new QComboBox)
    , m_searching(new QLabel)
    , m_found(new QLabel)
    , m_search(new QPushButton(QStringLiteral("&Search")))
    , m_load(new QPushButton(QStringLiteral("&Load")))
    , m_cancel(new QPushButton(QStringLiteral("&Cancel")))
{
    setObjectName(QStringLiteral("frmSearch"));
    setWindowTitle(QStringLiteral("Q3Config Search"));
    m_check1->setObjectName(QStringLiteral("Check1"));
    m_lookIn->setText(QStringLiteral("Look In:"));
    m_drive1->setObjectName(QStringLiteral("Drive1"));
    m_results->setObjectName(QStringLiteral("cbResults"));
    m_searching->setObjectName(QStringLiteral("lblSearching"));
    m_found->setObjectName(QStringLiteral("lblFound"));
    m_search->setObjectName(QStringLiteral("cmdSearch"));
    m_load->setObjectName(QStringLiteral("cmdLoad"));
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    m_search->setDefault(true);
    // Long paths don't widen the dialog: the closed lists cut them at the right, the open list shows them whole.
    for (QComboBox *list : { m_drive1, m_results }) {
        list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        list->setMinimumContentsLength(64);
    }
    // The two progress lines keep their room while hidden, so nothing moves when they come and go.
    for (QLabel *label : { m_searching, m_found }) {
        QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        policy.setRetainSizeWhenHidden(true);
        label->setSizePolicy(policy);
    }

    auto *drive = new QGroupBox(QStringLiteral("Drive"));
    drive->setObjectName(QStringLiteral("fraDrive"));
    auto *driveLayout = new QGridLayout(drive);
    driveLayout->addWidget(m_check1, 0, 0, 1, 2);
    driveLayout->addWidget(m_lookIn, 1, 0);
    driveLayout->addWidget(m_drive1, 1, 1);
    driveLayout->setColumnStretch(1, 1);

    auto *results = new QGroupBox(QStringLiteral("Results"));
    results->setObjectName(QStringLiteral("fraResults"));
    auto *resultsLayout = new QVBoxLayout(results);
    resultsLayout->addWidget(m_results);
    resultsLayout->addWidget(m_searching);
    resultsLayout->addWidget(m_found);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_search);
    buttons->addWidget(m_load);
    buttons->addWidget(m_cancel);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(drive);
    layout->addWidget(results);
    layout->addLayout(buttons);

    connect(m_check1, &QCheckBox::clicked, this, &frmSearch::Check1_Click);
    connect(m_search, &QPushButton::clicked, this, &frmSearch::cmdSearch_Click);
    connect(m_load, &QPushButton::clicked, this, &frmSearch::cmdLoad_Click);
    connect(m_cancel, &QPushButton::clicked, this, &frmSearch::reject);
    connect(m_results, &QComboBox::activated, this,
        [this] { m_load->setEnabled(!m_results->currentText().trimmed().isEmpty()); });
    connect(&m_walk, &ConfigSearch::BackgroundWalk::finished, this, &frmSearch::searchEnded);
    m_progress.setInterval(progressInterval);
    connect(&m_progress, &QTimer::timeout, this, &frmSearch::showProgress);

    setPlaces(ConfigSearch::places());
    m_searching->hide();
    m_found->hide();
    EnableAll(true);
    Check1_Click();
    setFixedSize(sizeHint());
}

void frmSearch::setLoader(std::function<bool()> saveChanges, std::function<bool(const QString &)> open)
{
    m_saveChanges = std::move(saveChanges);
    m_open = std::move(open);
}

void frmSearch::setPlaces(const QList<ConfigSearch::Place> &places)
{
    const QString selected = m_drive1->currentData().toString();
    m_drive1->clear();
    for (const ConfigSearch::Place &place : places)
        m_drive1->addItem(
            QStringLiteral("%1  (%2)").arg(QDir::toNativeSeparators(place.path), place.description), place.path);
    m_drive1->setCurrentIndex(std::max(0, m_drive1->findData(selected)));
}

QString frmSearch::foundText(int count)
{
    if (count == 0)
        return QStringLiteral("No config files found.");
    if (count == 1)
        return QStringLiteral("Found 1 config file.");
    return QStringLiteral("Found %1 config files.").arg(count);
}

void frmSearch::cmdSearch_Click()
{
    Search(QString::fromLatin1(ConfigSearch::fileName), m_drive1->currentData().toString(), m_allDrives);
    if (m_stopAsked)
        showResultCount();
}

void frmSearch::Search(const QString &pattern, const QString &path, bool allDrives)
{
    if (searching()) {
        m_stopAsked = true;
        m_walk.stop();
        return;
    }
    if (pattern.isEmpty())
        return;
    QStringList roots;
    if (allDrives) {
        for (int i = 0; i < m_drive1->count(); ++i)
            roots.append(m_drive1->itemData(i).toString());
    } else {
        roots.append(path);
    }
    m_stopAsked = false;
    m_results->clear();
    EnableAll(false);
    m_searching->clear();
    m_searching->show();
    m_walk.start(ConfigSearch::walkPath(pattern), roots);
    m_progress.start();
}

void frmSearch::showProgress()
{
    const QStringList found = m_walk.takeFound();
    if (!found.isEmpty()) {
        // One repaint for all the paths that came in since the last look.
        m_results->setUpdatesEnabled(false);
        m_results->addItems(found);
        m_results->setUpdatesEnabled(true);
    }
    if (m_results->count() > 0) {
        m_found->setText(foundText(m_results->count()));
        m_found->show();
    }
    const QString folder = m_walk.currentFolder();
    if (!m_stopAsked && !folder.isEmpty())
        m_searching->setText(QStringLiteral("      Searching ") + folder);
}

void frmSearch::searchEnded()
{
    showProgress();
    m_progress.stop();
    EnableAll(true);
    m_found->hide();
    Check1_Click();
    showResultCount();
}

void frmSearch::showResultCount()
{
    const int count = m_results->count();
    m_searching->setText(foundText(count));
    if (count > 0)
        m_results->setCurrentIndex(0);
}

void frmSearch::EnableAll(bool enabled)
{
    m_check1->setEnabled(enabled);
    m_lookIn->setActive(enabled);
    m_drive1->setEnabled(enabled);
    m_results->setEnabled(enabled);
    m_load->setEnabled(m_results->count() > 0);
    m_cancel->setEnabled(enabled);
    m_search->setText(enabled ? QStringLiteral("&Search") : QStringLiteral("&Stop"));
}

void frmSearch::Check1_Click()
{
    m_allDrives = m_check1->isChecked();
    m_drive1->setEnabled(!m_allDrives);
    m_lookIn->setActive(!m_allDrives);
}

void frmSearch::reject()
{
    if (!searching()) {
        QDialog::reject();
        return;
    }
    // Esc or a close request while the walk runs: it stops, and the dialog stays to show what it found.
    m_stopAsked = true;
    m_walk.stop();
    showResultCount();
}

void frmSearch::cmdLoad_Click()
{
    if (!m_load->isEnabled())
        return;
    if (m_saveChanges && !m_saveChanges())
        return;
    const QString path = m_results->currentText();
    if (!QFileInfo(path).isFile()) {
        Prompts::ask(this, QStringLiteral("Error"),
            QStringLiteral("The file '%1' seams to be not existing any more.").arg(path), QMessageBox::Ok,
            QMessageBox::Critical);
        return;
    }
    if (m_open && m_open(path))
        accept();
}
