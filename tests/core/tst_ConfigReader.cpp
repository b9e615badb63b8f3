#include "CoreTestSupport.h"

#include "CfgNumber.h"

#include <QDir>

using namespace TestSupport;

class tst_ConfigReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Start state: cg_fov 90, s_volume 1, r_gamma 1, sensitivity 9.0, handicap 100, rate 25000,
    // r_texturemode GL_LINEAR_MIPMAP_NEAREST, cl_maxpackets 30.
    void valuesThroughRulesAndMappings_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("expected");

        const auto row = [](const char *tag, const char *line, const char *setting, const char *expected) {
            QTest::newRow(tag) << QByteArray(line) << QString::fromLatin1(setting) << QString::fromLatin1(expected);
        };
        // Keyword and name compare without regard to case; set works like seta.
        row("SETA, quoted name in capitals, tabs", "SETA\t\"R_PICMIP\"\t\t\"2\"", "r_picmip", "2");
        row("set", "set r_picmip 2", "r_picmip", "2");
        row("leading blank ignored", " seta r_picmip 2", "r_picmip", "1");
        // Read rules: fallback alone is a lower bound; upper with fallback replaces what is above.
        row("fallback is a lower bound", "seta cg_fov \"80\"", "cg_fov", "90");
        row("not a number falls back", "seta cg_fov \"wide\"", "cg_fov", "90");
        row("name alone falls back", "seta cg_fov", "cg_fov", "90");
        row("later line wins", "seta cg_fov 100\r\nseta cg_fov 110", "cg_fov", "110");
        row("above upper falls back", "seta r_subdivisions \"1000\"", "r_subdivisions", "4");
        row("upper itself", "seta r_subdivisions \"999\"", "r_subdivisions", "999");
        row("upper alone caps", "seta r_railwidth 12000", "r_railwidth", "9999");
        row("upper alone, no lower bound", "seta r_railwidth -5", "r_railwidth", "-5");
        row("upper alone, text", "seta r_railwidth thin", "r_railwidth", "9999");
        row("rounded value passes", "seta s_volume 1.4", "s_volume", "1");
        row("rounded value fails", "seta s_volume 1.6", "s_volume", "0.7");
        row("half rounds to even: 1.5 is 2", "seta s_volume 1.5", "s_volume", "0.7");
        row("half rounds to even: 0.5 is 0", "seta cg_gibs 0.5", "cg_gibs", "0");
        row("negative passes, slider clamps", "seta s_volume -1", "s_volume", "0");
        // Slider positions round halves to even; sensitivity tenths round halves away from zero.
        row("tenths half to even up", "seta s_volume 0.35", "s_volume", "0.4");
        row("tenths half to even down", "seta s_volume 0.25", "s_volume", "0.2");
        row("gamma clamps", "seta r_gamma 3.5", "r_gamma", "3");
        row("gamma not a number keeps", "seta r_gamma bright", "r_gamma", "1");
        row("sensitivity half away", "seta sensitivity 2.25", "sensitivity", "2.3");
        row("sensitivity above range", "seta sensitivity 45", "sensitivity", "30.0");
        row("sensitivity not a number keeps", "seta sensitivity fast", "sensitivity", "9.0");
        row("handicap clamps", "seta handicap 0", "handicap", "1");
        // Check boxes: inverted boxes keep their meaning through a read and a write.
        row("inverted box", "seta cl_nodelta 1", "cl_nodelta", "1");
        row("box upper only, negative clamps", "seta r_detailtextures -3", "r_detailtextures", "0");
        // Lists by position, item value, name and bit ranges.
        row("position list above upper", "seta r_mode 11", "r_mode", "2");
        row("position list negative clamps", "seta r_mode -4", "r_mode", "0");
        row("s_khz 44 is 11", "seta s_khz 44", "s_khz", "11");
        row("rate item value", "seta rate 4000", "rate", "4000");
        row("rate without entry keeps", "seta rate 7777", "rate", "25000");
        row("colorbits 24 is 32-bit", "seta r_colorbits 24", "r_colorbits", "32");
        row("texturemode any case", "seta r_texturemode gl_linear_mipmap_linear", "r_texturemode",
            "GL_LINEAR_MIPMAP_LINEAR");
        row("texturemode unknown keeps", "seta r_texturemode GL_FANCY", "r_texturemode", "GL_LINEAR_MIPMAP_NEAREST");
        // Text fields.
        row("text field rounds half to even", "seta cg_brasstime 2500.5", "cg_brasstime", "2500");
        row("trimmed field rounds", "seta cl_maxpackets 30.6", "cl_maxpackets", "31");
        row("huge integer", "seta cg_fov 1e20", "cg_fov", "100000000000000000000");
        row("model slashes", "seta model \"sarge\\blue\"", "model", "sarge/blue");
        row("name trimmed", "seta name \"  Big Bad  \"", "name", "Big Bad");
        row("name keeps its bytes", "seta name \"\xE9l\xE8ve\"", "name", "\xE9l\xE8ve");
        // A name only matches when a blank or the end follows it.
        row("longer name not taken", "seta cg_drawCrosshairNames 0", "cg_drawcrosshair", "0");
        row("r_flaresize reaches its own row", "seta r_flaresize 55", "r_flaresize", "55");
        // Info strings.
        row("awards", "seta g_spAwards \"\\a1\\3\\a2\\2.5\\a6\\7x\"", "g_spAwards",
            "\\a1\\3\\a2\\2\\a3\\0\\a4\\0\\a5\\0\\a6\\7");
        row("videos", "seta g_spVideos \"\\tier1\\1\\tier2\\0\\tier3\\1.0\\tier4\\2\"", "g_spVideos",
            "\\tier1\\1\\tier2\\0\\tier3\\1\\tier4\\0\\tier5\\0\\tier6\\0\\tier7\\0\\tier8\\0");
    }

    void valuesThroughRulesAndMappings()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, setting);
        QFETCH(QString, expected);
        StartDocument doc;
        QVERIFY(readBytes(doc, line + "\r\n"));
        QCOMPARE(written(doc, setting.toLatin1().constData()), expected);
        QVERIFY(!doc.isModified() && doc.canRestore());
    }

    // Whether a text is wholly a number, and its leading number.
    void numbers()
    {
        const std::tuple<const char *, bool, double> rows[] = { { "42", true, 42.0 }, { "  -7 ", true, -7.0 },
            { "+.5", true, 0.5 }, { "3.", true, 3.0 }, { "2E-1", true, 0.2 }, { "1e", false, 1.0 },
            { "90abc", false, 90.0 }, { "0x10", false, 0.0 }, { "inf", false, 0.0 }, { "", false, 0.0 },
            { "-", false, 0.0 }, { "1e999", true, 1.7976931348623157e308 }, { "-1e-999", true, 0.0 } };
        for (const auto &[text, numeric, leading] : rows) {
            QVERIFY2(CfgNumber::parse(QString::fromLatin1(text)).has_value() == numeric, text);
            QVERIFY2(CfgNumber::numericValue(QString::fromLatin1(text)) == leading, text);
        }
    }

    // The working copy: "//" comments cut (but on the last line), every line ended by CR LF, a first empty line.
    void workingCopy()
    {
        const std::pair<const char *, const char *> rows[] = {
            { "", "" },
            { "a //x\r\nb \"//y\"", "\r\na \r\nb \"//y\"" }, // not on the last line
            { "s \"http://x\"\r\nt", "\r\ns \"http:\r\nt" }, // inside quotes too
            { "a//x\r\nb//y\r\n", "\r\na\r\nb//y" }, // a final CR LF ends the last line
            { "a//x\rb", "\r\na\r\nb" }, // a lone CR ends a line
            { "a //x\nb //y\n", "\r\na //x\r\nb //y\r\n" }, // an LF-only file is one line
            { "a\nb //c\nd\r\ne", "\r\na\r\nb \r\ne" }, // LF lines inside a cut line go with the comment
            { "\r\n\r\nx", "\r\n\r\n\r\nx" },
        };
        for (const auto &[file, copy] : rows)
            QCOMPARE(ConfigReader::workingCopy(file), QByteArray(copy));
    }

    // Which lines a read keeps for the next write.
    void lineRecognition()
    {
        const std::pair<const char *, QStringList> rows[] = {
            // Unknown settings, with their quotes and their tabs as blanks; anything starting with "set" is one.
            { "seta\tcg_zoomfov\t\"22.5\"\r\nSET Foo bar\r\n", { "seta cg_zoomfov \"22.5\"", "SET Foo bar" } },
            { "settings here\r\nset\r\n", { "settings here", "set" } },
            { "unbindall\r\nexec x.cfg\r\n  seta foo 1\r\nbind x \"+foo\"\r\nvstr a\r\n", {} }, // other lines dropped
            { "seta name \"\"\r\nseta model\r\n", { "seta name \"\"", "seta model" } }, // empty value, no rule
            { "seta color1 \"4\"\r\nseta r_modeFullscreen \"\"\r\n",
                { "seta color1 \"4\"", "seta r_modeFullscreen \"\"" } },
            { "seta a \"1\" // one\r\nseta b \"2\" // two", { "seta a \"1\" ", "seta b \"2\" // two" } },
            { "seta a 1 //x\nseta b 2\n", { "seta a 1 //x", "seta b 2" } }, // an LF-only file keeps its comments
            { "seta cg_fov 100\r\nset r_mode 4\r\n", {} }, // catalogued lines
        };
        for (const auto &[file, kept] : rows) {
            StartDocument doc;
            QVERIFY(readBytes(doc, file));
            QCOMPARE(doc.keptLines(), kept);
        }
    }

    void workingCopyIsRemoved()
    {
        QTemporaryDir temp;
        QTemporaryDir files;
        const QByteArray oldTemp = qgetenv("TMPDIR");
        qputenv("TMPDIR", temp.path().toLocal8Bit());
        ConfigDocument doc;
        QVERIFY(
            ReadCfgFile(doc, writeTestFile(files.filePath("q3config.cfg"), "seta cg_fov 100\r\n"), FileScope::Whole));
        QVERIFY(!ReadCfgFile(doc, files.filePath("missing.cfg"), FileScope::Whole));
        qputenv("TMPDIR", oldTemp);
        QCOMPARE(QDir(temp.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden), QStringList());
        QCOMPARE(QDir(files.path()).entryList(QDir::Files), QStringList { "q3config.cfg" });
    }

    void failedReadLeavesDocument()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir("folder.cfg"));
        for (const QString &path :
            { dir.filePath("missing.cfg"), dir.filePath("folder.cfg"), QStringLiteral("/dev/zero") }) {
            StartDocument doc;
            QVERIFY(readBytes(doc, "seta cg_fov 100\r\nseta foo 1\r\nbind w \"+forward\"\r\n"));
            doc.setState(rowOf("chkGibs"), 0, 1);
            const QList<SlotValue> values = doc.values(), snapshot = doc.snapshot();
            const ActionBindings bindings = doc.bindings();
            QString error;
            QVERIFY(!ReadCfgFile(doc, path, FileScope::Whole, &error));
            QCOMPARE(error, QStringLiteral("Tarnwick wasn't be able to create or/and load backup file."));
            QVERIFY2(
                doc.values() == values && doc.snapshot() == snapshot && doc.bindings() == bindings, qPrintable(path));
            QVERIFY(doc.keptLines() == QStringList { "seta foo 1" } && doc.isModified());
        }
    }

    void partialReadTakesOnlyItsArea()
    {
        StartDocument doc;
        QVERIFY(readBytes(doc, "seta cg_fov 100\r\nseta cg_gibs 1\r\nseta old 1\r\nbind w \"+forward\"\r\n"));
        doc.setText(rowOf("txtFOV"), 0, "130"); // a Renderer edit the import overwrites
        doc.setState(rowOf("chk2D"), 0, 1); // an unsaved HUD edit reverts to the snapshot
        QVERIFY(readBytes(
            doc, "seta cg_fov 120\r\nseta cg_draw2d 1\r\nseta mine 2\r\nbind x \"+back\"\r\n", FileScope::Renderer));
        QCOMPARE(written(doc, "cg_fov"), QStringLiteral("120"));
        QCOMPARE(written(doc, "cg_gibs"), QStringLiteral("1"));
        QCOMPARE(written(doc, "cg_draw2d"), QStringLiteral("0"));
        QCOMPARE(doc.keptLines(), (QStringList { "seta cg_draw2d 1", "seta mine 2" }));
        QCOMPARE(doc.bindings().at(1), (ActionBinding { "W", "" }));
        QCOMPARE(doc.bindings().at(2), ActionBinding {});
    }

    void controlsReadReplacesBindings()
    {
        StartDocument doc;
        QVERIFY(readBytes(doc, "bind w \"+forward\"\r\nbind MOUSE1 \"+attack\"\r\n"));
        QVERIFY(readBytes(doc, "bind x \"+back\"\r\nseta sensitivity 4\r\nseta cg_fov 100\r\n", FileScope::Controls));
        QCOMPARE(doc.bindings().at(1), ActionBinding {});
        QCOMPARE(doc.bindings().at(10), ActionBinding {});
        QCOMPARE(doc.bindings().at(2), (ActionBinding { "X", "" }));
        QCOMPARE(written(doc, "sensitivity"), QStringLiteral("4.0"));
        QCOMPARE(doc.keptLines(), QStringList { "seta cg_fov 100" });
    }

    // What a whole read does not carry into the document, and the copy of the original a save keeps first.
    void dropped_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QList<qsizetype>>("lines"); // the numbers of the dropped lines
        QTest::addColumn<QStringList>("commands");
        QTest::addColumn<QStringList>("reasons"); // why each is dropped: C command, V variable, B bind, S blank
        using L = QList<qsizetype>;
        QTest::newRow("comments and blank lines only")
            << QByteArray("// a\r\n\r\n   \t\r\n  // b\r\n\"\"\r\n") << L {} << QStringList {} << QStringList {};
        QTest::newRow("settings, kept lines, action binds")
            << QByteArray("seta cg_fov 100\nseta my_var 1\nset other \"x\"\nbind w \"+forward\"\n") << L {}
            << QStringList {} << QStringList {};
        QTest::newRow("a console command") << QByteArray("seta cg_fov 100\r\nexec other.cfg\r\n") << L { 2 }
                                           << QStringList { "exec" } << QStringList { "C" };
        QTest::newRow("bare variables, known or prefixed")
            << QByteArray("com_maxfps 125\nsensitivity 5\nvid_restart\n") << L { 1, 2, 3 }
            << QStringList { "com_maxfps", "sensitivity", "vid_restart" } << QStringList { "V", "V", "C" };
        QTest::newRow("unbindall, vstr; words once")
            << QByteArray("unbindall\nvstr a\nbind w +forward\nvstr b\n") << L { 1, 2, 4 }
            << QStringList { "unbindall", "vstr" } << QStringList { "C", "C", "C" };
        QTest::newRow("a bind of no action, a bindlist")
            << QByteArray("bind ESCAPE \"togglemenu\"\nbindlist\n") << L { 1, 2 } << QStringList { "bind", "bindlist" }
            << QStringList { "B", "C" };
        QTest::newRow("a setting after blanks is not read")
            << QByteArray("  seta cg_fov 90\n\tbind w +back\n") << L { 1, 2 } << QStringList { "seta", "bind" }
            << QStringList { "S", "S" };
        QTest::newRow("a command with a comment after it, lone CR ends")
            << QByteArray("// top\rwait // pause\rsay hi") << L { 2, 3 } << QStringList { "wait", "say" }
            << QStringList { "C", "C" };
    }

    void dropped()
    {
        QFETCH(QByteArray, file);
        QFETCH(QList<qsizetype>, lines);
        QFETCH(QStringList, commands);
        QFETCH(QStringList, reasons);
        const DroppedLines all = ConfigReader::droppedLines(ConfigReader::workingCopy(file), -1);
        QList<qsizetype> numbers;
        QStringList why;
        const QHash<QString, QString> letters { { "a console command", "C" }, { "a variable without set or seta", "V" },
            { "binds a key to none of the 37 actions", "B" }, { "starts with a blank", "S" } };
        for (const auto &[number, text] : all.lines) {
            numbers << number;
            why << letters.value(ConfigReader::dropReason(text), ConfigReader::dropReason(text));
        }
        QCOMPARE(numbers, lines);
        QCOMPARE(all.count, lines.size());
        QCOMPARE(all.commands, commands);
        QCOMPARE(why, reasons);
        // The window asks for a few; the count is still all of them.
        const DroppedLines few = ConfigReader::droppedLines(ConfigReader::workingCopy(file), 1);
        QCOMPARE(few.lines.size(), qMin<qsizetype>(1, lines.size()));
        QCOMPARE(few.count, lines.size());
    }

    void keepOriginal_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("orig"); // an .orig already there; empty: none
        QTest::addColumn<bool>("kept");
        const QByteArray commands = "seta cg_fov 100\r\nexec more.cfg\r\n";
        QTest::newRow("commands: kept") << commands << QByteArray() << true;
        QTest::newRow("nothing dropped") << QByteArray("seta cg_fov 100\r\n// note\r\n") << QByteArray() << false;
        QTest::newRow("written by Tarnwick") << "//generated by Tarnwick\r\n" + commands << QByteArray() << false;
        QTest::newRow("an .orig is never replaced") << commands << QByteArray("older") << false;
    }

    void keepOriginal()
    {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, orig);
        QFETCH(bool, kept);
        QTemporaryDir dir;
        const QString path = writeTestFile(dir.filePath("q3config.cfg"), file);
        if (!orig.isEmpty())
            writeTestFile(path + ".orig", orig);
        QString keptAs;
        QString error;
        QVERIFY(KeepOriginal(path, &keptAs, &error));
        QCOMPARE(keptAs, kept ? path + ".orig" : QString());
        QCOMPARE(readTestFile(path + ".orig"), kept ? file : orig);
        QCOMPARE(readTestFile(path), file);
        // Nothing left behind but the copy.
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), kept || !orig.isEmpty() ? 2 : 1);
    }
};

QTEST_GUILESS_MAIN(tst_ConfigReader)
#include "tst_ConfigReader.moc"
