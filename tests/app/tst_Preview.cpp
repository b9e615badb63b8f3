// The HUD preview in the real window: the pieces it shows for the HUD settings, compared by their pixels with the
// sprite sheet the build puts beside this test; "No Preview"; the Preview command and the close box; the open
// state and place across a restart; the command gate; and a redraw from every source of a change.
#include "Defaults.h"
#include "ProgramSettings.h"
#include "WindowSettings.h"
#include "WindowTestSupport.h"
#include "frmPreview.h"

using namespace WindowTest;

namespace {

// The HUD boxes by the short names the tables use.
const QList<std::pair<QString, QString>> boxes { { "gun", "chkWModel" }, { "2d", "chk2D" }, { "bar", "chkStBar" },
    { "icons", "chkIcons" }, { "3d", "chk3DIcons" }, { "fps", "chkFPS" }, { "timer", "chkTimer" },
    { "attacker", "chkKiller" }, { "lag", "chkLAG" }, { "chair", "chkCHair" }, { "law", "chkLAW" },
    { "msg", "chkMsg" } };
const QString all = "gun 2d bar icons 3d fps timer attacker lag chair law msg";

const QByteArray statusOn = "seta cg_draw2d \"1\"\r\nseta cg_drawgun \"1\"\r\nseta cg_drawstatus \"1\"\r\n"
                            "seta cg_drawicons \"1\"\r\nseta cg_draw3dicons \"0\"\r\n";

QImage pixels(const QWidget *preview, const char *piece)
{
    return find<QLabel>(preview, QString::fromLatin1(piece))->pixmap().toImage().convertToFormat(QImage::Format_RGB32);
}

QString without(QString names, const QStringList &off)
{
    for (const QString &name : off)
        names.replace(QRegularExpression("\\b" + name + "\\b"), QString());
    return names;
}

} // namespace

