// VariablesModel: a table of every variable the document holds — one row for each catalogued setting, then
// one for each kept line — that follows the document and edits it. VariablesFilter narrows and sorts it.
#pragma once

#include "ConfigDocument.h"
#include "Variables.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <vector>

class VariablesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, ValueColumn, KeywordColumn, PageColumn, ColumnCount };

    explicit VariablesModel(ConfigDocument &doc, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// A value typed for a setting goes through its read rule into its control; one for a kept line rewrites
    /// the line. A value the line can't hold is refused (editRefused says why).
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    /// Removes kept lines; rows of settings stay (the writer always writes them).
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    /// What a cell shows.
    const QString &text(int row, int column) const;
    /// How many rows are catalogued settings: they come first.
    int settingCount() const { return int(m_settings.size()); }
    /// The catalogue row of a model row, -1 for a kept line.
    int catalogRow(int row) const;
    /// The kept line of a model row, -1 for a setting.
    int keptIndex(int row) const;
    /// The row of a variable: its setting, else its last kept line (the one the game takes); -1 when none.
    int rowOf(QStringView name) const;

Q_SIGNALS:
    void editRefused(const QString &why);

private:
    struct Row
    {
        QString name;
        QString value;
        QString keyword;
        QString page;
    };
    const Row &rowAt(int row) const;
    static Row keptRow(const QString &line);
    void reload();
    void onValueChanged(int catalogRow);
    void onKeptLineChanged(int index);
    void onKeptLineInserted(int index);
    void onKeptLineRemoved(int index);

    ConfigDocument &m_doc;
    std::vector<int> m_settings; // catalogue rows, in catalogue order
    std::vector<int> m_rowOfCatalog; // catalogue row to model row, -1 for none
    std::vector<Row> m_rows; // what each row shows, settings first
};

/// The rows whose name or value holds the filter text, without regard to case, sorted by a column (by name,
/// without regard to case, to begin with).
class VariablesFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// Sorted by name to begin with.
    explicit VariablesFilter(VariablesModel *source, QObject *parent = nullptr);

    QString filterText() const { return m_text; }
    void setFilterText(const QString &text);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    const VariablesModel *m_model;
    QString m_text;
};
