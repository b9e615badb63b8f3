// Pk3ExplorerPage: the PK3 Explorer page — the files of one game archive in a sortable list (name,
// extension, type, folder), with Open and Close. The main window puts it in its page area and shows the
// page's title in its title strip.
#pragma once

#include "cUnzip.h"

#include <QWidget>
#include <optional>

class QPushButton;
class QTableView;

class Pk3ExplorerPage : public QWidget
{
    Q_OBJECT

public:
    enum Column { NameColumn, ExtensionColumn, TypeColumn, PathColumn, ColumnCount };
    /// The list's role giving a row's FileIcons key (".MD3", "DEFAULT").
    static constexpr int IconKeyRole = Qt::UserRole;

    explicit Pk3ExplorerPage(QWidget *parent = nullptr);
    ~Pk3ExplorerPage() override;

    /// The archive the list shows; empty when none.
    QString CurrentPK3Path() const { return m_currentPath; }
    /// "PK3 Explorer", or "PK3 Explorer - <archive>" while one is shown.
    QString title() const { return m_title; }
    /// The reader holding the shown archive's entries.
    const cUnzip &reader() const { return m_reader; }

    /// Shows the archive at `path`, asking for one when `path` is empty. Every refusal or failure is told in
    /// a box and leaves the page as it was. True when the archive is shown.
    bool LoadPK3(QString path);
    /// Empties the list and forgets the archive.
    void ClosePK3();

Q_SIGNALS:
    void titleChanged(const QString &title);

private:
    class EntryModel;

    bool readArchive(const QString &path, cUnzip &reader);
    void showArchive(const QString &path, cUnzip &&reader);
    void sortByHeader(int column);
    void setTitle(const QString &title);
    void updateButtons();

    cUnzip m_reader;
    QString m_currentPath;
    QString m_title;
    int m_sortColumn = -1; // -1 while the list keeps the archive's order
    std::optional<Qt::SortOrder> m_sortOrder; // none before the first sort
    EntryModel *m_model = nullptr;
    QTableView *m_list = nullptr;
    QPushButton *m_open = nullptr;
    QPushButton *m_close = nullptr;
};
