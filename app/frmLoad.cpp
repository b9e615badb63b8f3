#include "frmLoad.h"

#include "Twips.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWindow>

namespace {

// The narrow picture at the splash's left edge: a strip in the highlight's colour.
class SplashStrip : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QLinearGradient gradient(rect().topLeft(), rect().bottomLeft());
        gradient.setColorAt(0, palette().color(QPalette::Highlight).lighter(130));
        gradient.setColorAt(1, palette().color(QPalette::Highlight).darker(130));
        painter.fillRect(rect(), gradient);
    }
};

} // namespace

frmLoad::frmLoad(QWidget *parent)
    : QDialog(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("frmLoad"));
    setFixedSize(Twips::px(4530), Twips::px(705));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(1, 1, 8, 1);
    layout->setSpacing(8);
    auto *strip = new SplashStrip(this);
    strip->setObjectName(QStringLiteral("picLoad"));
    strip->setFixedWidth(Twips::px(300));
    layout->addWidget(strip);
    m_text->setObjectName(QStringLiteral("lblLoad"));
    m_text->setFont(QFont(QStringLiteral("Tahoma"), 8));
    layout->addWidget(m_text, 1);
}

void frmLoad::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    // A one-pixel border in the palette's dark colour: a frameless window needs an edge of its own.
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

QString frmLoad::message(bool loadingConfiguration)
{
    return loadingConfiguration
        ? QStringLiteral("Tarnwick is loading configuration file.\nPlease wait...")
        : QStringLiteral("Please wait while Tarnwick loads.\nThis might take some time so be patient.");
}

void frmLoad::showOnScreen()
{
    show();
    raise();
    // Until the window manager has put it on the screen. Hidden again before that, the splash still came up
    // afterwards and took the keyboard: the keys then went to it, hidden, rather than to the main window.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QTimer wake; // the wait below looks at the clock at least this often
    wake.start(20);
    QElapsedTimer waited;
    waited.start();
    while (!windowHandle()->isExposed() && !waited.hasExpired(2000))
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

QString frmLoad::text() const
{
    return m_text->text();
}

void frmLoad::showStartUp()
{
    m_text->setText(message(false));
    if (const QScreen *screen = this->screen())
        move(screen->availableGeometry().center() - rect().center());
    showOnScreen();
}

void frmLoad::runModal(bool loadingConfiguration, const std::function<void()> &work)
{
    m_text->setText(message(loadingConfiguration));
    if (parentWidget())
        move(parentWidget()->geometry().center() - rect().center());
    // No event loop of its own: the window blocks the others while it shows, its text is painted once,
    // and the work holds the window thread until it is done.
    setWindowModality(Qt::ApplicationModal);
    showOnScreen();
    work();
    hide();
}
