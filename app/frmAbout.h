// frmAbout: the about box — program name and version, credits with e-mail links, OK.
#pragma once

#include <QDialog>

class QLabel;

class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent = nullptr);

    /// "Tarnwick", a line break, "v" + major + "." + minor + " (BETA)".
    static QString programNameText(int major, int minor);

Q_SIGNALS:
    /// A credit's e-mail link was clicked; the window opens it with the desktop's URL handler.
    void linkActivated(const QUrl &url);
};
