// frmSearch: the Q3Config Search dialog — walks one place, or every place, for the game's configuration files,
// lists their full paths, and loads the chosen one as the document. The walk runs on a thread of its own; the
// dialog shows its progress and stops it on Stop, Esc or a close request.
#pragma once

#include "ConfigSearch.h"

#include <QDialog>
#include <QTimer>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class TwinLabel;

class frmSearch : public QDialog
{
    Q_OBJECT

public:
    explicit frmSearch(QWidget *parent = nullptr);

    /// What Load needs of the program: `saveChanges` asks about a modified document (false: stop), `open` opens
    /// the file as the document (true when it did; the dialog then hides).
    void setLoader(std::function<bool()> saveChanges, std::function<bool(const QString &path)> open);
    /// The places `Drive1` offers (at first ConfigSearch::places()); the one selected stays when still offered.
    void setPlaces(const QList<ConfigSearch::Place> &places);

    /// Searches `path`, or every place offered when `allDrives`, for files named `pattern`; while a search runs,
    /// asks it to stop instead.
    void Search(const QString &pattern, const QString &path, bool allDrives);
    /// The idle look (true) or the searching look (false).
    void EnableAll(bool enabled);
    bool searching() const { return m_walk.isRunning(); }

    /// "No config files found.", "Found 1 config file." or "Found N config files.".
    static QString foundText(int count);

public Q_SLOTS:
    /// Esc, Cancel and a close request: while a search runs they stop it and the dialog stays.
    void reject() override;

private:
    void cmdSearch_Click();
    void cmdLoad_Click();
    void Check1_Click();
    void showProgress();
    void searchEnded();
    void showResultCount();

    ConfigSearch::BackgroundWalk m_walk;
    QTimer m_progress;
    bool m_allDrives = false;
    bool m_stopAsked = false;
    std::function<bool()> m_saveChanges;
    std::function<bool(const QString &)> m_open;
    QCheckBox *m_check1;
    TwinLabel *m_lookIn;
    QComboBox *m_drive1;
    QComboBox *m_results;
    QLabel *m_searching;
    QLabel *m_found;
    QPushButton *m_search;
    QPushButton *m_load;
    QPushButton *m_cancel;
};
