#include "Pk3ExplorerPage.h"

#include "FileIcons.h"
#include "GameLaunch.h"
#include "Prompts.h"
#include "WaitCursor.h"

#include <QAbstractTableModel>
#include <QDir>
#include <QHBoxLayout>
#include <QHash>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

namespace {

const QString pageTitle = QStringLiteral("PK3 Explorer");

struct Entry
{
    QString name; // without the extension; "+" marks an encrypted entry
    QString extension; // upper case, no dot
    QString type;
    QString path;
    QString iconKey;
    int order = 0; // 1 = the archive's first entry
};

// What the columns show for one extension, worked out once per archive and shared by its entries.
struct ExtensionInfo
{
    QString extension;
    QString type;
    QString iconKey;
};

class EntryMaker
{
public:
    Entry entry(const cUnzip &reader, int i)
    {
        const QString &fileName = reader.entry(i).entryName;
        const qsizetype dot = fileName.lastIndexOf(u'.');
        Entry e;
        e.name = dot < 0 ? fileName : fileName.left(dot);
        if (reader.FileEncrypted(i))
            e.name += QStringLiteral(" +");
        const ExtensionInfo &info = infoOf(fileName, dot);
        e.extension = info.extension;
        e.type = info.type;
        e.iconKey = info.iconKey;
        e.path = reader.entry(i).entryFolder;
        e.order = i;
        return e;
    }

private:
    const ExtensionInfo &infoOf(const QString &fileName, qsizetype dot)
    {
        const QString raw = dot < 0 ? QString() : fileName.mid(dot);
        auto found = m_infos.constFind(raw);
        if (found == m_infos.constEnd()) {
            const QString &sample = dot < 0 ? fileName : raw; // the extension alone decides
            found = m_infos.insert(raw,
                { raw.mid(1).toUpper(), FileIcons::typeName(sample),
                    FileIcons::iconKey(sample, QString(FileIcons::DefaultKey)) });
        }
        return *found;
    }

    QHash<QString, ExtensionInfo> m_infos; // by the extension as the archive spells it, dot included
};

const QString &textOf(const Entry &e, int column)
{
    switch (column) {
    case Pk3ExplorerPage::NameColumn:
        return e.name;
    case Pk3ExplorerPage::ExtensionColumn:
        return e.extension;
    case Pk3ExplorerPage::TypeColumn:
        return e.type;
    default:
        return e.path;
    }
}

} // namespace

// The rows of the list, kept as plain values and handed to the view in one reset, so an archive of tens of
// thousands of files shows at once.
class Pk3ExplorerPage::EntryModel : public QAbstractTableModel
{
public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : int(m_entries.size());
    }
    int columnCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : ColumnCount;
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid() || index.row() >= rowCount())
            return QVariant();
        const Entry &e = m_entries[size_t(index.row())];
        switch (role) {
        case Qt::DisplayRole:
            return textOf(e, index.column());
        case Qt::DecorationRole:
            return index.column() == NameColumn ? QVariant(FileIcons::icon(e.iconKey)) : QVariant();
        case IconKeyRole:
            return e.iconKey;
        default:
            return QVariant();
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        static const QString captions[ColumnCount]
            = { QStringLiteral("Name"), QStringLiteral("Extension"), QStringLiteral("Type"), QStringLiteral("Path") };
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < ColumnCount)
            return captions[section];
        return QAbstractTableModel::headerData(section, orientation, role);
    }

    void setEntries(std::vector<Entry> entries, int column, Qt::SortOrder order)
    {
        beginResetModel();
        m_entries = std::move(entries);
        sortEntries(column, order);
        endResetModel();
    }

    // Selected and current rows stay with their entries.
    void sort(int column, Qt::SortOrder order) override
    {
        Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
        const QModelIndexList before = persistentIndexList();
        std::vector<int> orders;
        orders.reserve(size_t(before.size()));
        for (const QModelIndex &index : before)
            orders.push_back(m_entries[size_t(index.row())].order);
        sortEntries(column, order);
        std::vector<int> rowOfOrder(m_entries.size() + 1);
        for (size_t row = 0; row < m_entries.size(); ++row)
            rowOfOrder[size_t(m_entries[row].order)] = int(row);
        QModelIndexList after;
        after.reserve(before.size());
        for (qsizetype i = 0; i < before.size(); ++i)
            after.append(index(rowOfOrder[size_t(orders[size_t(i)])], before[i].column()));
        changePersistentIndexList(before, after);
        Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    }

private:
    // Case doesn't count; entries that read alike keep the archive's order.
    void sortEntries(int column, Qt::SortOrder order)
    {
        if (column < 0 || column >= ColumnCount) {
            std::sort(
                m_entries.begin(), m_entries.end(), [](const Entry &a, const Entry &b) { return a.order < b.order; });
            return;
        }
        const bool ascending = order == Qt::AscendingOrder;
        std::sort(m_entries.begin(), m_entries.end(), [column, ascending](const Entry &a, const Entry &b) {
            const int c = QString::compare(textOf(a, column), textOf(b, column), Qt::CaseInsensitive);
            if (c != 0)
                return ascending ? c < 0 : c > 0;
            return a.order < b.order;
        });
    }

    std::vector<Entry> m_entries;
};

