// MsgBoard: the help board under the pages — an icon for the message type and word-wrapped text.
#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

class MsgBoard : public QWidget
{
    Q_OBJECT

public:
    explicit MsgBoard(QWidget *parent = nullptr);

    QString Message() const { return m_message; }
    /// Setting the message alone repaints.
    void setMessage(const QString &message);
    int MsgType() const { return m_msgType; }
    /// Setting the type alone does not repaint.
    void setMsgType(int msgType) { m_msgType = msgType; }
    /// Stores message and type, then repaints.
    void DrawMsg(const QString &message, int msgType);

    /// Top-left corner of a type's 16 x 16 cell in the icon sheet; nothing for a type without an icon.
    static std::optional<QPoint> iconCell(int msgType);
    /// The sheet of four icons as drawn, magenta already replaced by the board's background.
    QImage iconSheet() const { return m_sheet; }
    /// The board's colour for a palette: the workspace shade, or a lighter one where the text would not read.
    static QColor boardColor(const QPalette &palette);

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void loadIconSheet();

    QString m_message;
    int m_msgType = 2;
    QImage m_sheet;
};
