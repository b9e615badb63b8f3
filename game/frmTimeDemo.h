// frmTimeDemo: the Run Timedemo dialog — the demos the game folder holds, and Start, which runs the selected one
// as a timedemo and leaves the dialog open for the next.
#pragma once

#include "GameLaunch.h"

#include <QDialog>

class QCheckBox;
class QListWidget;
class QPushButton;

class frmTimeDemo : public QDialog
{
    Q_OBJECT

public:
    /// `gameFolder` is the game folder the program settings hold; a folder chosen when the game is looked for
    /// is stored there.
    explicit frmTimeDemo(QString &gameFolder, QWidget *parent = nullptr);

    /// What each opening does: both check boxes cleared, the list filled when the folder holds the game, else
    /// left empty with Start disabled.
    void load();
    /// Fills the list afresh (also Refresh). Archives that could not be read are named together in one box.
    void FillDemoList();

Q_SIGNALS:
    /// A demo started with "Exit Tarnwick before starting the demo" checked: the program should close.
    void exitRequested();

private:
    void start();
    void showDemos(const QList<GameLaunch::Demo> &demos);

    QString &m_gameFolder;
    QList<GameLaunch::Demo> m_demos; // in the list's order
    QListWidget *m_list;
    QCheckBox *m_loop;
    QCheckBox *m_exit;
    QPushButton *m_start;
};
