// Keys: the key button of one action — two halves side by side, the first key left, the second right.
#pragma once

#include <QColor>
#include <QWidget>

class Keys : public QWidget
{
    Q_OBJECT

public:
    enum class Half { None, Left, Right };

    explicit Keys(QWidget *parent = nullptr);

    /// Redraws both halves raised.
    void Refresh();
    QString Caption() const { return m_caption; }
    void setCaption(const QString &caption);
    QString Caption2() const { return m_caption2; }
    void setCaption2(const QString &caption);
    QColor ForeColor() const { return m_foreColor; }
    void setForeColor(const QColor &color);
    QColor ForeColor2() const { return m_foreColor2; }
    void setForeColor2(const QColor &color);
    /// The action's command with its quotes; setting it does not redraw.
    QString Bind() const { return m_bind; }
    void setBind(const QString &bind) { m_bind = bind; }
    /// Empties both captions and redraws.
    void Clear();

    /// The half a point lies in; the split line and the outer edge belong to neither.
    Half halfAt(QPoint pos) const;
    /// The half drawn pressed just now, or None.
    Half pressedHalf() const { return m_pressed; }

    QSize sizeHint() const override;

Q_SIGNALS:
    void Click();
    void Click2();
    void MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift, int x, int y);
    void MouseDown2(Qt::MouseButton button, Qt::KeyboardModifiers shift, int x, int y);
    void MouseUp(Qt::MouseButton button, Qt::KeyboardModifiers shift, int x, int y);
    void MouseUp2(Qt::MouseButton button, Qt::KeyboardModifiers shift, int x, int y);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QString m_caption;
    QString m_caption2;
    QColor m_foreColor;
    QColor m_foreColor2;
    QString m_bind;
    Half m_held = Half::None; // the half the left button went down in
    Half m_pressed = Half::None; // the half drawn sunken
};
