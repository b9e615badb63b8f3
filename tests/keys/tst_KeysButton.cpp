// The key button: two halves, each clicked on its own, drawn in its own colour.
#include "Keys.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTest>
#include <functional>

namespace {

struct MouseStep
{
    QEvent::Type type;
    Qt::MouseButton button;
    QPoint pos;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};
using MouseScript = QList<MouseStep>;

constexpr QEvent::Type Press = QEvent::MouseButtonPress;
constexpr QEvent::Type Move = QEvent::MouseMove;
constexpr QEvent::Type Release = QEvent::MouseButtonRelease;
constexpr Qt::MouseButton L = Qt::LeftButton, R = Qt::RightButton, M = Qt::MiddleButton;

class PaintCounter : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

} // namespace

Q_DECLARE_METATYPE(MouseScript)

class tst_KeysButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_keys = std::make_unique<Keys>();
        m_keys->setFixedSize(172, 21); // split at x = 86
        m_keys->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_keys.get()));
        m_log.clear();
        m_buttons = Qt::NoButton;

        using MouseSignal = void (Keys::*)(Qt::MouseButton, Qt::KeyboardModifiers, int, int);
        const auto logMouse = [this](MouseSignal signal, const QString &name) {
            connect(m_keys.get(), signal, this,
                [this, name](Qt::MouseButton button, Qt::KeyboardModifiers shift, int x, int y) {
                    const QString buttonName
                        = button == Qt::RightButton ? QStringLiteral("right") : QStringLiteral("middle");
                    const QString shiftName = shift.testFlag(Qt::ShiftModifier) ? QStringLiteral(" shift") : QString();
                    m_log << QStringLiteral("%1 %2 %3,%4%5").arg(name, buttonName).arg(x).arg(y).arg(shiftName);
                });
        };
        logMouse(&Keys::MouseDown, QStringLiteral("MouseDown"));
        logMouse(&Keys::MouseDown2, QStringLiteral("MouseDown2"));
        logMouse(&Keys::MouseUp, QStringLiteral("MouseUp"));
        logMouse(&Keys::MouseUp2, QStringLiteral("MouseUp2"));
        connect(m_keys.get(), &Keys::Click, this, [this] { m_log << QStringLiteral("Click"); });
        connect(m_keys.get(), &Keys::Click2, this, [this] { m_log << QStringLiteral("Click2"); });
    }

    void cleanup() { m_keys.reset(); }

    void mouseSignals_data()
    {
        QTest::addColumn<MouseScript>("script");
        QTest::addColumn<QStringList>("emitted");

        const QPoint left(10, 10), right(100, 10), split(86, 10);
        const auto row = [](const char *tag, const MouseScript &script, const QStringList &emitted) {
            QTest::newRow(tag) << script << emitted;
        };
        row("left click, left half", { { Press, L, left }, { Release, L, left } }, { "Click" });
        row("left click, right half", { { Press, L, right }, { Release, L, right } }, { "Click2" });
        row("released over the other half", { { Press, L, left }, { Release, L, right } }, {});
        row("released outside", { { Press, L, right }, { Release, L, { 100, 30 } } }, {});
        row("dragged out and back",
            { { Press, L, left }, { Move, L, { 10, 30 } }, { Move, L, { 20, 5 } }, { Release, L, { 20, 5 } } },
            { "Click" });
        row("pressed on the border", { { Press, L, { 0, 10 } }, { Release, L, { 0, 10 } } }, {});
        row("pressed on the split line", { { Press, L, split }, { Release, L, split } }, {});
        row("right click, left half", { { Press, R, left }, { Release, R, left } },
            { "MouseDown right 10,10", "MouseUp right 10,10" });
        row("Shift+right click, right half",
            { { Press, R, right, Qt::ShiftModifier }, { Release, R, right, Qt::ShiftModifier } },
            { "MouseDown2 right 100,10 shift", "MouseUp2 right 100,10 shift" });
        row("right released while left held",
            { { Press, L, left }, { Press, R, right }, { Release, R, right }, { Release, L, left } },
            { "MouseDown2 right 100,10", "Click" });
        row("right released off the halves", { { Release, R, split } }, {});
        row("middle click", { { Press, M, left }, { Release, M, left } }, { "MouseDown middle 10,10" });
    }

    void mouseSignals()
    {
        QFETCH(MouseScript, script);
        QFETCH(QStringList, emitted);

        play(script);
        QCOMPARE(m_log, emitted);
        QCOMPARE(m_keys->pressedHalf(), Keys::Half::None);
    }

    void heldHalfFollowsPointer()
    {
        play({ { Press, L, { 100, 10 } } });
        QCOMPARE(m_keys->pressedHalf(), Keys::Half::Right);
        play({ { Move, L, { 40, 10 } } });
        QCOMPARE(m_keys->pressedHalf(), Keys::Half::None);
        play({ { Move, L, { 150, 10 } } });
        QCOMPARE(m_keys->pressedHalf(), Keys::Half::Right);
        m_keys->Refresh();
        QCOMPARE(m_keys->pressedHalf(), Keys::Half::None);
    }

    void disabledTakesNoMouse()
    {
        play({ { Press, L, { 10, 10 } } });
        m_keys->setEnabled(false);
        QCOMPARE(m_keys->pressedHalf(), Keys::Half::None);
        play({ { Release, L, { 10, 10 } }, { Press, L, { 10, 10 } }, { Release, L, { 10, 10 } },
            { Press, R, { 10, 10 } }, { Release, R, { 10, 10 } } });
        QCOMPARE(m_log, QStringList {});
    }

    void changesRepaint()
    {
        PaintCounter counter;
        m_keys->installEventFilter(&counter);
        const std::pair<const char *, std::function<void()>> changes[] = {
            { "Caption", [this] { m_keys->setCaption(QStringLiteral("A")); } },
            { "Caption2", [this] { m_keys->setCaption2(QStringLiteral("B")); } },
            { "ForeColor", [this] { m_keys->setForeColor(Qt::red); } },
            { "ForeColor2", [this] { m_keys->setForeColor2(Qt::red); } },
            { "Clear", [this] { m_keys->Clear(); } },
        };
        for (const auto &[name, change] : changes) {
            QCoreApplication::processEvents();
            counter.paints = 0;
            change();
            QCoreApplication::processEvents();
            QVERIFY2(counter.paints > 0, name);
        }
    }

    void halvesUseTheirOwnColour()
    {
        QCOMPARE(m_keys->Caption(), QString()); // a fresh key has no name yet, so shows nothing
        m_keys->setCaption(QStringLiteral("MMMM"));
        m_keys->setCaption2(QStringLiteral("MMMM"));
        m_keys->setForeColor(QColor(255, 0, 0));
        const QImage image = m_keys->grab().toImage();
        const auto hasRed = [&image](int fromX, int toX) {
            for (int x = fromX; x < toX; ++x)
                for (int y = 0; y < image.height(); ++y)
                    if (const QColor c = image.pixelColor(x, y); c.red() > 200 && c.green() < 60 && c.blue() < 60)
                        return true;
            return false;
        };
        QVERIFY(hasRed(0, 86));
        QVERIFY(!hasRed(86, 172)); // unset ForeColor2 draws in the palette's button text colour
    }

private:
    void play(const MouseScript &script)
    {
        for (const MouseStep &step : script) {
            if (step.type == Press)
                m_buttons |= step.button;
            else if (step.type == Release)
                m_buttons &= ~Qt::MouseButtons(step.button);
            const Qt::MouseButton button = step.type == Move ? Qt::NoButton : step.button;
            QMouseEvent event(step.type, step.pos, m_keys->mapToGlobal(step.pos), button, m_buttons, step.modifiers);
            QApplication::sendEvent(m_keys.get(), &event);
        }
    }

    std::unique_ptr<Keys> m_keys;
    QStringList m_log;
    Qt::MouseButtons m_buttons;
};

QTEST_MAIN(tst_KeysButton)
#include "tst_KeysButton.moc"
