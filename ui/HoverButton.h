// HoverButton: a flat button that rises when the mouse is over it and sinks while pressed or selected.
#pragma once

#include <QAbstractButton>

class HoverButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit HoverButton(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    bool isHovered() const { return m_hovered; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    bool m_hovered = false;
};
