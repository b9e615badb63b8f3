#include "AllVariablesPage.h"

#include "ConfigReader.h"
#include "Prompts.h"
#include "SettingCatalog.h"
#include "ShellWindow.h"
#include "VariablesModel.h"
#include "frmAddVar.h"

#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QPushButton>
#include <QShowEvent>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace {

const QString filterHelp = QStringLiteral(
    "Type part of a name or a value: the table shows only the variables that hold it, whatever the case.");
const QString tableHelp = QStringLiteral(
    "Every variable of the configuration. A setting with a page is the control of that page; the others are lines "
    "Tarnwick writes back as they stand. Double-click a value to change it; click a column's heading to sort by it.");
const QString addHelp = QStringLiteral(
    "Adds a variable by name and value. A setting shown on a page takes the value into its control; any other name "
    "gets a line of its own (seta NAME \"VALUE\"), or a new value in the line it already has.");
const QString removeHelp = QStringLiteral(
    "Removes the lines of the selected variables from the configuration. The settings shown on the pages are always "
    "written, so they can't be removed.");
const QString droppedHelp = QStringLiteral(
    "Lines of the file read last that a save does not write back: console commands, variables without set or seta, "
    "lines that start with a blank, keys bound to none of the 37 actions. The first save over a file Tarnwick did not "
    "write keeps the original beside it as NAME.orig.");

// The dropped lines the page lists at most; the caption says how many there are.
constexpr qsizetype listedDropped = 1000;

QString countText(int shown, int all)
{
    const QLocale locale;
    const QString total = all == 1 ? QStringLiteral("1 variable") : locale.toString(all) + QStringLiteral(" variables");
    return shown == all ? total : locale.toString(shown) + QStringLiteral(" of ") + total;
}

} // namespace

AllVariablesPage::AllVariablesPage(ConfigDocument &doc, ShellWindow &shell, QWidget *parent)
    : QWidget(parent)
    , m_doc(doc)
    , m_shell(shell)
    , m_model(new VariablesModel(doc, this))
    , m_filter(new VariablesFilter(m_model, this))
    , m_filterField(new QLineEdit(this))
    , m_count(new QLabel(this))
    , m_view(new QTableView(this))
    , m_add(new QPushButton(QStringLiteral("&Add..."), this))
    , m_remove(new QPushButton(QStringLiteral("&Remove"), this))
    , m_droppedCaption(new QLabel(this))
    , m_dropped(new QTreeWidget(this))
{
    m_filterField->setObjectName(QStringLiteral("txtFilter"));
    m_filterField->setClearButtonEnabled(true);
    m_filterField->setPlaceholderText(QStringLiteral("Name or value"));
    m_count->setObjectName(QStringLiteral("lblVarCount"));
    connect(m_filterField, &QLineEdit::textChanged, m_filter, &VariablesFilter::setFilterText);

    m_view->setObjectName(QStringLiteral("lvVars"));
    m_view->setModel(m_filter);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setEditTriggers(
        QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_view->setTabKeyNavigation(false);
    m_view->setWordWrap(false);
    m_view->viewport()->setMouseTracking(true);
    // Every row is one line high, so thousands of rows are never measured one by one.
    QHeaderView *rows = m_view->verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(fontMetrics().height() + 4);
    QHeaderView *columns = m_view->horizontalHeader();
    columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    columns->setHighlightSections(false);
    columns->setStretchLastSection(true);
    const int letter = fontMetrics().averageCharWidth();
    const int widths[] = { 24 * letter, 22 * letter, 8 * letter };
    for (int column = VariablesModel::NameColumn; column < VariablesModel::PageColumn; ++column)
        columns->resizeSection(column, std::max(widths[column], columns->sectionSizeHint(column)));
    columns->setSortIndicator(VariablesModel::NameColumn, Qt::AscendingOrder);
    m_view->setSortingEnabled(true);

    m_add->setObjectName(QStringLiteral("cmdAddVar"));
    m_remove->setObjectName(QStringLiteral("cmdRemoveVar"));
    connect(m_add, &QPushButton::clicked, this, &AllVariablesPage::addVariable);
    connect(m_remove, &QPushButton::clicked, this, &AllVariablesPage::removeSelected);

    m_droppedCaption->setObjectName(QStringLiteral("lblDropped"));
    m_dropped->setObjectName(QStringLiteral("lvDropped"));
    m_dropped->setHeaderLabels({ QStringLiteral("Line"), QStringLiteral("Text"), QStringLiteral("Reason") });
    m_dropped->setRootIsDecorated(false);
    m_dropped->setUniformRowHeights(true);
    m_dropped->setSelectionMode(QAbstractItemView::NoSelection);
    m_dropped->setFocusPolicy(Qt::NoFocus);
    m_dropped->header()->resizeSection(0, 6 * letter);
    m_dropped->header()->resizeSection(1, 40 * letter);
    // Greyed, as a disabled list reads, yet it still scrolls.
    QPalette grey = m_dropped->palette();
    grey.setColor(QPalette::Text, grey.color(QPalette::Disabled, QPalette::Text));
    m_dropped->setPalette(grey);
    m_dropped->setMaximumHeight(rows->defaultSectionSize() * 5 + m_dropped->header()->sizeHint().height() + 4);
    m_droppedCaption->hide();
    m_dropped->hide();

    auto *top = new QHBoxLayout;
    auto *filterLabel = new QLabel(QStringLiteral("&Filter:"), this);
    filterLabel->setBuddy(m_filterField);
    top->addWidget(filterLabel);
    top->addWidget(m_filterField, 1);
    top->addWidget(m_count);
    top->addSpacing(12);
    top->addWidget(m_add);
    top->addWidget(m_remove);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(3, 3, 3, 3);
    layout->setSpacing(4);
    layout->addLayout(top);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_droppedCaption);
    layout->addWidget(m_dropped);

    for (QObject *helped : std::initializer_list<QObject *> {
             m_filterField, m_count, m_view->viewport(), m_add, m_remove, m_droppedCaption, m_dropped->viewport() })
        helped->installEventFilter(this);
    connect(m_model, &VariablesModel::editRefused, this, [this](const QString &why) {
        Prompts::ask(m_shell.widget(), Prompts::programTitle(), why, QMessageBox::Ok, QMessageBox::Warning);
    });
    // After the filter's own handling of each: the count of rows shown, and whether any selected can go.
    connect(m_filterField, &QLineEdit::textChanged, this, &AllVariablesPage::updateState);
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &AllVariablesPage::updateState);
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, &AllVariablesPage::updateState);
    connect(m_model, &QAbstractItemModel::modelReset, this, &AllVariablesPage::updateState);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &AllVariablesPage::updateState);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &AllVariablesPage::updateState);
    updateState();
}

