// LeftBar: the bar of page buttons at the window's left edge, with a sunken border.
#pragma once

#include <QWidget>

class LeftBar : public QWidget
{
    Q_OBJECT

public:
    explicit LeftBar(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