class tst_Preview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QImageReader reader(frmPreview::sheetPath());
        reader.setDecideFormatFromContent(true);
        m_sheet = reader.read().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(m_sheet.size(), QSize(260, 852));
        // The pieces a table tells apart differ, so showing the wrong one is seen.
        QList<QImage> strips, cells;
        for (int row = 0; row < 8; ++row)
            strips << m_sheet.copy(0, row * 63, 260, 63);
        for (const int y : { 505, 559 }) {
            for (const int x : { 1, 44, 87, 130 })
                cells << m_sheet.copy(x, y, 42, 53);
        }
        for (const QList<QImage> &pieces : { strips, cells }) {
            for (int i = 0; i < pieces.size(); ++i) {
                for (int j = i + 1; j < pieces.size(); ++j)
                    QVERIFY2(pieces[i] != pieces[j], qPrintable(QString("pieces %1 and %2 alike").arg(i).arg(j)));
            }
        }
    }

    void init()
    {
        m_window = answeredWindow();
        m_preview = &m_window->preview();
    }
    void cleanup() { closeWindow(m_window); }

    void piecesFollowTheHudBoxes_data()
    {
        QTest::addColumn<QString>("on");
        QTest::addColumn<int>("strip"); // the status strip's top in the sheet
        QTest::addColumn<QPoint>("cell"); // the corner cell's
        QTest::addColumn<QString>("shown"); // of lag-o-meter, crosshair, warning and message line
        const auto row = [](const char *tag, const QString &on, int strip, QPoint cell, const char *shown) {
            QTest::newRow(tag) << on << strip << cell << QString::fromLatin1(shown);
        };
        // Each status strip, each corner cell and each small piece shown and hidden once.
        row("all on", all, 63, { 44, 505 }, "lag chair law msg");
        row("2D icons, frame rate, attacker", without(all, { "3d", "timer" }), 0, { 87, 505 }, "lag chair law msg");
        row("no icons, timer, attacker", without(all, { "icons", "fps", "lag" }), 126, { 130, 505 }, "chair law msg");
        row("no status bar, attacker", without(all, { "bar", "fps", "timer" }), 189, { 1, 505 }, "chair law msg");
        row("no gun, 2D icons, both counters", without(all, { "gun", "3d", "attacker", "msg" }), 252, { 44, 559 },
            "lag chair law");
        row("no gun, 3D icons, frame rate", without(all, { "gun", "timer", "attacker", "law" }), 315, { 87, 559 },
            "lag chair msg");
        row("no gun, no icons, timer", without(all, { "gun", "icons", "fps", "attacker", "chair" }), 378, { 130, 559 },
            "lag law msg");
        row("no gun, no status bar", without(all, { "gun", "bar", "fps", "timer", "attacker" }), 441, { 1, 559 },
            "chair law msg");
        row("no 2D", without(all, { "2d" }), 189, { 1, 559 }, "msg");
        row("nothing", "", 441, { 1, 559 }, "");
    }
    void piecesFollowTheHudBoxes()
    {
        QFETCH(QString, on);
        QFETCH(int, strip);
        QFETCH(QPoint, cell);
        QFETCH(QString, shown);
        m_window->SelectPage(Page::HudDisplay);
        m_preview->show();
        const QStringList names = on.split(u' ', Qt::SkipEmptyParts);
        for (const auto &[name, box] : boxes)
            m_window->document().setState(SettingCatalog::instance().indexOfControl(box), 0, names.contains(name));
        QCOMPARE(pixels(m_preview, "picStatus"), m_sheet.copy(0, strip, 260, 63));
        QCOMPARE(pixels(m_preview, "picFT"), m_sheet.copy(cell.x(), cell.y(), 42, 53));
        const std::pair<const char *, const char *> toggled[]
            = { { "lag", "picLOM" }, { "chair", "picCHair" }, { "law", "picLAW" }, { "msg", "picMsg" } };
        for (const auto &[name, piece] : toggled) {
            const bool expected = shown.split(u' ').contains(QLatin1StringView(name));
            QVERIFY2(find<QLabel>(m_preview, QString::fromLatin1(piece))->isVisibleTo(m_preview) == expected, piece);
        }
    }

    void noPreview_data()
    {
        QTest::addColumn<QString>("sheet"); // the sheet the window loads: the built one, or one made here
        QTest::addColumn<QList<int>>("pages"); // selected in this order
        QTest::addColumn<bool>("mockUp");
        const QList<int> hud { int(Page::HudDisplay) };
        QTest::newRow("no page yet") << "built" << QList<int> {} << false;
        QTest::newRow("HUD, then Renderer")
            << "built" << QList<int> { int(Page::HudDisplay), int(Page::Renderer) } << false;
        QTest::newRow("Renderer, then HUD")
            << "built" << QList<int> { int(Page::Renderer), int(Page::HudDisplay) } << true;
        QTest::newRow("no sheet") << "missing" << hud << false;
        QTest::newRow("not a picture") << "text" << hud << false;
        QTest::newRow("a picture too small") << "small" << hud << false;
        QTest::newRow("a BMP called .png") << "bmp" << hud << true;
    }
    void noPreview()
    {
        QFETCH(QString, sheet);
        QFETCH(QList<int>, pages);
        QFETCH(bool, mockUp);
        const QString path = m_dir.filePath("sheet.png");
        QFile::remove(path);
        if (sheet == u"text")
            writeTestFile(path, statusOn);
        else if (sheet == u"small")
            QVERIFY(m_sheet.copy(0, 0, 260, 851).save(path, "PNG"));
        else if (sheet == u"bmp")
            QVERIFY(m_sheet.save(path, "BMP"));
        if (sheet != u"built")
            m_preview->LoadHudImage(path);
        for (const int page : pages)
            m_window->SelectPage(Page(page));
        m_preview->show();
        QCOMPARE(find<QLabel>(m_preview, "picHud")->isVisible(), mockUp);
        QCOMPARE(find<QLabel>(m_preview, "picPreview")->isVisible(), !mockUp);
        QCOMPARE(find<QLabel>(m_preview, "picPreview")->text(), QStringLiteral("No Preview"));
        QVERIFY(titlesShown().isEmpty()); // a sheet that will not load is not reported
    }

    void previewCommandAndCloseBox()
    {
        Commands &commands = m_window->commands();
        QCOMPARE(commands.menu().caption("Prev1"), QStringLiteral("Show &Preview"));
        for (const bool open : { true, false, true }) {
            commands.run("Prev1");
            QCOMPARE(m_preview->isVisible(), open);
            QCOMPARE(commands.menu().caption("Prev1"), open ? QStringLiteral("Hide &Preview") : "Show &Preview");
        }
        QVERIFY(m_preview->close());
        QVERIFY(!m_preview->isVisible());
        QCOMPARE(commands.menu().caption("Prev1"), QStringLiteral("Show &Preview"));
        QCOMPARE(m_window->settings().current().pv_open, 0);
        commands.run("Prev1");
        QVERIFY(m_preview->isVisible());
    }

    void openStateAndPlaceSurviveARestart_data()
    {
        QTest::addColumn<QByteArray>("preview"); // its settings in the file the first start reads
        QTest::addColumn<QString>("action"); // in the first run
        QTest::addColumn<bool>("open"); // in the second
        QTest::addColumn<QPoint>("place"); // in the second; (-1, -1): anywhere on a screen
        QTest::newRow("open, moved") << QByteArray("pv_open=1\r\npv_wx=1500\r\npv_wy=1200") << "move" << true
                                     << QPoint(120, 90);
        QTest::newRow("closed with the close box") << QByteArray("pv_open=1") << "close" << false << QPoint(240, 240);
        QTest::newRow("closed, off every screen")
            << QByteArray("pv_open=0\r\npv_wx=-150000\r\npv_wy=-150000") << "" << false << QPoint(-1, -1);
    }
    void openStateAndPlaceSurviveARestart()
    {
        QFETCH(QByteArray, preview);
        QFETCH(QString, action);
        QFETCH(bool, open);
        QFETCH(QPoint, place);
        const QString ini = writeTestFile(m_dir.filePath("tarnwick.ini"), "[Tarnwick]\r\n" + preview + "\r\n");
        for (const bool first : { true, false }) {
            frmMain window;
            window.settings().load(ini);
            window.show();
            if (first && action == u"move")
                window.preview().move(place);
            else if (first && action == u"close")
                window.preview().close();
            if (first) {
                QVERIFY(window.close());
                continue;
            }
            QCOMPARE(window.preview().isVisible(), open);
            if (place == QPoint(-1, -1))
                QVERIFY(QGuiApplication::screenAt(window.preview().pos()));
            else
                QCOMPARE(window.preview().pos(), place);
        }
    }

    void disabledWhileABoxIsOpen()
    {
        m_window->commands().run("Prev1");
        QList<bool> enabled;
        Prompts::setWhileShown([&] { enabled << m_preview->isEnabled(); });
        Prompts::setNextAnswers({ QString() }); // the Open dialog, cancelled
        m_window->commands().run("Open1");
        whenModal(this, [&](QWidget *about) {
            enabled << m_preview->isEnabled();
            qobject_cast<QDialog *>(about)->accept();
        });
        m_window->commands().run("About1");
        Prompts::setWhileShown({});
        QCOMPARE(enabled, QList<bool>({ false, false }));
        QVERIFY(m_preview->isEnabled());
        titlesShown();
    }

    void redrawnByEveryChange_data()
    {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<int>("strip");
        // At start every HUD box is off (a new document, cleared).
        QTest::newRow("click") << QStringList { "click chkWModel" } << 189;
        QTest::newRow("read") << QStringList { "open" } << 0;
        QTest::newRow("import") << QStringList { "import" } << 0;
        QTest::newRow("New, cleared") << QStringList { "open", "new" } << 441;
        QTest::newRow("Restore Defaults") << QStringList { "open", "click chkIcons", "restore" } << 0;
    }
    void redrawnByEveryChange()
    {
        QFETCH(QStringList, steps);
        QFETCH(int, strip);
        const QString cfg = writeTestFile(m_dir.filePath("hud.cfg"), statusOn);
        m_preview->show(); // the sheet is read on the first showing
        for (const QString &step : steps) {
            if (step == u"open")
                QVERIFY(m_window->documentCommands().OpenCfg(cfg));
            else if (step == u"import")
                QVERIFY(m_window->documentCommands().ImportFile(
                    writeTestFile(m_dir.filePath("a.hud"), statusOn), PartialKind::HudDisplay));
            else if (step == u"new")
                NewCfg(m_window->document(), QStringLiteral("Untitled"), NewMode::Clear);
            else if (step.startsWith(u"click "))
                find<QCheckBox>(m_window, step.mid(6))->click();
            else if (step == u"restore") {
                Prompts::setNextAnswers({ QMessageBox::Yes });
                m_window->commands().run("Def1");
            }
        }
        QCOMPARE(pixels(m_preview, "picStatus"), m_sheet.copy(0, strip, 260, 63));
        titlesShown();
    }

private:
    frmMain *m_window = nullptr;
    frmPreview *m_preview = nullptr;
    QImage m_sheet;
    QTemporaryDir m_dir;
};

QTEST_MAIN(tst_Preview)
#include "tst_Preview.moc"