QString AllVariablesPage::selectionHelp()
{
    return QStringLiteral("Every variable of the configuration: the settings of the pages and the lines Tarnwick "
                          "keeps for all others. Type in the filter to find one; double-click a value to change it.");
}

void AllVariablesPage::showDroppedLines(const QString &path, const DroppedLines &dropped)
{
    const QString name = QFileInfo(path).fileName();
    m_dropped->clear();
    m_droppedCaption->setText(dropped.count == 0
            ? QStringLiteral("A save keeps every line of %1 (comments and blank lines aside).").arg(name)
            : QStringLiteral("Lines of %1 a save does not keep (%2):").arg(name, QLocale().toString(dropped.count)));
    QList<QTreeWidgetItem *> items;
    for (const auto &[number, line] : dropped.lines) {
        if (items.size() == listedDropped)
            break;
        items.append(new QTreeWidgetItem(
            { QString::number(number), QString::fromLatin1(line), ConfigReader::dropReason(line) }));
    }
    if (dropped.count > items.size())
        items.append(new QTreeWidgetItem({ QString(),
            QStringLiteral("... and %1 more").arg(QLocale().toString(dropped.count - items.size())), QString() }));
    m_dropped->addTopLevelItems(items);
    m_droppedCaption->show();
    m_dropped->setVisible(dropped.count > 0);
}

