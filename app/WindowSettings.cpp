#include "WindowSettings.h"

#include "Commands.h"
#include "LocateGameFolder.h"
#include "PopMenu.h"
#include "Twips.h"
#include "frmMain.h"
#include "frmOptions.h"
#include "frmPreview.h"

#include <QDialog>
#include <QGuiApplication>
#include <QScreen>

WindowSettings::WindowSettings(frmMain &window, Commands &commands)
    : m_window(window)
    , m_commands(commands)
{ }

void WindowSettings::load(const QString &file)
{
    const QRect screen = m_window.screen() ? m_window.screen()->availableGeometry() : QRect(0, 0, 1024, 768);
    const QSize outer = m_window.frameGeometry().size();
    const int centredLeft = (screen.width() - outer.width()) / 2 * Twips::perPixel;
    const int centredTop = (screen.height() - outer.height()) / 2 * Twips::perPixel;
    m_file = file;
    apply(pbLoadOptions(file, centredLeft, centredTop));
}

bool WindowSettings::save(bool minimized, QString *error) const
{
    return m_file.isEmpty() || pbSaveOptions(m_file, current(), minimized, error);
}

void WindowSettings::apply(const ProgramSettings &settings)
{
    m_settings = settings;
    setGradient(settings.gradient == 1);
    m_window.setAlwaysOnTop(settings.aot == 1);
    m_window.move(Twips::px(settings.wx), Twips::px(settings.wy));
    m_previewPlaced = QPoint(Twips::px(settings.pv_wx), Twips::px(settings.pv_wy));
    m_window.preview().placeAt(m_previewPlaced, m_window.frameGeometry());
    m_commands.setPreviewOpen(settings.pv_open == 1);
}

ProgramSettings WindowSettings::current() const
{
    ProgramSettings settings = m_settings;
    settings.aot = m_window.alwaysOnTop() ? 1 : 0;
    settings.wx = m_window.frameGeometry().x() * Twips::perPixel;
    settings.wy = m_window.frameGeometry().y() * Twips::perPixel;
    if (const auto preview = m_commands.previewState()) {
        settings.pv_open = preview->open ? 1 : 0;
        // A preview that stands where it was put keeps the settings' twips as they were, and so does any where
        // the window system places windows itself (Wayland).
        const bool moved = QPoint(preview->left, preview->top) != m_previewPlaced;
        if (moved && !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
            settings.pv_wx = preview->left * Twips::perPixel;
            settings.pv_wy = preview->top * Twips::perPixel;
        }
    }
    return settings;
}

bool WindowSettings::locateGameFolder(QWidget *owner, const QString &problem)
{
    return LocateGameFolder(owner, problem, m_settings.q3dir);
}

void WindowSettings::setGradient(bool on)
{
    m_settings.gradient = on ? 1 : 0;
    m_window.setGradient(on);
}

void WindowSettings::showOptions()
{
    if (!m_options)
        m_options = new frmOptions(&m_window);
    m_options->prepare(m_settings.q3dir, gradient(), m_window.alwaysOnTop());
    if (m_window.ShowForm(m_options, true) != QDialog::Accepted)
        return;
    m_settings.q3dir = m_options->gameFolder();
    setGradient(m_options->gradient());
    m_window.setAlwaysOnTop(m_options->onTop());
}
