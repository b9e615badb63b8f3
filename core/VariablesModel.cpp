#include "VariablesModel.h"

#include "SettingMapping.h"

namespace {

const SettingCatalog &catalog()
{
    return SettingCatalog::instance();
}

QString pageOf(const SettingRow &r)
{
    return r.subPage.isEmpty() ? r.page : r.page + QStringLiteral(" - ") + r.subPage;
}

QString valueOf(const ConfigDocument &doc, const SettingRow &r)
{
    return SettingMapping::fileValue(r, &doc.values()[r.firstSlot]);
}

} // namespace

VariablesModel::VariablesModel(ConfigDocument &doc, QObject *parent)
    : QAbstractTableModel(parent)
    , m_doc(doc)
    , m_rowOfCatalog(size_t(catalog().rows().size()), -1)
{
    for (int row = 0; row < catalog().rows().size(); ++row) {
        const SettingRow &r = catalog().row(row);
        if (r.isStored() && !r.name.isEmpty()) {
            m_rowOfCatalog[size_t(row)] = int(m_settings.size());
            m_settings.push_back(row);
        }
    }
    connect(&m_doc, &ConfigDocument::contentReset, this, &VariablesModel::reload);
    connect(&m_doc, &ConfigDocument::valueChanged, this, &VariablesModel::onValueChanged);
    connect(&m_doc, &ConfigDocument::keptLineChanged, this, &VariablesModel::onKeptLineChanged);
    connect(&m_doc, &ConfigDocument::keptLineInserted, this, &VariablesModel::onKeptLineInserted);
    connect(&m_doc, &ConfigDocument::keptLineRemoved, this, &VariablesModel::onKeptLineRemoved);
    reload();
}

int VariablesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int VariablesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

const QString &VariablesModel::text(int row, int column) const
{
    const Row &r = m_rows[size_t(row)];
    switch (column) {
    case NameColumn:
        return r.name;
    case ValueColumn:
        return r.value;
    case KeywordColumn:
        return r.keyword;
    default:
        return r.page;
    }
}

QVariant VariablesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return QVariant();
    return text(index.row(), index.column());
}

QVariant VariablesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QString captions[ColumnCount]
        = { QStringLiteral("Name"), QStringLiteral("Value"), QStringLiteral("Keyword"), QStringLiteral("Page") };
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < ColumnCount)
        return captions[section];
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags VariablesModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    // A kept line that names no variable has no value to change.
    if (index.isValid() && index.column() == ValueColumn && !text(index.row(), NameColumn).isEmpty())
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool VariablesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != ValueColumn || role != Qt::EditRole)
        return false;
    const QString typed = value.toString();
    // An editor closed without a change changes nothing, not even a line's quotes.
    if (typed == text(index.row(), ValueColumn))
        return true;
    if (const int row = catalogRow(index.row()); row >= 0) {
        Variables::setSetting(m_doc, row, typed);
        return true;
    }
    QString why;
    if (!Variables::setKeptValue(m_doc, keptIndex(index.row()), typed, &why)) {
        Q_EMIT editRefused(why);
        return false;
    }
    return true;
}

bool VariablesModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row + count > rowCount())
        return false;
    bool removed = false;
    // From the last, so the rows still to go keep their numbers.
    for (int r = row + count - 1; r >= row; --r) {
        if (const int kept = keptIndex(r); kept >= 0) {
            m_doc.removeKeptLine(kept);
            removed = true;
        }
    }
    return removed;
}

int VariablesModel::catalogRow(int row) const
{
    return row >= 0 && row < settingCount() ? m_settings[size_t(row)] : -1;
}

int VariablesModel::keptIndex(int row) const
{
    return row >= settingCount() && row < rowCount() ? row - settingCount() : -1;
}

int VariablesModel::rowOf(QStringView name) const
{
    if (const int row = catalog().indexOfSetting(name); row >= 0)
        return m_rowOfCatalog[size_t(row)];
    const int kept = Variables::lastKeptLineOf(m_doc, name);
    return kept < 0 ? -1 : settingCount() + kept;
}

VariablesModel::Row VariablesModel::keptRow(const QString &line)
{
    Variables::KeptVariable v = Variables::parseKeptLine(line);
    return { std::move(v.name), std::move(v.value), std::move(v.keyword), QString() };
}

void VariablesModel::reload()
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(m_settings.size() + size_t(m_doc.keptLines().size()));
    for (int row : m_settings) {
        const SettingRow &r = catalog().row(row);
        m_rows.push_back({ r.name, valueOf(m_doc, r), QStringLiteral("seta"), pageOf(r) }); // as the writer writes it
    }
    for (const QString &line : m_doc.keptLines())
        m_rows.push_back(keptRow(line));
    endResetModel();
}

void VariablesModel::onValueChanged(int row)
{
    const int at = m_rowOfCatalog[size_t(row)];
    if (at < 0)
        return;
    QString value = valueOf(m_doc, catalog().row(row));
    if (value == m_rows[size_t(at)].value)
        return;
    m_rows[size_t(at)].value = std::move(value);
    Q_EMIT dataChanged(index(at, ValueColumn), index(at, ValueColumn));
}

void VariablesModel::onKeptLineChanged(int kept)
{
    const int at = settingCount() + kept;
    m_rows[size_t(at)] = keptRow(m_doc.keptLines().at(kept));
    Q_EMIT dataChanged(index(at, 0), index(at, ColumnCount - 1));
}

void VariablesModel::onKeptLineInserted(int kept)
{
    const int at = settingCount() + kept;
    beginInsertRows(QModelIndex(), at, at);
    m_rows.insert(m_rows.begin() + at, keptRow(m_doc.keptLines().at(kept)));
    endInsertRows();
}

void VariablesModel::onKeptLineRemoved(int kept)
{
    const int at = settingCount() + kept;
    beginRemoveRows(QModelIndex(), at, at);
    m_rows.erase(m_rows.begin() + at);
    endRemoveRows();
}

VariablesFilter::VariablesFilter(VariablesModel *source, QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_model(source)
{
    setSourceModel(source);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    sort(VariablesModel::NameColumn, Qt::AscendingOrder);
}

void VariablesFilter::setFilterText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    invalidate();
}

bool VariablesFilter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (sourceParent.isValid())
        return false;
    if (m_text.isEmpty())
        return true;
    return m_model->text(sourceRow, VariablesModel::NameColumn).contains(m_text, Qt::CaseInsensitive)
        || m_model->text(sourceRow, VariablesModel::ValueColumn).contains(m_text, Qt::CaseInsensitive);
}
