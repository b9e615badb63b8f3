// LinkLabel: a label that opens its address when clicked — red while the button is held, blue again after.
#pragma once

#include <QLabel>
#include <QUrl>

class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    LinkLabel(const QString &text, const QUrl &url, QWidget *parent = nullptr);

    QUrl url() const { return m_url; }
    bool isHeld() const { return m_held; }

Q_SIGNALS:
    /// The left button was released over the label; the owner opens the address.
    void activated(const QUrl &url);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void setHeld(bool held);

    QUrl m_url;
    bool m_held = false;
};
