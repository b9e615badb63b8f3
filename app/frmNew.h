// frmNew: asks how to start a new configuration (keep the keys, reset to defaults, clear) and its name.
#pragma once

#include "Defaults.h"

#include <QDialog>

class QLineEdit;
class QRadioButton;

class frmNew : public QDialog
{
    Q_OBJECT

public:
    explicit frmNew(QWidget *parent = nullptr);

    /// Back to "Untitled", fully selected, and mode 2 (Clear), as each time the dialog opens.
    void prepare();
    NewMode mode() const;
    /// The name typed, trimmed; "Untitled" when nothing is left.
    QString documentName() const;

private:
    QLineEdit *m_name;
    QRadioButton *m_options[3];
};
