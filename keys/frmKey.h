// frmKey: the borderless modal dialog that waits for one key press or mouse click and names it.
#pragma once

#include "KeyNames.h"

#include <QDialog>
#include <functional>

class frmKey : public QDialog
{
    Q_OBJECT

public:
    explicit frmKey(QWidget *owner);

    /// The outcome of the last capture; `cancelled` also when the dialog was closed any other way.
    KeyCaptureResult result() const { return m_result; }
    /// Resets the outcome to cancelled-false, empty name (the caller does this before every capture).
    void reset();

    static QString prompt();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void reject() override;

private:
    void finish(const QString &keyName);

    KeyCaptureResult m_result;
    bool m_done = false;
};

/// Shows the owner's capture dialog modally (made on first use, reused after) through `showModal` (plain exec()
/// without one) and returns its outcome. The key that ends a capture is consumed until it is let go.
KeyCaptureResult CaptureKey(QWidget *owner, const std::function<void(QDialog *)> &showModal = {});
