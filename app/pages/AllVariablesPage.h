// AllVariablesPage: the All Variables page — every variable of the configuration in one table that a filter
// narrows (the catalogued settings tied to their controls, the kept lines of all others), Add and Remove, and
// below them, greyed, the lines of the file read last that a save does not keep.
#pragma once

#include <QPointer>
#include <QWidget>

class ConfigDocument;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class QTreeWidget;
class ShellWindow;
class VariablesFilter;
class VariablesModel;
class frmAddVar;
struct DroppedLines;

class AllVariablesPage : public QWidget
{
    Q_OBJECT

public:
    /// The Add dialog, boxes and help texts show through `shell`.
    AllVariablesPage(ConfigDocument &doc, ShellWindow &shell, QWidget *parent = nullptr);

    VariablesModel *model() const { return m_model; }
    VariablesFilter *filter() const { return m_filter; }
    QTableView *view() const { return m_view; }

    /// The help board's text when the page is selected.
    static QString selectionHelp();
    /// Lists the lines of the file `path` that its whole read did not carry.
    void showDroppedLines(const QString &path, const DroppedLines &dropped);
    /// Asks for a name and a value, then adds the variable, or gives a setting its value (the Add button).
    void addVariable();
    /// Removes the selected kept lines (the Remove button).
    void removeSelected();
    /// Shows the row of `name`, clearing the filter when it hides it.
    void selectVariable(const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    /// The page opens ready for typing in the filter.
    void showEvent(QShowEvent *event) override;

private:
    QString rowHelp(int sourceRow) const;
    void updateState();

    ConfigDocument &m_doc;
    ShellWindow &m_shell;
    VariablesModel *m_model;
    VariablesFilter *m_filter;
    QLineEdit *m_filterField;
    QLabel *m_count;
    QTableView *m_view;
    QPushButton *m_add;
    QPushButton *m_remove;
    QLabel *m_droppedCaption;
    QTreeWidget *m_dropped;
    QPointer<frmAddVar> m_addDialog;
    int m_hoveredRow = -1; // the source row whose help the board shows
};
