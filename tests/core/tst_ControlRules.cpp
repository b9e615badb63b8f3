// What the pages derive from values, without a window: help texts, dependencies, slider labels, text fields.
#include "ControlRules.h"
#include "Defaults.h"
#include "SettingCatalog.h"

#include <QTest>

using namespace ControlRules;

class tst_ControlRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpTexts_data();
    void helpTexts();
    void dependencies_data();
    void dependencies();
    void rulesNameRealControls();
    void sliderLabels_data();
    void sliderLabels();
    void textFields_data();
    void textFields();
};

void tst_ControlRules::helpTexts_data()
{
    QTest::addColumn<QString>("key"); // a control, or an option of a pair as "optLighting(1)"
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("marksOn");
    QTest::addColumn<int>("type"); // -1: no help
    QTest::addColumn<QString>("part"); // a part only this variant of the text holds

    const auto row = [](const char *tag, const char *key, int state, bool marks, int type, const char *part) {
        QTest::newRow(tag) << QString::fromLatin1(key) << state << marks << type << QString::fromLatin1(part);
    };
    row("plain", "chkBlood", 1, true, 2, "blood trails");
    row("full screen warns", "chkFullScr", 1, true, 0, "\r\nWarning: VooDoo 1/2/3 cards do not support window mode.");
    row("delta checked", "chkDelta", 1, true, 2, "Toggles Delta Compression");
    row("delta clear", "chkDelta", 0, true, 1, "U_REMOVE");
    row("UDP clear", "chkUDP", 0, true, 2, "Enables TCP/IP");
    row("UDP checked", "chkUDP", 1, true, 1, "Disables TCP/IP network protocol.\r\nThis will disable you");
    row("ordinary shadows without marks", "cbShadows", 1, false, 1, "\r\nTo enable Ordinary Shadows you must");
    row("ordinary shadows with marks", "cbShadows", 1, true, 2, "Sets type of shadows rendering.");
    row("stencil shadows without marks", "cbShadows", 2, false, 2, "Sets type of shadows rendering.");
    row("second option", "optLighting(1)", 1, true, 2, "without rendering textures");
    row("no help", "chkCurve", 0, true, -1, "");
}

void tst_ControlRules::helpTexts()
{
    QFETCH(QString, key);
    QFETCH(int, state);
    QFETCH(bool, marksOn);
    QFETCH(int, type);
    QFETCH(QString, part);
    const std::optional<HelpText> help = SettingCatalog::instance().help(key, state, marksOn);
    QCOMPARE(help.has_value(), type >= 0);
    if (help) {
        QCOMPARE(int(help->msgType), type);
        QVERIFY2(help->text.contains(part), qPrintable(help->text));
        QCOMPARE(help->text.contains(u'\n'), part.contains(u'\n'));
    }
}

void tst_ControlRules::dependencies_data()
{
    QTest::addColumn<QStringList>("checked");
    QTest::addColumn<QStringList>("cleared");
    QTest::addColumn<QString>("changed"); // the box whose change is judged
    QTest::addColumn<QStringList>("enabled");
    QTest::addColumn<QStringList>("disabled");

    const QStringList none;
    QTest::newRow("2D off takes the HUD with it")
        << QStringList { "chkStBar", "chkIcons", "chkCHair" } << QStringList { "chk2D" } << "chk2D" << none
        << QStringList { "chkStBar", "chkFPS", "chkTimer", "chkKiller", "chkLAW", "chkMotd", "chkCHair", "chkIcons",
               "chkLAG", "chk3DIcons", "slCHairSize" };
    QTest::newRow("2D on, status bar off")
        << QStringList { "chk2D", "chkIcons" } << QStringList { "chkStBar" } << "chk2D"
        << QStringList { "chkStBar", "chkFPS", "chkCHair" } << QStringList { "chkIcons", "chkLAG", "chk3DIcons" };
    QTest::newRow("everything on") << QStringList { "chk2D", "chkStBar", "chkIcons", "chkCHair" } << none << "chk2D"
                                   << QStringList { "chkIcons", "chkLAG", "chk3DIcons", "slCHairSize" } << none;
    QTest::newRow("status bar off") << QStringList { "chk2D", "chkIcons" } << QStringList { "chkStBar" } << "chkStBar"
                                    << none << QStringList { "chkIcons", "chkLAG", "chk3DIcons" };
    // The icons box judges the 3D icons by 2D and itself alone.
    QTest::newRow("icons without the status bar") << QStringList { "chk2D", "chkIcons" } << QStringList { "chkStBar" }
                                                  << "chkIcons" << QStringList { "chk3DIcons" } << none;
    QTest::newRow("crosshair off") << QStringList { "chk2D" } << QStringList { "chkCHair" } << "chkCHair" << none
                                   << QStringList { "slCHairSize" };
    QTest::newRow("crosshair on, 2D off")
        << QStringList { "chkCHair" } << QStringList { "chk2D" } << "chkCHair" << none << QStringList { "slCHairSize" };

    // A box that alone enables its dependants, both ways; the high sky disables them.
    const auto both = [&none](const char *box, const QStringList &dependants, bool enables) {
        const QStringList self { QString::fromLatin1(box) };
        QTest::addRow("%s checked", box) << self << QStringList() << self.first() << (enables ? dependants : none)
                                         << (enables ? none : dependants);
        QTest::addRow("%s clear", box) << QStringList() << self << self.first() << (enables ? none : dependants)
                                       << (enables ? dependants : none);
    };
    both("chkFlares", { "txtFlSize", "txtFlFade" }, true);
    both("chkBlood", { "chkGibs" }, true);
    both("chkHighSky", { "chkVTP", "chkSun" }, false);
    both("chkMsg", { "txtNTime" }, true);
    both("chkA3D", { "sld2dsnd", "chkA3D_GP" }, true);
    both("chk3dPerson", { "sldAngle", "sldRange" }, true);
    both("chkPrivSv", { "cmdClPas" }, true);
}