Pk3ExplorerPage::Pk3ExplorerPage(QWidget *parent)
    : QWidget(parent)
    , m_title(pageTitle)
    , m_model(new EntryModel(this))
    , m_list(new QTableView(this))
    , m_open(new QPushButton(QStringLiteral("Open"), this))
    , m_close(new QPushButton(QStringLiteral("Close"), this))
{
    m_list->setObjectName(QStringLiteral("lvPK3"));
    m_list->setModel(m_model);
    m_list->setShowGrid(true);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setTabKeyNavigation(false);
    m_list->setWordWrap(false);
    m_list->setIconSize(QSize(16, 16));
    // Every row is one line high, so the view never measures rows one by one.
    QHeaderView *rows = m_list->verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(std::max(fontMetrics().height(), 16) + 4);
    QHeaderView *columns = m_list->horizontalHeader();
    columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    columns->setHighlightSections(false);
    columns->setSectionsClickable(true);
    columns->setSortIndicatorShown(true);
    columns->setSortIndicator(-1, Qt::AscendingOrder);
    columns->setStretchLastSection(true);
    // Room for typical names and types; the captions always fit with their sort arrow.
    const int letter = fontMetrics().averageCharWidth();
    const int widths[] = { 22 * letter, 0, 28 * letter };
    for (int column = NameColumn; column < PathColumn; ++column)
        columns->resizeSection(column, std::max(widths[column], columns->sectionSizeHint(column)));
    connect(columns, &QHeaderView::sectionClicked, this, &Pk3ExplorerPage::sortByHeader);

    m_open->setObjectName(QStringLiteral("cmdOpenPak"));
    m_close->setObjectName(QStringLiteral("cmdClose"));
    connect(m_open, &QPushButton::clicked, this, [this] { LoadPK3(QString()); });
    connect(m_close, &QPushButton::clicked, this, &Pk3ExplorerPage::ClosePK3);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_open);
    buttons->addWidget(m_close);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(3, 3, 3, 3);
    layout->setSpacing(4);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    updateButtons();
}

Pk3ExplorerPage::~Pk3ExplorerPage() = default;

bool Pk3ExplorerPage::LoadPK3(QString path)
{
    path = Prompts::fileOfKind(
        this, path, [](const QString &name) { return name.right(3).toUpper() == QLatin1String("PK3"); },
        QStringLiteral("This isn't an PK3 file."), QStringLiteral("Quake 3 Pak File (*.pk3)|*.pk3"),
        QStringLiteral("pk3"), QString());
    if (path.isEmpty()) {
        updateButtons();
        return false;
    }
    if (path == m_currentPath
        && Prompts::ask(this, Prompts::programTitle(),
               QStringLiteral("File you are trying to load is currently open by Tarnwick.\n"
                              "Would you like to re-open it?"),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::Question)
            != QMessageBox::Yes)
        return false;

    // The archive is read aside, so a refused or unreadable one leaves the shown archive and its reader alone.
    cUnzip reader = m_reader;
    if (!readArchive(path, reader))
        return false;
    if (reader.FileCount() == 0
        && Prompts::ask(this, Prompts::programTitle(),
               QStringLiteral("This pak file contains no files. Would you like to load it?"),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning)
            != QMessageBox::Yes) {
        updateButtons();
        return false;
    }
    showArchive(path, std::move(reader));
    return true;
}

bool Pk3ExplorerPage::readArchive(const QString &path, cUnzip &reader)
{
    QString error;
    bool read = false;
    {
        const WaitCursor wait;
        reader.setZipFile(path);
        // A large archive takes a while: the event loop keeps turning, so the window repaints.
        read = reader.Directory(&error, GameLaunch::eventLoopTurns());
    }
    if (read)
        return true;
    // The reader's reason usually names the archive already.
    const QString text = error.contains(path)
        ? error
        : QStringLiteral("Can't read the pak file \"%1\": %2")
              .arg(QDir::toNativeSeparators(path),
                  error.isEmpty() ? QStringLiteral("it isn't a zip archive, or it is damaged") : error);
    Prompts::ask(this, Prompts::programTitle(), text, QMessageBox::Ok, QMessageBox::Critical);
    return false;
}

void Pk3ExplorerPage::showArchive(const QString &path, cUnzip &&reader)
{
    const WaitCursor wait;
    std::vector<Entry> entries;
    entries.reserve(size_t(reader.FileCount()));
    EntryMaker maker;
    // A large archive takes a while: the event loop keeps turning, so the window repaints.
    const std::function<void()> turn = GameLaunch::eventLoopTurns();
    for (int i = 1; i <= reader.FileCount(); ++i) {
        entries.push_back(maker.entry(reader, i));
        if (i % 1024 == 1)
            turn();
    }
    m_model->setEntries(std::move(entries), m_sortColumn, m_sortOrder.value_or(Qt::AscendingOrder));
    m_list->scrollToTop();
    m_reader = std::move(reader);
    m_currentPath = path;
    setTitle(pageTitle + QStringLiteral(" - ") + path);
    updateButtons();
}

void Pk3ExplorerPage::ClosePK3()
{
    m_reader.setZipFile(QString());
    m_model->setEntries({}, m_sortColumn, Qt::AscendingOrder);
    m_currentPath.clear();
    setTitle(pageTitle);
    updateButtons();
}

// Every click flips the order, also when it picks another column.
void Pk3ExplorerPage::sortByHeader(int column)
{
    m_sortOrder = m_sortOrder == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_sortColumn = column;
    m_list->horizontalHeader()->setSortIndicator(column, *m_sortOrder);
    const WaitCursor wait;
    m_model->sort(column, *m_sortOrder);
}

void Pk3ExplorerPage::setTitle(const QString &title)
{
    if (title == m_title)
        return;
    m_title = title;
    Q_EMIT titleChanged(m_title);
}

void Pk3ExplorerPage::updateButtons()
{
    m_close->setEnabled(!m_currentPath.isEmpty());
}
