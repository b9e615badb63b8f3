#include "frmKey.h"

#include "VirtualKeys.h"

#include <QApplication>
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

// After a capture that a key ended, that key may still be held. Its repeats and its release belong to the capture,
// and so does every key pressed while a held modifier is down (the Q of Alt+Q): none reaches the window below, not
// even as a shortcut.
class HeldKeySwallower : public QObject
{
public:
    explicit HeldKeySwallower(int key)
        : QObject(qApp)
        , m_key(key)
        , m_modifier(modifierOf(key))
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
        case QEvent::KeyRelease: {
            const auto *key = static_cast<const QKeyEvent *>(event);
            if (key->key() == m_key && !key->isAutoRepeat()) {
                done();
                // Its release ends the capture's key; a fresh press of it means it was let go unseen: it is new.
                return event->type() == QEvent::KeyRelease;
            }
            const bool held
                = key->key() == m_key || (m_modifier != Qt::NoModifier && key->modifiers().testFlag(m_modifier));
            if (!held) {
                // The key was let go where this program did not see it: what comes now is new.
                done();
                return false;
            }
            event->accept();
            return true;
        }
        case QEvent::ApplicationDeactivate:
            done();
            return false;
        default:
            return QObject::eventFilter(watched, event);
        }
    }

private:
    static Qt::KeyboardModifier modifierOf(int key)
    {
        switch (key) {
        case Qt::Key_Shift:
            return Qt::ShiftModifier;
        case Qt::Key_Control:
            return Qt::ControlModifier;
        case Qt::Key_Alt:
            return Qt::AltModifier;
        case Qt::Key_Meta:
            return Qt::MetaModifier;
        default:
            return Qt::NoModifier;
        }
    }

    void done()
    {
        qApp->removeEventFilter(this);
        deleteLater();
    }

    int m_key;
    Qt::KeyboardModifier m_modifier;
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
    if (code < 0)
        return; // a key without a code (Print Screen among others) leaves the dialog waiting
    if (code == EscapeCode) {
        new HeldKeySwallower(event->key());
        reject();
        return;
    }
    if (const std::optional<QString> name = KeyNameFromKeyCode(quint16(code))) {
        new HeldKeySwallower(event->key());
        finish(*name);
    }
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

KeyCaptureResult CaptureKey(QWidget *owner, const std::function<void(QDialog *)> &showModal)
{
    auto *dialog = owner->findChild<frmKey *>(QString(), Qt::FindDirectChildrenOnly);
    if (!dialog)
        dialog = new frmKey(owner);
    dialog->reset();
    const QPoint ownerCentre = owner->mapToGlobal(owner->rect().center());
    dialog->move(ownerCentre - dialog->rect().center());
    if (showModal)
        showModal(dialog);
    else
        dialog->exec();
    return dialog->result();
}
