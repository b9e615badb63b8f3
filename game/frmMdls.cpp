#include "frmMdls.h"

#include "GameLaunch.h"

#include "LocateGameFolder.h"
#include "Prompts.h"
#include "WaitCursor.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int KeyRole = Qt::UserRole; // "MDL|SARGE", "MDL|SARGE_RED"
constexpr int ModelRole = Qt::UserRole + 1; // index in the scanned tree
constexpr int SkinRole = Qt::UserRole + 2; // index among the model's skins; -1 on a model node
constexpr int PictureSize = 128;

} // namespace

frmMdls::frmMdls(QString &gameFolder, QWidget *parent)
    : QDialog(parent)
    , m_gameFolder(gameFolder)
    , m_nodes(new QTreeWidget)
    , m_selected(new QLabel)
    , m_picture(new QLabel)
    , m_refresh(new QPushButton(QStringLiteral("&Refresh")))
    , m_ok(new QPushButton(QStringLiteral("&OK")))
    , m_cancel(new QPushButton(QStringLiteral("&Cancel")))
{
    setObjectName(QStringLiteral("frmMdls"));
    setWindowTitle(QStringLiteral("Player Model Browser"));
    m_nodes->setObjectName(QStringLiteral("tvwMdls"));
    m_selected->setObjectName(QStringLiteral("lblSel"));
    m_picture->setObjectName(QStringLiteral("picIcon"));
    m_refresh->setObjectName(QStringLiteral("cmdRefresh"));
    m_ok->setObjectName(QStringLiteral("cmdOk"));
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    m_ok->setDefault(true);
    m_ok->setEnabled(false);

    m_nodes->setHeaderHidden(true);
    m_nodes->setColumnCount(1);
    m_nodes->setMinimumSize(220, 260);
    m_picture->setFixedSize(PictureSize, PictureSize);
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setFrameShape(QFrame::StyledPanel);
    m_selected->setTextFormat(Qt::PlainText);
    QFont bold = m_selected->font();
    bold.setBold(true);
    m_selected->setFont(bold);

    connect(m_nodes, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *node) {
        if (node)
            nodeClicked(node);
    });
    connect(m_nodes, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *node) {
        if (node->parent() && m_ok->isEnabled())
            accept(); // a skin picked outright
    });
    connect(m_refresh, &QPushButton::clicked, this, &frmMdls::Refresh);
    connect(m_ok, &QPushButton::clicked, this, &frmMdls::accept);
    connect(m_cancel, &QPushButton::clicked, this, &frmMdls::reject);

    auto *side = new QVBoxLayout;
    side->addWidget(m_picture);
    side->addStretch();
    auto *middle = new QHBoxLayout;
    middle->addWidget(m_nodes, 1);
    middle->addLayout(side);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_refresh);
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Select the player model you what to play with.")));
    layout->addLayout(middle, 1);
    layout->addWidget(m_selected);
    layout->addLayout(buttons);
    resize(420, 380);
}

QString frmMdls::fullPath(const QTreeWidgetItem *node)
{
    const QTreeWidgetItem *model = node->parent();
    return model ? model->text(0) + u'/' + node->text(0) : node->text(0);
}

void frmMdls::preselect(const QString &caption)
{
    m_result = {};
    m_caption = caption;
    m_selected->setText(caption);
    m_ok->setEnabled(selectValue(caption.toLower()));
    if (m_ok->isEnabled())
        m_selected->setText(fullPath(m_nodes->currentItem()));
}

void frmMdls::Refresh()
{
    if (!LocateGameFolder(this, QStringLiteral("cannot locate Baseq3 dir"), m_gameFolder))
        return;
    m_ok->setEnabled(false);
    m_cancel->setEnabled(false);
    m_refresh->setEnabled(false);
    m_scanning = true;
    {
        const QSignalBlocker quiet(m_nodes);
        m_nodes->clear();
    }
    m_picture->clear();
    {
        const WaitCursor busy;
        // A game with many archives takes a while: the event loop keeps turning, so the dialog repaints.
        m_tree = PlayerModels::ScanPlayerModels(m_gameFolder, GameLaunch::eventLoopTurns());
    }
    m_icons = {};
    fillTree(m_tree);
    if (m_nodes->topLevelItemCount() > 0)
        m_ok->setEnabled(selectValue(m_selected->text().toLower()));
    m_scanning = false;
    m_refresh->setEnabled(true);
    m_cancel->setEnabled(true);
    if (m_tree.unreadable.isEmpty())
        return;
    QStringList names;
    for (const QString &path : std::as_const(m_tree.unreadable))
        names.append(QDir::toNativeSeparators(path));
    Prompts::ask(this, Prompts::programTitle(),
        QStringLiteral("These archives could not be read; their player models are not listed:\n%1")
            .arg(names.join(u'\n')),
        QMessageBox::Ok, QMessageBox::Warning);
}

