#include "frmKey.h"

#include "VirtualKeys.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace {

constexpr int EscapeCode = 27;

// Accepts every shortcut override, so no application shortcut takes the key being captured.
class ShortcutBlocker : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::ShortcutOverride)
            return QObject::eventFilter(watched, event);
        event->accept();
        return true;
    }
};

int mouseButtonMask(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}

} // namespace

frmKey::frmKey(QWidget *owner)
    : QDialog(owner, Qt::FramelessWindowHint | Qt::Dialog)
{
    setWindowTitle(QString());
    setFixedSize(279, 34);
    QFont promptFont = font();
    promptFont.setFamilies({ QStringLiteral("Tahoma") });
    setFont(promptFont);
    installEventFilter(new ShortcutBlocker(this));
    // With no child to take focus, Tab and Backtab find nowhere to move it and reach keyPressEvent.
}

void frmKey::reset()
{
    m_result = KeyCaptureResult {};
}

QString frmKey::prompt()
{
    return QStringLiteral("Press a key to define new key or ESC to cancel.");
}

void frmKey::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const int lineHeight = fontMetrics().height();
    const QRect line(0, (height() - lineHeight) / 2, width(), lineHeight);
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, prompt());
}

void frmKey::keyPressEvent(QKeyEvent *event)
{
    const int code = VirtualKeys::fromQtKey(event->key(), event->modifiers(), event->nativeVirtualKey());
    event->accept();
    if (code == EscapeCode) {
        reject();
        return;
    }
    if (code < 0)
        return; // a key without a code (Print Screen among others) leaves the dialog waiting
    if (const std::optional<QString> name = KeyNameFromKeyCode(quint16(code)))
        finish(*name);
}

void frmKey::mouseReleaseEvent(QMouseEvent *event)
{
    // A button pressed inside and let go outside is no choice.
    const QPointF pos = event->position();
    if (pos.x() <= 0 || pos.y() <= 0 || pos.x() >= width() || pos.y() >= height())
        return;
    if (const std::optional<QString> name = KeyNameFromMouseButton(mouseButtonMask(event->button())))
        finish(*name);
}

void frmKey::wheelEvent(QWheelEvent *event)
{
    event->accept(); // the wheel cannot be bound here
}

void frmKey::closeEvent(QCloseEvent *event)
{
    if (!m_done)
        m_result = KeyCaptureResult { true, QString() };
    QDialog::closeEvent(event);
}

void frmKey::reject()
{
    // Esc, the window manager or Alt+F4: whatever name an earlier capture left is no answer now.
    if (!m_done)
        m_result = KeyCaptureResult { true, QString() };
    QDialog::reject();
}

void frmKey::finish(const QString &keyName)
{
    m_result = KeyCaptureResult { false, keyName };
    // Newer Qt versions close an accepted dialog with a close event; it must not turn the capture into a cancel.
    m_done = true;
    accept();
    m_done = false;
}

KeyCaptureResult CaptureKey(QWidget *owner)
{
    auto *dialog = owner->findChild<frmKey *>(QString(), Qt::FindDirectChildrenOnly);
    if (!dialog)
        dialog = new frmKey(owner);
    dialog->reset();
    const QPoint ownerCentre = owner->mapToGlobal(owner->rect().center());
    dialog->move(ownerCentre - dialog->rect().center());
    dialog->exec();
    return dialog->result();
}
