// frmPassword: asks for the client password that the Server page's button holds.
#pragma once

#include <QDialog>

class QLineEdit;

class frmPassword : public QDialog
{
    Q_OBJECT

public:
    explicit frmPassword(QWidget *parent = nullptr);

    /// Prefills the field (with what the calling button holds).
    void setPassword(const QString &password);
    QString password() const;

private:
    QLineEdit *m_txtPass;
};
