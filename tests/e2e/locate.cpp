// tarnwick-e2e-locate: where a player finds what the end-to-end runs click. It builds the main window (or the
// config search dialog) offscreen at the size the running program's window has, and prints for each object name
// the point to click, in that window's own pixels: "NAME X Y". A key button's halves are NAME:left and
// NAME:right, a check box's square NAME:box. Names are taken in the order given, each on its own page, which is
// selected for it as the run will have selected it (the lower page buttons move while the Control page shows):
// ask for them in the order they are clicked. The running program is never touched; this only knows the layout
// it shares with it.
//
//   tarnwick-e2e-locate [--search] WIDTHxHEIGHT NAME...
#include "AppFont.h"
#include "frmMain.h"
#include "frmSearch.h"

#include <QApplication>
#include <QCheckBox>
#include <QStyle>
#include <QStyleOption>
#include <QTest>
#include <cstdio>

namespace {

// The widget named `name`, shown: when it is not, each page (and Control sub-page) is selected in turn, which
// builds a page the first time, until it is. Null when no page holds it.
QWidget *reveal(frmMain &window, const QString &name)
{
    const auto shown = [&] {
        QWidget *widget = window.findChild<QWidget *>(name);
        return widget && widget->isVisible() ? widget : nullptr;
    };
    QWidget *widget = shown();
    for (int page = 0; page < PageCount && !widget; ++page) {
        window.SelectPage(Page(page));
        widget = shown();
        for (int sub = 0; page == int(Page::Control) && sub < ControlSubPageCount && !widget; ++sub) {
            window.SelectControlSubPage(ControlSubPage(sub));
            widget = shown();
        }
    }
    return widget;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // nothing shows on the display the program runs on
    QApplication app(argc, argv);
    QStringList args = QApplication::arguments().mid(1);
    const bool search = !args.isEmpty() && args.first() == u"--search";
    if (search)
        args.removeFirst();
    const QStringList size = args.value(0).split(u'x');
    if (args.size() < 2 || size.size() != 2) {
        std::fputs("usage: tarnwick-e2e-locate [--search] WIDTHxHEIGHT NAME...\n", stderr);
        return 2;
    }
    AppFont::install();

    frmMain window;
    frmSearch dialog;
    QWidget &top = search ? static_cast<QWidget &>(dialog) : window;
    top.resize(size[0].toInt(), size[1].toInt());
    top.show();
    if (!QTest::qWaitForWindowExposed(&top))
        return 1;
    for (const QString &arg : args.mid(1)) {
        const QString name = arg.section(u':', 0, 0);
        const QString half = arg.section(u':', 1);
        QWidget *widget = search ? dialog.findChild<QWidget *>(name) : reveal(window, name);
        if (!widget) {
            std::fprintf(stderr, "tarnwick-e2e-locate: no visible %s\n", qPrintable(name));
            return 1;
        }
        QCoreApplication::processEvents(); // the page's layout settles
        QPoint point = widget->rect().center();
        if (half == u"left" || half == u"right")
            point.setX(widget->width() * (half == u"left" ? 1 : 3) / 4);
        if (auto *box = qobject_cast<QCheckBox *>(widget); box && half == u"box") {
            QStyleOptionButton option;
            option.initFrom(box);
            point = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box).center();
        }
        const QPoint at = widget->mapTo(&top, point);
        std::printf("%s %d %d\n", qPrintable(arg), at.x(), at.y());
    }
    return 0;
}