void frmMdls::fillTree(const PlayerModels::ModelTree &tree)
{
    const QSignalBlocker quiet(m_nodes);
    const QIcon folder = style()->standardIcon(QStyle::SP_DirIcon);
    const QIcon model = QIcon::fromTheme(QStringLiteral("avatar-default"), style()->standardIcon(QStyle::SP_FileIcon));
    QList<QTreeWidgetItem *> roots;
    for (int m = 0; m < tree.models.size(); ++m) {
        const PlayerModels::Model &found = tree.models[m];
        auto *root = new QTreeWidgetItem({ found.label });
        root->setData(0, KeyRole, PlayerModels::nodeKey(found));
        root->setData(0, ModelRole, m);
        root->setData(0, SkinRole, -1);
        root->setIcon(0, folder);
        for (int s = 0; s < found.skins.size(); ++s) {
            auto *child = new QTreeWidgetItem(root, { found.skins[s].label });
            child->setData(0, KeyRole, PlayerModels::nodeKey(found, &found.skins[s]));
            child->setData(0, ModelRole, m);
            child->setData(0, SkinRole, s);
            child->setIcon(0, model);
        }
        roots.append(root);
    }
    m_nodes->addTopLevelItems(roots);
}

bool frmMdls::selectValue(const QString &value)
{
    for (int m = 0; m < m_nodes->topLevelItemCount(); ++m) {
        QTreeWidgetItem *root = m_nodes->topLevelItem(m);
        QTreeWidgetItem *match = fullPath(root).toLower() == value ? root : nullptr;
        for (int s = 0; !match && s < root->childCount(); ++s) {
            if (fullPath(root->child(s)).toLower() == value)
                match = root->child(s);
        }
        if (match) {
            {
                const QSignalBlocker quiet(m_nodes);
                m_nodes->setCurrentItem(match);
            }
            m_nodes->scrollToItem(match);
            showPicture(match);
            return true;
        }
    }
    const QSignalBlocker quiet(m_nodes);
    m_nodes->setCurrentItem(nullptr);
    m_picture->clear();
    return false;
}

void frmMdls::nodeClicked(QTreeWidgetItem *node)
{
    m_selected->setText(fullPath(node));
    m_ok->setEnabled(!m_scanning);
    showPicture(node);
}

void frmMdls::showPicture(const QTreeWidgetItem *node)
{
    m_picture->clear();
    const int m = node->data(0, ModelRole).toInt();
    if (m < 0 || m >= m_tree.models.size())
        return;
    const PlayerModels::Model &model = m_tree.models[m];
    int s = node->data(0, SkinRole).toInt();
    if (s < 0) {
        // A model alone plays in its default skin, else the first it has.
        s = 0;
        for (int k = 0; k < model.skins.size(); ++k) {
            if (model.skins[k].label.compare(QStringLiteral("default"), Qt::CaseInsensitive) == 0)
                s = k;
        }
    }
    if (s >= model.skins.size())
        return;
    const TgaImage::Picture decoded = m_icons.icon(model.skins[s]);
    if (decoded.isNull())
        return;
    const QImage icon(reinterpret_cast<const uchar *>(decoded.pixels.constData()), decoded.width, decoded.height,
        qsizetype(decoded.width) * 4, decoded.hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const qreal ratio = devicePixelRatioF();
    QPixmap picture = QPixmap::fromImage(
        icon.scaled(QSize(PictureSize - 4, PictureSize - 4) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    picture.setDevicePixelRatio(ratio);
    m_picture->setPixmap(picture);
}

void frmMdls::accept()
{
    if (m_scanning)
        return;
    m_result.cancelled = false;
    m_result.model = m_selected->text().toLower();
    QDialog::accept();
}

void frmMdls::reject()
{
    // Esc and the close box wait for a running scan, as the disabled Cancel does.
    if (m_scanning)
        return;
    m_result.cancelled = true;
    QDialog::reject();
}

void frmMdls::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (!m_scanWhenShown)
        return;
    m_scanWhenShown = false;
    m_scanning = true; // Esc and the close box wait too
    m_ok->setEnabled(false);
    m_cancel->setEnabled(false);
    m_refresh->setEnabled(false);
    QTimer::singleShot(0, this, [this] {
        // The dialog draws itself before the scan holds the thread.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        m_scanning = false;
        Refresh();
        m_refresh->setEnabled(true);
        m_cancel->setEnabled(true);
        preselect(m_caption); // as if the tree had been there before the opening
    });
}

void frmMdls::closeEvent(QCloseEvent *event)
{
    if (m_scanning) {
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}
