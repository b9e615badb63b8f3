// frmMdls: the Player Model Browser — every player model and skin the installed game offers, as a tree of
// models and their skins, with the selected skin's icon beside it. Made once and hidden between uses, so the
// tree stays as last scanned until Refresh.
#pragma once

#include "PlayerModels.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// What the browser leaves for its caller when it closes.
struct ModelBrowserResult
{
    bool cancelled = false;
    QString model; // the selection in lower case: "sarge/red", or "sarge" for a model alone
};

class frmMdls : public QDialog
{
    Q_OBJECT

public:
    /// `gameFolder` is the game folder the program settings hold; a folder chosen when the game is looked for
    /// is stored there.
    explicit frmMdls(QString &gameFolder, QWidget *parent = nullptr);

    /// Before each opening: selects the first node whose model value is `caption` (without regard to case)
    /// with OK enabled; when none is, the label shows `caption` and OK is disabled until a node is clicked.
    void preselect(const QString &caption);
    /// The next showing scans once the dialog is on screen, as Refresh does (the first opening).
    void scanWhenShown() { m_scanWhenShown = true; }
    /// Scans the game afresh and selects the node the label names, if it is still there. Looks for the game
    /// first; without it the tree keeps what it had. Archives that could not be read are named in one box.
    void Refresh();

    const ModelBrowserResult &result() const { return m_result; }
    /// A node's texts from the root joined by "/" ("Sarge/Red"); its model value is that in lower case.
    static QString fullPath(const QTreeWidgetItem *node);

public Q_SLOTS:
    void accept() override;
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void fillTree(const PlayerModels::ModelTree &tree);
    /// Selects the first node whose model value is `value`; false when none is.
    bool selectValue(const QString &value);
    void nodeClicked(QTreeWidgetItem *node);
    void showPicture(const QTreeWidgetItem *node);

    QString &m_gameFolder;
    PlayerModels::ModelTree m_tree;
    PlayerModels::IconReader m_icons;
    ModelBrowserResult m_result;
    QString m_caption; // the one preselect last had
    bool m_scanning = false;
    bool m_scanWhenShown = false;
    QTreeWidget *m_nodes;
    QLabel *m_selected;
    QLabel *m_picture;
    QPushButton *m_refresh;
    QPushButton *m_ok;
    QPushButton *m_cancel;
};
