// TwinLabel: a caption that exists twice — the normal label and its greyed twin (name + "Dis"),
// the twin shown while the control it names is disabled.
#pragma once

#include <QWidget>

class QLabel;

class TwinLabel : public QWidget
{
    Q_OBJECT

public:
    /// Labels named `name` and `disabledName`, both showing `text`.
    TwinLabel(const QString &name, const QString &disabledName, QWidget *parent = nullptr);

    QString text() const;
    void setText(const QString &text);
    void setAlignment(Qt::Alignment alignment);
    /// Shows the normal label when `on`, the greyed twin otherwise.
    void setActive(bool on);
    QLabel *normal() const { return m_normal; }
    QLabel *greyed() const { return m_greyed; }

private:
    QLabel *m_normal;
    QLabel *m_greyed;
};