void AllVariablesPage::addVariable()
{
    if (!m_addDialog)
        m_addDialog = new frmAddVar(m_shell.widget());
    m_addDialog->prepare();
    if (m_shell.ShowForm(m_addDialog, true) != QDialog::Accepted)
        return;
    const QString name = m_addDialog->variableName();
    QString error;
    const Variables::Change change = Variables::setVariable(m_doc, name, m_addDialog->value(), &error);
    if (change == Variables::Change::Refused) {
        Prompts::ask(m_shell.widget(), Prompts::programTitle(), error, QMessageBox::Ok, QMessageBox::Warning);
        return;
    }
    selectVariable(name);
    if (change == Variables::Change::Setting) {
        const SettingRow &r = SettingCatalog::instance().row(SettingCatalog::instance().indexOfSetting(name));
        m_shell.SetText(QStringLiteral("%1 is a setting of the %2 page: its control took the value.")
                            .arg(r.name, m_model->text(m_model->rowOf(name), VariablesModel::PageColumn)),
            MsgType::Information);
    }
}

void AllVariablesPage::removeSelected()
{
    QList<int> rows;
    for (const QModelIndex &index : m_view->selectionModel()->selectedRows())
        rows.append(m_filter->mapToSource(index).row());
    std::sort(rows.begin(), rows.end(), std::greater<>());
    for (int row : rows)
        m_model->removeRows(row, 1);
}

void AllVariablesPage::selectVariable(const QString &name)
{
    const int row = m_model->rowOf(name);
    if (row < 0)
        return;
    QModelIndex shown = m_filter->mapFromSource(m_model->index(row, VariablesModel::ValueColumn));
    if (!shown.isValid()) {
        m_filterField->clear();
        shown = m_filter->mapFromSource(m_model->index(row, VariablesModel::ValueColumn));
    }
    m_view->setCurrentIndex(shown);
    m_view->scrollTo(shown);
}

QString AllVariablesPage::rowHelp(int sourceRow) const
{
    const QString name = m_model->text(sourceRow, VariablesModel::NameColumn);
    const int row = m_model->catalogRow(sourceRow);
    if (row < 0) {
        // A setting's line kept from a partial read: the setting's own line, written after it, is the one that counts.
        if (SettingCatalog::instance().indexOfSetting(name) >= 0)
            return QStringLiteral("This line of %1 is written back as it stands, before the setting's own line, "
                                  "which the game takes.")
                .arg(name);
        return QStringLiteral("%1 has no control in Tarnwick: its line is written back as it stands. A value typed "
                              "here rewrites the line in its place.")
            .arg(name);
    }
    // The setting's own help, as its control shows it.
    const SettingRow &r = SettingCatalog::instance().row(row);
    const int state = r.count == 1 ? m_doc.state(row) : 0;
    const QString key = r.kind == ControlKind::OptionPair ? r.control + u'(' + QString::number(state) + u')'
        : r.count == 1                                    ? r.control
                                                          : QString();
    const auto help = SettingCatalog::instance().help(key, state, m_doc.state(QStringLiteral("chkMarks")) != 0);
    const QString where = QStringLiteral("%1 is a setting of the %2 page.")
                              .arg(name, m_model->text(sourceRow, VariablesModel::PageColumn));
    return help ? where + u' ' + help->text : where;
}

bool AllVariablesPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_view->viewport() && event->type() == QEvent::MouseMove) {
        const QModelIndex index = m_view->indexAt(static_cast<QMouseEvent *>(event)->position().toPoint());
        const int row = index.isValid() ? m_filter->mapToSource(index).row() : -1;
        if (row != m_hoveredRow) {
            m_hoveredRow = row;
            m_shell.SetText(row < 0 ? tableHelp : rowHelp(row), MsgType::Information);
        }
    } else if (event->type() == QEvent::Enter) {
        m_hoveredRow = -1;
        const QString text = watched == m_filterField || watched == m_count ? filterHelp
            : watched == m_view->viewport()                                 ? tableHelp
            : watched == m_add                                              ? addHelp
            : watched == m_remove                                           ? removeHelp
                                                                            : droppedHelp;
        m_shell.SetText(text, MsgType::Information);
    }
    return QWidget::eventFilter(watched, event);
}

void AllVariablesPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) // not when the window comes back from the task bar
        m_filterField->setFocus();
}

void AllVariablesPage::updateState()
{
    m_count->setText(countText(m_filter->rowCount(), m_model->rowCount()));
    const QModelIndexList selected = m_view->selectionModel()->selectedRows();
    m_remove->setEnabled(std::any_of(selected.cbegin(), selected.cend(),
        [this](const QModelIndex &index) { return m_model->keptIndex(m_filter->mapToSource(index).row()) >= 0; }));
}
