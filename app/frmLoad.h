// frmLoad: the small splash window that asks for patience while the program starts or reads a
// configuration file; reading one happens while it shows.
#pragma once

#include <QDialog>
#include <functional>

class QLabel;

class frmLoad : public QDialog
{
    Q_OBJECT

public:
    explicit frmLoad(QWidget *parent = nullptr);

    /// The two sentences shown while the program starts, or while it reads a configuration file.
    static QString message(bool loadingConfiguration);
    /// Shows itself modally with the message for `loadingConfiguration`, runs `work` once its text is
    /// painted, and hides.
    void runModal(bool loadingConfiguration, const std::function<void()> &work);
    /// Shows itself, not modal, with the start-up message, and lets it be painted.
    void showStartUp();
    QString text() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void showOnScreen();

    QLabel *m_text;
};
