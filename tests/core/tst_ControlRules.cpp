// What the pages derive from values, without a window: help texts, dependencies, slider labels.
#include "ControlRules.h"
#include "Defaults.h"
#include "SettingCatalog.h"

#include <QTest>

using namespace ControlRules;

class tst_ControlRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The help text variant a control's state picks. The part is one only that variant holds; -1: no help.
    void helpTexts()
    {
        const std::tuple<const char *, int, bool, int, const char *> rows[] = {
            { "chkBlood", 1, true, 2, "blood trails" },
            { "chkFullScr", 1, true, 0, "\r\nWarning: VooDoo 1/2/3 cards do not support window mode." },
            { "chkDelta", 1, true, 2, "Toggles Delta Compression" },
            { "chkDelta", 0, true, 1, "U_REMOVE" },
            { "chkUDP", 0, true, 2, "Enables TCP/IP" },
            { "chkUDP", 1, true, 1, "Disables TCP/IP network protocol.\r\nThis will disable you" },
            { "cbShadows", 1, false, 1, "\r\nTo enable Ordinary Shadows you must" }, // ordinary shadows need marks
            { "cbShadows", 1, true, 2, "Sets type of shadows rendering." },
            { "cbShadows", 2, false, 2, "Sets type of shadows rendering." },
            { "optLighting(1)", 1, true, 2, "without rendering textures" }, // an option of a pair
            { "chkCurve", 0, true, -1, "" },
        };
        for (const auto &[key, state, marksOn, type, part] : rows) {
            const std::optional<HelpText> help
                = SettingCatalog::instance().help(QString::fromLatin1(key), state, marksOn);
            QVERIFY2(help.has_value() == (type >= 0), key);
            if (help) {
                QVERIFY2(int(help->msgType) == type && help->text.contains(QString::fromLatin1(part)),
                    qPrintable(help->text));
                QCOMPARE(help->text.contains(u'\n'), QByteArrayView(part).contains('\n'));
            }
        }
    }

    void dependencies_data()
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
        QTest::newRow("status bar off") << QStringList { "chk2D", "chkIcons" } << QStringList { "chkStBar" }
                                        << "chkStBar" << none << QStringList { "chkIcons", "chkLAG", "chk3DIcons" };
        // The icons box judges the 3D icons by 2D and itself alone.
        QTest::newRow("icons without the status bar")
            << QStringList { "chk2D", "chkIcons" } << QStringList { "chkStBar" } << "chkIcons"
            << QStringList { "chk3DIcons" } << none;
        QTest::newRow("crosshair on, 2D off") << QStringList { "chkCHair" } << QStringList { "chk2D" } << "chkCHair"
                                              << none << QStringList { "slCHairSize" };

        // A box that alone enables its dependants, both ways (the rest are alike); the high sky disables them.
        const auto both = [&none](const char *box, const QStringList &dependants, bool enables) {
            const QStringList self { QString::fromLatin1(box) };
            QTest::addRow("%s checked", box) << self << QStringList() << self.first() << (enables ? dependants : none)
                                             << (enables ? none : dependants);
            QTest::addRow("%s clear", box) << QStringList() << self << self.first() << (enables ? none : dependants)
                                           << (enables ? dependants : none);
        };
        both("chkFlares", { "txtFlSize", "txtFlFade" }, true);
        both("chkHighSky", { "chkVTP", "chkSun" }, false);
    }

    void dependencies()
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
    void rulesNameRealControls()
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

    void sliderLabels()
    {
        const std::tuple<const char *, int, const char *> rows[] = {
            { "sldGamma", 10, "Gamma: 1.0" }, // tenths
            { "sld2dsnd", 4, "2D Sound: 0.4" }, { "slCHairSize", 33, "Crosshair Size: 33" },
            { "sldHandicap", 100, "Handicap: 100 / None" }, { "sldHandicap", 99, "Handicap: 99" },
            { "sldTCT", 12, "Team Chat Time: 12 min" }, // a unit after
            { "Slider1", 45, "View Size: 100" }, // the view size stays
        };
        const SettingCatalog &catalog = SettingCatalog::instance();
        for (const auto &[slider, position, label] : rows)
            QCOMPARE(sliderLabel(catalog.row(catalog.indexOfControl(QString::fromLatin1(slider))), position),
                QString::fromLatin1(label));
    }
};

QTEST_GUILESS_MAIN(tst_ControlRules)
#include "tst_ControlRules.moc"
