// TitleStrip: the strip above the pages that names the current page, over a colour gradient.
#pragma once

#include <QImage>
#include <QWidget>

class TitleStrip : public QWidget
{
    Q_OBJECT

public:
    explicit TitleStrip(QWidget *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);
    bool gradient() const { return m_gradient; }
    /// Off: a flat button-shadow strip.
    void setGradient(bool on);
    QSize sizeHint() const override;

    /// The strip's background: columns painted from the right edge to the left, blending channel by
    /// channel from `face` at the right edge to `shadow` at the left; every column `shadow` when
    /// `gradient` is false or the screen has 8 bits per pixel or fewer.
    static QImage DrawGrad(QSize size, const QColor &face, const QColor &shadow, bool gradient, int screenDepth);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void repaintBackground();

    QString m_text;
    bool m_gradient = true;
    QImage m_background; // kept between paints, as the strip's persistent image
};
