// tarnwick.ini: reading single settings, writing them without disturbing the rest, and the eight program options.
#include "ProgramSettings.h"
#include "TestFiles.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

namespace {

QTemporaryDir dir;

/// Puts `bytes` in the folder's file `name`; a null array leaves no file at all.
QString file(const QByteArray &bytes, const QString &name = QStringLiteral("tarnwick.ini"))
{
    const QString path = dir.filePath(name);
    QFile::remove(path);
    return bytes.isNull() ? path : writeTestFile(path, bytes);
}

QStringList fields(const ProgramSettings &s)
{
    QStringList out { s.q3dir };
    for (int n : { s.gradient, s.aot, s.wx, s.wy, s.pv_wx, s.pv_wy, s.pv_open })
        out.append(QString::number(n));
    return out;
}

template <typename... Columns> void row(const char *name, const Columns &...columns)
{
    (QTest::newRow(name) << ... << columns);
}

} // namespace

class tst_ProgramSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void readSetting_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("expected"); // the default is "Dflt"
        const QString cut(749, u'x');
        row("case of section and key", QByteArray("[tARNWICK]\r\nQ3Dir=x\r\n"), u"Q3DIR"_qs, u"x"_qs);
        row("blanks", QByteArray("  [ Tarnwick ] \r\n \t q3dir \t=  a b \t\r\n"), u"q3dir"_qs, u"a b"_qs);
        row("quoted", QByteArray("[Tarnwick]\r\nq3dir=\" a \"\r\n"), u"q3dir"_qs, u" a "_qs);
        row("750 characters", "[Tarnwick]\r\nq3dir=" + QByteArray(750, 'x'), u"q3dir"_qs, cut);
        row("empty", QByteArray("[Tarnwick]\r\nq3dir=\r\n"), u"q3dir"_qs, u"dflt"_qs);
        row("no file", QByteArray(), u"q3dir"_qs, u"dflt"_qs);
        row("second key", QByteArray("[Tarnwick]\r\nwx=1\r\nWX=2\r\n[Tarnwick]\r\nwx=3\r\n"), u"wx"_qs, u"1"_qs);
        row("second section", QByteArray("[Tarnwick]\r\n[tarnwick]\r\nwx=3\r\n"), u"wx"_qs, u"dflt"_qs);
        row("before any section", QByteArray("wx=1\r\n[Tarnwick]\r\n"), u"wx"_qs, u"dflt"_qs);
        row("LF and BOM", QByteArray("\xEF\xBB\xBF[Tarnwick]\nwx=1\nwy=2\n"), u"wy"_qs, u"2"_qs);
        row("CR", QByteArray("[Tarnwick]\rwx=1\rwy=2"), u"wy"_qs, u"2"_qs);
        row("UTF-8", QByteArray("[Tarnwick]\r\nq3dir=C:\\Sp\xC3\xA4le\r\n"), u"q3dir"_qs, u"C:\\Späle"_qs);
    }

    void readSetting()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, key);
        QFETCH(QString, expected);
        QCOMPARE(IniFile::ReadSetting("tarnwick", key, "Dflt", file(bytes)), expected);
    }

    void writeSetting_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        row("no file", QByteArray(), u"Q3Dir"_qs, u"C:\\q3"_qs, QByteArray("[Tarnwick]\r\nq3dir=C:\\q3\r\n"));
        row("in place", QByteArray("; mine\r\n[Other]\r\nq3dir=o\r\n\r\n[TARNWICK]\r\n Q3DIR = a\r\nx=  y \r\n"),
            u"q3dir"_qs, u"b"_qs,
            QByteArray("; mine\r\n[Other]\r\nq3dir=o\r\n\r\n[TARNWICK]\r\nq3dir=b\r\nx=  y \r\n"));
        row("new key before blank lines", QByteArray("[Tarnwick]\r\nwx=1\r\n;c\r\n\r\n[Other]\r\n"), u"aot"_qs, u"1"_qs,
            QByteArray("[Tarnwick]\r\nwx=1\r\n;c\r\naot=1\r\n\r\n[Other]\r\n"));
        row("new section", QByteArray("[Other]\r\nno equals\r\n"), u"aot"_qs, u"1"_qs,
            QByteArray("[Other]\r\nno equals\r\n[Tarnwick]\r\naot=1\r\n"));
        row("BOM, LF, bytes not UTF-8", QByteArray("\xEF\xBB\xBF[O]\nn=\xFF\xE9\n[Tarnwick]"), u"aot"_qs, u"0"_qs,
            QByteArray("\xEF\xBB\xBF[O]\r\nn=\xFF\xE9\r\n[Tarnwick]\r\naot=0\r\n"));
        row("line break in value", QByteArray("[Tarnwick]\r\n"), u"q3dir"_qs, u"a\nwx=1"_qs,
            QByteArray("[Tarnwick]\r\nq3dir=a wx=1\r\n"));
    }

    void writeSetting()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);
        const QString path = file(before);
        QVERIFY(IniFile::WriteSetting("Tarnwick", key, value, path));
        QCOMPARE(readTestFile(path), after);
    }

    void loadOptions_data()
    {
        QTest::addColumn<QByteArray>(
            "lines"); // after "[Tarnwick]" and a q3dir line; of a key given twice the first counts
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<bool>("fellBack");
        const QString q3 = QStringLiteral("D:\\Quake III");
        const QStringList defaults { q3, "1", "0", "1000", "2000", "3600", "3600", "0" };
        const QByteArray moved = "gradient=0\naot=1\nwx=10\nwy=20\npv_wx=30\npv_wy=40\npv_open=1\n";
        row("nothing stored", QByteArray(), defaults, false);
        row("all stored", moved, QStringList { q3, "0", "1", "10", "20", "30", "40", "1" }, false);
        row("check box true", QByteArray("gradient=-1\naot=-1\n"), defaults, false);
        row("check box grey", QByteArray("gradient=-2\naot=-2\n"), defaults, false);
        row("rounding", QByteArray("gradient=1.5\naot=-0.5\nwx=\" 7 \"\nwy=2.5\npv_wx=3.5\npv_wy=-2.5\n"),
            QStringList { q3, "2", "0", "7", "2", "4", "-2", "0" }, false);
        row("abc in gradient", "gradient=abc\n" + moved, defaults, true);
        row("abc in pv_open", "pv_open=abc\n" + moved, defaults, true);
        row("too big", "wx=3000000000\n" + moved, defaults, true);
    }

    void loadOptions()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QStringList, expected);
        QFETCH(bool, fellBack);
        bool fell = !fellBack;
        QCOMPARE(fields(pbLoadOptions(file("[Tarnwick]\nq3dir=D:\\Quake III\n" + lines), 1000, 2000, &fell)), expected);
        QCOMPARE(fell, fellBack);
    }

    void saveOptionsKeepsTheRestAndLoadsBack()
    {
        QString path = file(QByteArray());
        QVERIFY(pbSaveOptions(path, ProgramSettings {}, true)); // minimised: no position to keep
        QCOMPARE(readTestFile(path),
            QByteArray("[Tarnwick]\r\nq3dir=\r\ngradient=1\r\naot=0\r\npv_wx=3600\r\npv_wy=3600\r\npv_open=0\r\n"));

        path = file("; kept\r\n[Other]\r\nwx=5\r\n\r\n[tarnwick]\r\nwy=1\r\nextra = yes\r\n");
        const ProgramSettings saved { u"C:\\Spiele\\Quake III Arena"_qs, 0, 1, -150, 40000, 12, 13, 1 };
        QVERIFY(pbSaveOptions(path, saved, false));
        QCOMPARE(readTestFile(path),
            QByteArray("; kept\r\n[Other]\r\nwx=5\r\n\r\n[tarnwick]\r\nwy=40000\r\nextra = yes\r\n"
                       "q3dir=C:\\Spiele\\Quake III Arena\r\ngradient=0\r\naot=1\r\nwx=-150\r\n"
                       "pv_wx=12\r\npv_wy=13\r\npv_open=1\r\n"));
        for (int round = 0; round < 2; ++round) { // a second round trip must not turn the gradient back on
            ProgramSettings loaded = pbLoadOptions(path, 0, 0);
            QCOMPARE(fields(loaded), fields(saved));
            loaded.wx = loaded.wy = -32000;
            QVERIFY(pbSaveOptions(path, loaded, true));
        }
    }

    // A missing folder, a folder in the way: the write fails and says so (permissions, a size limit and what stays of
    // the old file are tst_FailureInjection's).
    void failedWriteSaysWhy()
    {
        QDir(dir.path()).mkpath("folder");
        for (const QString &target : { u"missing/tarnwick.ini"_qs, u"folder"_qs }) {
            const QString path = dir.filePath(target);
            QString error;
            QVERIFY(!IniFile::WriteSetting("Tarnwick", "wx", "2", path, &error));
            QVERIFY2(error.contains(QFileInfo(path).fileName()), qPrintable(error));
            error.clear();
            QVERIFY(!pbSaveOptions(path, ProgramSettings {}, false, &error));
            QVERIFY(!error.isEmpty() && !QFile::exists(dir.filePath("missing")));
        }
    }

    // The settings file sits beside the program where that folder is writable and not an installed copy's, else in
    // the user's settings folder.
    void settingsFilePath()
    {
        QDir(dir.path()).mkpath("open");
        QDir(dir.path()).mkpath("locked");
        QDir(dir.path()).mkpath("prefix/bin");
        QDir(dir.path()).mkpath("prefix/share/tarnwick");
        QFile::setPermissions(dir.filePath("locked"), QFile::ReadOwner | QFile::ExeOwner);
        const QString config = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
        for (const auto &[folder, portable] : { std::pair(u"open"_qs, true), { u"missing"_qs, false },
                 { u"prefix/bin"_qs, false }, { u"locked"_qs, false } }) {
            if (QFileInfo(dir.filePath("locked")).isWritable() && folder == u"locked")
                QSKIP("running as a user who writes into read-only folders");
            const QString path = ::settingsFilePath(dir.filePath(folder));
            QCOMPARE(path, QDir(portable ? dir.filePath(folder) : config).filePath("tarnwick.ini"));
            QVERIFY(QFileInfo(QFileInfo(path).path()).isDir());
        }
    }

    // A data file beside the program wins; an installed copy's comes from its data folder.
    void programDataFile()
    {
        QTemporaryDir root;
        const QString bin = root.filePath("usr/bin"), data = root.filePath("usr/share/tarnwick/Images/hud.img");
        const QString beside = bin + "/Images/hud.img";
        for (const auto &[besideThere, dataThere, expected] :
            { std::tuple(false, false, beside), { false, true, data }, { true, true, beside } }) {
            QVERIFY(QDir().mkpath(QFileInfo(besideThere ? beside : bin).path()));
            if (dataThere && QDir().mkpath(QFileInfo(data).path()))
                writeTestFile(data, "sheet");
            if (besideThere)
                writeTestFile(beside, "sheet");
            QCOMPARE(::programDataFile(bin, "Images/hud.img"), expected);
        }
    }
};

QTEST_GUILESS_MAIN(tst_ProgramSettings)
#include "tst_ProgramSettings.moc"