void tst_ControlRules::dependencies()
{
    QFETCH(QStringList, checked);
    QFETCH(QStringList, cleared);
    QFETCH(QString, changed);
    QFETCH(QStringList, enabled);
    QFETCH(QStringList, disabled);

    ConfigDocument doc;
    StartUpDocument(doc);
    const SettingCatalog &catalog = SettingCatalog::instance();
    for (const QString &box : checked)
        doc.setState(catalog.indexOfControl(box), 0, 1);
    for (const QString &box : cleared)
        doc.setState(catalog.indexOfControl(box), 0, 0);
    QHash<QString, bool> result; // a control named twice ends as the later effect says
    for (const Enablement &e : effectsOf(changed, doc))
        result.insert(e.control, e.enabled);
    for (const QString &name : enabled)
        QVERIFY2(result.value(name, false), qPrintable(name));
    for (const QString &name : disabled)
        QVERIFY2(!result.value(name, true), qPrintable(name));
}

// A misspelt name would leave its control enabled for ever, and nothing else would notice.
void tst_ControlRules::rulesNameRealControls()
{
    ConfigDocument doc;
    StartUpDocument(doc);
    const SettingCatalog &catalog = SettingCatalog::instance();
    for (const QString &box : controllingControls()) {
        QVERIFY2(catalog.indexOfControl(box) >= 0, qPrintable(box));
        QVERIFY2(!effectsOf(box, doc).isEmpty(), qPrintable(box));
    }
    for (const Enablement &e : allEffects(doc))
        QVERIFY2(catalog.indexOfControl(e.control) >= 0, qPrintable(e.control));
    QVERIFY(effectsOf(u"chkGibs", doc).isEmpty());
}

void tst_ControlRules::sliderLabels_data()
{
    QTest::addColumn<QString>("slider");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("label");

    QTest::newRow("tenths") << "sldGamma" << 10 << "Gamma: 1.0";
    QTest::newRow("tenths below one") << "sld2dsnd" << 4 << "2D Sound: 0.4";
    QTest::newRow("whole numbers") << "slCHairSize" << 33 << "Crosshair Size: 33";
    QTest::newRow("no handicap") << "sldHandicap" << 100 << "Handicap: 100 / None";
    QTest::newRow("handicap") << "sldHandicap" << 99 << "Handicap: 99";
    QTest::newRow("a unit after") << "sldTCT" << 12 << "Team Chat Time: 12 min";
    QTest::newRow("view size stays") << "Slider1" << 45 << "View Size: 100";
}

void tst_ControlRules::sliderLabels()
{
    QFETCH(QString, slider);
    QFETCH(int, position);
    QFETCH(QString, label);
    const SettingCatalog &catalog = SettingCatalog::instance();
    QCOMPARE(sliderLabel(catalog.row(catalog.indexOfControl(slider)), position), label);
}

void tst_ControlRules::textFields_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("digitsOnly");
    QTest::addColumn<bool>("neverEmpty"); // turns "0" when emptied

    QTest::newRow("force respawn") << "txtForce" << true << true;
    QTest::newRow("awards") << "txtAwards" << true << true;
    QTest::newRow("field of view") << "txtFOV" << true << false;
    QTest::newRow("name") << "txtName" << false << false;
}

void tst_ControlRules::textFields()
{
    QFETCH(QString, field);
    QFETCH(bool, digitsOnly);
    QFETCH(bool, neverEmpty);
    QCOMPARE(isNumericField(field), digitsOnly);
    QCOMPARE(mustNotBeEmpty(field), neverEmpty);
}

QTEST_GUILESS_MAIN(tst_ControlRules)
#include "tst_ControlRules.moc"
