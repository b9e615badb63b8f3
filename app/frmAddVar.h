// frmAddVar: asks for the name and value of a variable to add on the All Variables page.
#pragma once

#include <QDialog>

class QLineEdit;

class frmAddVar : public QDialog
{
    Q_OBJECT

public:
    explicit frmAddVar(QWidget *parent = nullptr);

    /// Both fields empty, the name's ready for typing.
    void prepare();
    /// The name without the blanks around it.
    QString variableName() const;
    QString value() const;

public Q_SLOTS:
    /// A name or value the document would refuse is said in a box, and the dialog stays.
    void accept() override;

private:
    QLineEdit *m_name;
    QLineEdit *m_value;
};
