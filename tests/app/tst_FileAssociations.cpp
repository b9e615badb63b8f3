// The file types: the registry entries Windows gets, and what a freedesktop desktop gets in temporary folders.
#include "FileAssociations.h"
#include "TestFiles.h"

#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>
#include <QtEndian>

using namespace FileAssociations;

namespace {

// The side of a square PNG; -1 for anything else.
int pngSide(const QByteArray &bytes)
{
    if (!bytes.startsWith("\x89PNG\r\n\x1a\n") || bytes.mid(12, 4) != "IHDR")
        return -1;
    const quint32 width = qFromBigEndian<quint32>(bytes.constData() + 16);
    return width == qFromBigEndian<quint32>(bytes.constData() + 20) ? int(width) : -1;
}

} // namespace

class tst_FileAssociations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // PATH is an empty folder while a test runs: no cache tool is started.
    void init()
    {
        m_path = qgetenv("PATH");
        qputenv("PATH", m_bin.path().toLocal8Bit());
    }
    void cleanup() { qputenv("PATH", m_path); }

    void createEXEAssociation()
    {
        const auto entries = [](const QList<QPair<QString, QString>> &pairs) {
            QStringList list;
            for (const auto &[key, value] : pairs)
                list.append(key + " = " + value);
            return list;
        };
        const QString id = "Tarnwick.HUDFile", edit = id + "\\shell\\edit";
        const QStringList base { ".HUD = " + id, id + " = Tarnwick HUD File", id + "\\shell\\open = &Open",
            id + "\\shell\\open\\command = \"C:\\T w\\t.exe\" \"%1\"" };
        QCOMPARE(entries(CreateEXEAssociation(
                     " C:\\T w\\t.exe", "C:\\i.dll", id, "Tarnwick HUD File", "HUD", "", true, "", "", -1)),
            base + QStringList({ edit + " = &Edit", edit + "\\command = \"write.exe\" \"%1\"" }));
        QCOMPARE(entries(CreateEXEAssociation(
                     "\"C:\\T w\\t.exe\"", "C:\\i.dll", id, "Tarnwick HUD File", ".HUD", "", false, "", "", 3)),
            base + QStringList({ id + "\\DefaultIcon = \"C:\\i.dll\",3" }));
        QCOMPARE(quoted("\"C:\\t.exe"), "\"\"C:\\t.exe\""); // a quote at one end only is part of the path
    }

    void mimePackageAndIcons()
    {
        QTemporaryDir home;
        QCOMPARE(registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.filePath("config")), "");
        QXmlStreamReader xml(readTestFile(home.filePath("data/mime/packages/tarnwick.xml")));
        QVERIFY(xml.readNextStartElement() && xml.name() == u"mime-info");
        QStringList found, icons { "apps/tarnwick" };
        while (xml.readNextStartElement()) {
            QStringList type { xml.attributes().value("type").toString() };
            while (xml.readNextStartElement()) {
                const QXmlStreamAttributes at = xml.attributes();
                type.append(xml.name().toString() + u':' + at.value("type").toString() + at.value("name").toString()
                    + at.value("pattern").toString());
                if (!at.value("weight").isEmpty())
                    type.append(at.value("weight").toString());
                if (xml.name() == u"icon")
                    icons.append("mimetypes/" + at.value("name").toString());
                xml.skipCurrentElement();
            }
            found.append(type.join(u' '));
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        const auto row = [](const QString &kind, const QString &glob, const QString &weight) {
            return "application/x-tarnwick-" + kind + " comment: sub-class-of:text/plain icon:application-x-tarnwick-"
                + kind + " generic-icon:text-x-generic glob:*." + glob + weight;
        };
        QCOMPARE(found,
            QStringList({ row("cfg", "cfg", " 30"), row("config", "config", " 30"), row("controls", "ctr", ""),
                row("renderer", "rnr", ""), row("hud", "hud", ""), row("railgun", "rlg", "") }));

        // Every icon named is in the theme, drawn in every usual size; the desktop entry shows the program's.
        const QString theme = home.filePath("data/icons/hicolor/");
        for (const QString &icon : icons) {
            QVERIFY2(readTestFile(theme + "scalable/" + icon + ".svg").contains("<svg"), qPrintable(icon));
            for (const int size : { 16, 32, 48, 64, 128, 256 })
                QCOMPARE(pngSide(readTestFile(QStringLiteral("%1%2x%2/%3.png").arg(theme).arg(size).arg(icon))), size);
        }
        QVERIFY(readTestFile(home.filePath("data/applications/tarnwick.desktop")).contains("\nIcon=tarnwick\n"));
    }

    void desktopEntry()
    {
        // The Exec line: quoted, then escaped as a string value: a literal backslash takes four, a literal % two.
        const std::pair<QString, QString> rows[]
            = { { "/home/me/My Games/tarn wick", "\"/home/me/My Games/tarn wick\" %f" },
                  { "/opt/a$b`c\"d/100%", "\"/opt/a\\\\$b\\\\`c\\\\\"d/100%%\" %f" },
                  { "/opt/a\\b", "\"/opt/a\\\\\\\\b\" %f" }, { "/usr/bin/tarnwick", "/usr/bin/tarnwick %f" } };
        for (const auto &[exePath, exec] : rows) {
            // The rows share one home: each rewrites the entry, the rest is there already.
            QCOMPARE(registerFreedesktop(exePath, m_home.filePath("data"), m_home.filePath("config")), "");
            const QString text = QString::fromUtf8(readTestFile(m_home.filePath("data/applications/tarnwick.desktop")));
            const QStringList lines = text.split(u'\n');
            QVERIFY2(lines.first() == "[Desktop Entry]" && lines.contains("Exec=" + exec), qPrintable(text));
            // Only Tarnwick's own types: it is not offered for every text file, and no action leads back to it.
            QVERIFY(lines.contains("MimeType=application/x-tarnwick-cfg;application/x-tarnwick-config;"
                                   "application/x-tarnwick-controls;application/x-tarnwick-renderer;"
                                   "application/x-tarnwick-hud;application/x-tarnwick-railgun;"));
            QVERIFY2(!text.contains("text/plain") && !text.contains("Action"), qPrintable(text));
        }
    }

    void mimeappsList_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("system"); // a list of lower precedence
        QTest::addColumn<QByteArray>("after");
        // The partial files get Tarnwick; configuration files get what opens text/plain, where anything does.
        const QByteArray own = "application/x-tarnwick-controls=tarnwick.desktop\n"
                               "application/x-tarnwick-renderer=tarnwick.desktop\n"
                               "application/x-tarnwick-hud=tarnwick.desktop\n"
                               "application/x-tarnwick-railgun=tarnwick.desktop\n";
        QTest::newRow("no file") << QByteArray() << QByteArray() << "[Default Applications]\n" + own;
        const QByteArray added = "[Added Associations]\r\ntext/plain=gedit.desktop;";
        QTest::newRow("no section, no last line end")
            << added << QByteArray() << added + "\n\n[Default Applications]\n" + own;
        QTest::newRow("text editor set system-wide")
            << QByteArray() << QByteArray("[Default Applications]\ntext/plain=gedit.desktop;\n")
            << "[Default Applications]\napplication/x-tarnwick-cfg=gedit.desktop\n"
               "application/x-tarnwick-config=gedit.desktop\n"
                + own;
        // Other sections, comments, every default (the user's and the system's) and their line ends all stay; the
        // text/plain defaults follow in the order they are tried.
        const QByteArray head = "# mine\n[Added Associations]\ntext/plain=kate.desktop;gedit.desktop;\n\n"
                                "[Default Applications]\r\ntext/plain=kate.desktop\r\n"
                                "application/x-tarnwick-hud=other.desktop;\r\nimage/png = eog.desktop\r\n"
                                "application/x-tarnwick-cfg=vim.desktop\r\n";
        const QByteArray tail = "\n[Removed Associations]\ntext/html=lynx.desktop;\n";
        QTest::newRow("section with others")
            << head + tail
            << QByteArray("[Default Applications]\ntext/plain=gedit.desktop;kate.desktop\n"
                          "application/x-tarnwick-renderer=sys.desktop\n")
            << head
                + "application/x-tarnwick-config=kate.desktop;gedit.desktop\r\n"
                  "application/x-tarnwick-controls=tarnwick.desktop\r\n"
                  "application/x-tarnwick-railgun=tarnwick.desktop\r\n"
                + tail;
    }
    void mimeappsList()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, system);
        QTemporaryDir home;
        const QString list = home.filePath("mimeapps.list");
        const QStringList lists { list, home.filePath("system-mimeapps.list") };
        if (!before.isEmpty())
            writeTestFile(list, before);
        if (!system.isEmpty())
            writeTestFile(lists[1], system);
        QCOMPARE(registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.path(), lists), "");
        QTEST(readTestFile(list), "after");

        // A second registration writes nothing: every file keeps its bytes and its (back-dated) modification time.
        QStringList files { list };
        for (QDirIterator it(home.filePath("data"), QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
            files.append(it.next());
        QCOMPARE(files.size(), 3 + 7 * 7); // the list, the package, the entry; seven icons, each SVG and six PNGs
        const QDateTime past = QDateTime::currentDateTime().addDays(-3);
        QList<QByteArray> bytes;
        for (const QString &path : files) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(past, QFileDevice::FileModificationTime));
            bytes.append(readTestFile(path));
        }
        QCOMPARE(registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.path(), lists), "");
        for (qsizetype i = 0; i < files.size(); ++i) {
            QCOMPARE(readTestFile(files[i]), bytes[i]);
            QCOMPARE(QFileInfo(files[i]).lastModified().toSecsSinceEpoch(), past.toSecsSinceEpoch());
        }
    }

    // What a package installed in a system data folder is not copied into the user's, unless the user has a copy.
    void systemCopies_data()
    {
        QTest::addColumn<bool>("onPath"); // PATH finds the running program by its name
        QTest::addColumn<QString>("changed"); // a system file made to differ, or a user's copy when in home/
        QTest::addColumn<QStringList>("written");
        const QString entry = "applications/tarnwick.desktop";
        QTest::newRow("all installed") << true << QString() << QStringList();
        QTest::newRow("entry runs another program") << false << QString() << QStringList { entry };
        QTest::newRow("older package") << true << "mime/packages/tarnwick.xml"
                                       << QStringList { "mime/packages/tarnwick.xml" };
        QStringList icon { "icons/hicolor/scalable/apps/tarnwick.svg" };
        for (const int size : { 16, 32, 48, 64, 128, 256 })
            icon.append(QStringLiteral("icons/hicolor/%1x%1/apps/tarnwick.png").arg(size));
        QTest::newRow("icon size missing") << true << "icons/hicolor/48x48/apps/tarnwick.png" << icon;
        QTest::newRow("user's own entry") << true << "home/data/" + entry << QStringList { entry };
    }
    void systemCopies()
    {
        QFETCH(bool, onPath);
        QFETCH(QString, changed);
        QTemporaryDir root;
        const QString system = root.filePath("usr/share"), data = root.filePath("home/data");
        QCOMPARE(installDataFiles({ "tarnwick" }, system), "");
        QVERIFY(readTestFile(system + "/applications/tarnwick.desktop").contains("\nExec=tarnwick %f\n"));
        const QString exe = writeTestFile(m_bin.filePath("tarnwick"), "#!/bin/sh\n");
        QVERIFY(QFile::setPermissions(exe, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        if (changed.startsWith("home/")) {
            QVERIFY(QDir().mkpath(QFileInfo(root.filePath(changed)).path()));
            writeTestFile(root.filePath(changed), "[Desktop Entry]\nExec=/old/tarnwick %f\n");
        } else if (changed.endsWith(".png")) {
            QVERIFY(QFile::remove(system + u'/' + changed));
        } else if (!changed.isEmpty()) {
            writeTestFile(system + u'/' + changed, readTestFile(system + u'/' + changed).replace("30", "50"));
        }

        const QString running = onPath ? exe : root.filePath("opt/tarnwick");
        QCOMPARE(
            registerFreedesktop(running, data, root.filePath("home/config"), {}, { root.filePath("none"), system }),
            "");
        QStringList found;
        for (QDirIterator it(data, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
            found.append(QDir(data).relativeFilePath(it.next()));
        QFETCH(QStringList, written);
        found.sort();
        written.sort();
        QCOMPARE(found, written);
        if (written.contains("applications/tarnwick.desktop"))
            QVERIFY(readTestFile(data + "/applications/tarnwick.desktop").contains("\nExec=" + running.toUtf8()));
    }

    // A file where a folder should be: the error names the file not written, and the user's defaults wait.
    void failedWriteNamed()
    {
        const std::pair<QString, QString> rows[] = { { "data", "tarnwick.xml" }, { "data/icons", "tarnwick.png" },
            { "data/applications", "tarnwick.desktop" } };
        for (const auto &[blocked, named] : rows) {
            QTemporaryDir home;
            QVERIFY(QDir().mkpath(QFileInfo(home.filePath(blocked)).path()));
            writeTestFile(home.filePath(blocked), "not a folder");
            const QString error = registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.filePath("config"));
            QVERIFY2(error.contains(named) && !error.contains(u'\n'), qPrintable(error));
            QVERIFY(!QFileInfo::exists(home.filePath("config")));
        }
    }

private:
    QByteArray m_path;
    QTemporaryDir m_bin;
    QTemporaryDir m_home;
};

QTEST_GUILESS_MAIN(tst_FileAssociations)
#include "tst_FileAssociations.moc"
