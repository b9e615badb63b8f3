#include "CoreTestSupport.h"

using namespace TestSupport;

namespace {

// Lines of `after` that differ from `before`, same length assumed.
QStringList changedLines(const QStringList &before, const QStringList &after)
{
    QStringList out;
    for (qsizetype i = 0; i < after.size(); ++i) {
        if (before.value(i) != after[i])
            out.append(after[i]);
    }
    return out;
}

const QByteArray playerFile = "bind w \"+forward\"\r\nbind q \"+button3\"\r\nseta g_spAwards \"\\a1\\4\\a5\\2\"\r\n"
                              "seta cg_draw2d 1\r\nseta cg_drawfps 1\r\nseta cl_noprint 0\r\nseta cg_gibs 1\r\n"
                              "seta r_mode 6\r\nseta cg_shadows 3\r\n";

} // namespace

class tst_Defaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void restoreOnStartState()
    {
        // The snapshot holds the start values with the eight default entries written over them.
        StartDocument doc;
        QVERIFY(!doc.isModified() && !doc.HasFile() && !doc.canRestore());
        QCOMPARE(doc.displayName(), QStringLiteral("Untitled"));
        const QStringList before = wholeFileLines(doc);
        doc.ApplySnapshot();
        QCOMPARE(changedLines(before, wholeFileLines(doc)),
            (QStringList { "seta cl_packetdup \"0\"", "seta r_flares \"1\"" }));
    }

    void absentSettingsTakeTheSnapshot()
    {
        StartDocument doc;
        QVERIFY(readBytes(doc, "seta cg_fov 100\r\n"));
        QCOMPARE(written(doc, "r_flares"), QStringLiteral("1"));
        QCOMPARE(written(doc, "cl_packetdup"), QStringLiteral("0"));
        // A second read keeps what the first one took.
        QVERIFY(readBytes(doc, "seta cg_gibs 1\r\n"));
        QCOMPARE(written(doc, "cg_fov"), QStringLiteral("100"));
    }

    void defaultsSetKeysListsAndSnapshot()
    {
        StartDocument doc;
        QVERIFY(readBytes(doc, playerFile));
        doc.setState(rowOf("chkSun"), 0, 1);
        doc.setText(rowOf("txtName"), 0, "Player");

        Defaults(doc, false);
        QCOMPARE(doc.bindings().at(1), (ActionBinding { "W", "" }));

        Defaults(doc, true);
        QVERIFY(!doc.isModified());
        QCOMPARE(doc.bindings().at(1), (ActionBinding { "W", "UPARROW" }));
        QCOMPARE(doc.bindings().at(29), ActionBinding {}); // the gesture has no default key: the file's goes
        QCOMPARE(written(doc, "r_mode"), QStringLiteral("3"));
        QCOMPARE(written(doc, "r_drawsun"), QStringLiteral("1"));
        QCOMPARE(written(doc, "name"), QStringLiteral("Player"));

        doc.setState(rowOf("sldGamma"), 0, 20);
        doc.ApplySnapshot();
        QCOMPARE(written(doc, "name"), QStringLiteral("UnnamedPlayer"));
        QCOMPARE(written(doc, "r_gamma"), QStringLiteral("1"));
        QCOMPARE(written(doc, "cg_draw2d"), QStringLiteral("1"));
    }

    // Gibs, marks and the rest of the values survive every mode; only these change.
    void newModes()
    {
        // Forward's key, the gesture's key, the first award, cg_draw2d and cg_drawfps, cl_noprint, r_mode.
        const std::pair<NewMode, QStringList> rows[]
            = { { NewMode::KeepControlKeys, { "W", "Q", "4", "1", "1", "0", "6" } },
                  { NewMode::ResetToDefaults, { "W", "", "4", "1", "1", "0", "3" } },
                  { NewMode::Clear, { "", "", "0", "0", "0", "1", "6" } } };
        QTemporaryDir dir;
        const QString player = writeTestFile(dir.filePath("player.cfg"), playerFile);
        for (const auto &[mode, values] : rows) {
            StartDocument doc;
            QVERIFY(OpenCfgFile(doc, player));
            QVERIFY(doc.HasFile() && doc.canRestore());
            doc.setState(rowOf("chkMarks"), 0, 1);
            NewCfg(doc, "Fresh", mode);
            QCOMPARE(doc.displayName(), QStringLiteral("Fresh"));
            QVERIFY(!doc.HasFile() && doc.path().isEmpty() && !doc.canRestore() && !doc.isModified());
            QCOMPARE((QStringList { doc.bindings().at(1).firstKey, doc.bindings().at(29).firstKey,
                         doc.text(rowOf("txtAwards"), 0), written(doc, "cg_draw2d"), written(doc, "cg_drawfps"),
                         written(doc, "cl_noprint"), written(doc, "r_mode") }),
                values);
            QVERIFY(written(doc, "cg_gibs") == u"1" && written(doc, "cg_marks") == u"1");
            QCOMPARE(doc.text(rowOf("txtAwards"), 4), values[2] == u"4" ? QStringLiteral("2") : QStringLiteral("0"));
        }
    }
};

QTEST_GUILESS_MAIN(tst_Defaults)
#include "tst_Defaults.moc"
