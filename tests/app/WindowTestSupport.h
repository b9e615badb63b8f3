// WindowTestSupport: what the window tests share — a shown main window, its widgets by name, a modal dialog
// answered once it is up, and the small configuration and the one edit most of them make.
#pragma once

#include "Commands.h"
#include "DocumentCommands.h"
#include "PopMenu.h"
#include "Prompts.h"
#include "TestFiles.h"
#include "frmMain.h"

#include <QTest>
#include <QtWidgets>
#include <functional>

namespace WindowTest {
using Prompts::Answer;

/// A configuration of one setting and one binding.
inline const QByteArray smallCfg = "seta cg_fov \"110\"\r\nbind w \"+forward\"\r\n";

/// The widget named `name` under `root` (a main window's pages are built for it); a test that misses one stops at
/// once.
template <typename T = QWidget> T *find(const QObject *root, const QString &name)
{
    T *widget = root->findChild<T *>(name);
    if (auto *window = qobject_cast<frmMain *>(const_cast<QObject *>(root)); !widget && window) {
        for (int page = 0; page < PageCount; ++page)
            window->page(Page(page));
        widget = root->findChild<T *>(name);
    }
    if (!widget)
        qFatal("no widget %s", qPrintable(name));
    return widget;
}

/// A main window, shown and on the screen.
inline frmMain *shownWindow()
{
    auto *window = new frmMain;
    window->show();
    if (!QTest::qWaitForWindowExposed(window))
        qFatal("the window never showed");
    return window;
}

/// A main window for a test, shown unless asked not to, with every box and dialog answered through Prompts from
/// here on; closing it never ends the test program.
inline frmMain *answeredWindow(bool shown = true)
{
    QApplication::setQuitOnLastWindowClosed(false);
    frmMain *window = shown ? shownWindow() : new frmMain;
    Prompts::setNextAnswers({});
    return window;
}

/// Deletes the window; the test fails when an answer was left over, or the commands were left off but for the
/// tray's exit.
inline void closeWindow(frmMain *window)
{
    const bool answered = !Prompts::hasPendingAnswers();
    const bool commandsOn = window->gate().HotKeysEnabled() || window->gate().TrayExitPending();
    delete window;
    QVERIFY2(answered, "an answer was not taken");
    QVERIFY2(commandsOn, "the commands were left off");
}

/// The pointer comes over the widget.
inline void hover(QWidget *widget)
{
    QEnterEvent enter(
        QPointF(1, 1), widget->mapTo(widget->window(), QPointF(1, 1)), widget->mapToGlobal(QPointF(1, 1)));
    QApplication::sendEvent(widget, &enter);
}

/// Hands the next modal window to `answer` once it is up (it runs inside that window's own event loop).
/// A scan before the window opens turns the event loop too: until the window is up, it looks again.
inline void whenModal(QObject *context, const std::function<void(QWidget *)> &answer, int triesLeft = 1000)
{
    QTimer::singleShot(0, context, [context, answer, triesLeft] {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal && triesLeft > 0) {
            QTest::qWait(5);
            whenModal(context, answer, triesLeft - 1);
            return;
        }
        QVERIFY(modal);
        answer(modal);
    });
}

/// The edit the tests make: the field of view from 110 to 120.
inline void editFov(frmMain &window)
{
    window.document().setText(SettingCatalog::instance().indexOfControl(u"txtFOV"), 0, QStringLiteral("120"));
}

/// The titles of the boxes and dialogs shown since the last look.
inline QStringList titlesShown()
{
    QStringList titles;
    for (const Prompts::Shown &shown : Prompts::takeShown())
        titles << shown.title;
    return titles;
}

} // namespace WindowTest
