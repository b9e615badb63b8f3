// frmOptions: the program's options — the game folder, the gradient look and always on top.
#pragma once

#include <QDialog>

class QCheckBox;
class QLineEdit;

class frmOptions : public QDialog
{
    Q_OBJECT

public:
    explicit frmOptions(QWidget *parent = nullptr);

    /// Fills the fields with the options in force, as each time the dialog opens.
    void prepare(const QString &gameFolder, bool gradient, bool onTop);
    /// The folder typed, without surrounding blanks; it is not checked for the game here.
    QString gameFolder() const;
    bool gradient() const;
    bool onTop() const;

private:
    void selectFolder();

    QLineEdit *m_path;
    QCheckBox *m_gradient;
    QCheckBox *m_onTop;
};
