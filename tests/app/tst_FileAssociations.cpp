#include "FileAssociations.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace FileAssociations;

namespace {

struct Row
{
    const char *tag, *a, *b, *c = nullptr;
};

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes, QFile::Permissions permissions = {})
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    if (permissions)
        QVERIFY(file.setPermissions(permissions));
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
        m_bin.reset(new QTemporaryDir);
        qputenv("PATH", m_bin->path().toLocal8Bit());
    }
    void cleanup() { qputenv("PATH", m_path); }

    void types()
    {
        QStringList found;
        for (const FileType &type : FileAssociations::types())
            found.append(
                QStringList { type.extension, type.progId, type.description, QString::number(type.iconIndex) }.join(
                    u'|'));
        QCOMPARE(found,
            QStringList({ "CFG|Tarnwick.CFGFile|Tarnwick Configuration File|0",
                "CONFIG|Tarnwick.CONFIGFile|Tarnwick Configuration File|0",
                "CTR|Tarnwick.CTRFile|Tarnwick Controls File|1", "RNR|Tarnwick.RNRFile|Tarnwick Renderer File|2",
                "HUD|Tarnwick.HUDFile|Tarnwick HUD File|3", "RLG|Tarnwick.RLGFile|Tarnwick Railgun File|4" }));
    }

    void quoted_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        const Row rows[] = { { "plain", "C:\\Games\\t.exe", "\"C:\\Games\\t.exe\"" },
            { "blanks trimmed", "  C:\\My Games\\t.exe \t", "\"C:\\My Games\\t.exe\"" },
            { "already quoted", " \"C:\\My Games\\t.exe\" ", "\"C:\\My Games\\t.exe\"" },
            { "opening quote only", "\"C:\\t.exe", "\"\"C:\\t.exe\"" },
            { "closing quote only", "C:\\t.exe\"", "\"C:\\t.exe\"\"" }, { "lone quote", "\"", "\"\"\"" } };
        for (const Row &row : rows)
            QTest::newRow(row.tag) << QString::fromUtf8(row.a) << QString::fromUtf8(row.b);
    }
    void quoted()
    {
        QFETCH(QString, path);
        QTEST(FileAssociations::quoted(path), "expected");
    }

    void createEXEAssociation_data()
    {
        QTest::addColumn<QString>("openCaption");
        QTest::addColumn<bool>("allowEdit");
        QTest::addColumn<QString>("editor");
        QTest::addColumn<QString>("editCaption");
        QTest::addColumn<int>("iconIndex");
        QTest::addColumn<QStringList>("entries");
        QStringList base { ".HUD = Tarnwick.HUDFile", "Tarnwick.HUDFile = Tarnwick HUD File",
            "Tarnwick.HUDFile\\shell\\open = &Run",
            "Tarnwick.HUDFile\\shell\\open\\command = \"C:\\T w\\t.exe\" \"%1\"" };
        const QString icon = "Tarnwick.HUDFile\\DefaultIcon = \"C:\\T w\\icons.dll\",";
        const QString edit = "Tarnwick.HUDFile\\shell\\edit", run = "&Run", none;
        QTest::newRow("open only") << run << false << "np.exe" << run << -1 << base;
        QTest::newRow("icon") << run << false << none << none << 0 << base + QStringList { icon + "0" };
        QTest::newRow("edit and icon") << run << true << "C:\\np.exe" << run << 3
                                       << base
                + QStringList { edit + " = &Run", edit + "\\command = \"C:\\np.exe\" \"%1\"", icon + "3" };
        base[2] = "Tarnwick.HUDFile\\shell\\open = &Open";
        QTest::newRow("empty captions and editor")
            << none << true << none << none << -1
            << base + QStringList { edit + " = &Edit", edit + "\\command = \"write.exe\" \"%1\"" };
    }
    void createEXEAssociation()
    {
        QFETCH(QString, openCaption);
        QFETCH(bool, allowEdit);
        QFETCH(QString, editor);
        QFETCH(QString, editCaption);
        QFETCH(int, iconIndex);
        QStringList entries;
        for (const auto &[key, value] :
            CreateEXEAssociation(" C:\\T w\\t.exe", "C:\\T w\\icons.dll", "Tarnwick.HUDFile", "Tarnwick HUD File",
                "HUD", openCaption, allowEdit, editor, editCaption, iconIndex))
            entries.append(key + " = " + value);
        QTEST(entries, "entries");
    }

    void mimePackage()
    {
        QTemporaryDir home;
        QCOMPARE(registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.filePath("config")), "");
        QXmlStreamReader xml(readAll(home.filePath("data/mime/packages/tarnwick.xml")));
        QVERIFY(xml.readNextStartElement() && xml.name() == u"mime-info");
        QStringList found;
        while (xml.readNextStartElement()) {
            QStringList type { xml.name().toString(), xml.attributes().value(QLatin1String("type")).toString() };
            while (xml.readNextStartElement()) {
                if (xml.name() == u"comment")
                    type.append(xml.readElementText());
                else if (xml.name() == u"sub-class-of" || xml.name() == u"glob")
                    type.append(
                        xml.attributes().value(QLatin1String(xml.name() == u"glob" ? "pattern" : "type")).toString());
                if (!xml.isEndElement())
                    xml.skipCurrentElement();
            }
            found.append(type.join(u'|'));
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(found,
            QStringList({ "mime-type|application/x-tarnwick-controls|Tarnwick Controls File|text/plain|*.ctr",
                "mime-type|application/x-tarnwick-renderer|Tarnwick Renderer File|text/plain|*.rnr",
                "mime-type|application/x-tarnwick-hud|Tarnwick HUD File|text/plain|*.hud",
                "mime-type|application/x-tarnwick-railgun|Tarnwick Railgun File|text/plain|*.rlg" }));
    }

    void desktopEntry_data()
    {
        QTest::addColumn<QString>("exePath");
        QTest::addColumn<QString>("exec");
        // Quoted, then escaped as a string value: a literal backslash takes four, a literal % two.
        QTest::newRow("plain") << "/opt/tarnwick"
                               << "\"/opt/tarnwick\" %f";
        QTest::newRow("spaces") << "/home/me/My Games/tarn wick"
                                << "\"/home/me/My Games/tarn wick\" %f";
        QTest::newRow("reserved characters") << "/opt/a$b`c\"d/100%"
                                             << "\"/opt/a\\\\$b\\\\`c\\\\\"d/100%%\" %f";
        QTest::newRow("backslash") << "/opt/a\\b"
                                   << "\"/opt/a\\\\\\\\b\" %f";
    }
    void desktopEntry()
    {
        QFETCH(QString, exePath);
        QFETCH(QString, exec);
        QTemporaryDir home;
        QCOMPARE(registerFreedesktop(exePath, home.filePath("data"), home.filePath("config")), "");
        const QString text = QString::fromUtf8(readAll(home.filePath("data/applications/tarnwick.desktop")));
        const QStringList lines = text.split(u'\n');
        QVERIFY2(lines.first() == "[Desktop Entry]" && lines.contains("Exec=" + exec), qPrintable(text));
        QVERIFY(lines.contains("MimeType=application/x-tarnwick-controls;application/x-tarnwick-renderer;"
                               "application/x-tarnwick-hud;application/x-tarnwick-railgun;text/plain;"));
        // An action opening the file "in the desktop's editor" would lead back to Tarnwick for its own types.
        QVERIFY2(!text.contains("Action"), qPrintable(text));
    }

    void mimeappsList_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const QByteArray own = "application/x-tarnwick-controls=tarnwick.desktop\n"
                               "application/x-tarnwick-renderer=tarnwick.desktop\n"
                               "application/x-tarnwick-hud=tarnwick.desktop\n"
                               "application/x-tarnwick-railgun=tarnwick.desktop\n";
        QTest::newRow("no file") << QByteArray() << "[Default Applications]\n" + own;
        const QByteArray added = "[Added Associations]\r\ntext/plain=gedit.desktop;";
        QTest::newRow("no section, no last line end") << added << added + "\n\n[Default Applications]\n" + own;
        // Other sections, comments, the user's defaults (text/plain and one of ours) and their line ends all stay.
        const QByteArray head = "# mine\n[Added Associations]\ntext/plain=kate.desktop;gedit.desktop;\n\n"
                                "[Default Applications]\r\ntext/plain=kate.desktop\r\n"
                                "application/x-tarnwick-hud=other.desktop;\r\nimage/png = eog.desktop\r\n";
        const QByteArray tail = "\n[Removed Associations]\ntext/html=lynx.desktop;\n";
        QTest::newRow("section with others") << head + tail
                                             << head
                + "application/x-tarnwick-controls=tarnwick.desktop\r\n"
                  "application/x-tarnwick-renderer=tarnwick.desktop\r\n"
                  "application/x-tarnwick-railgun=tarnwick.desktop\r\n"
                + tail;
    }
    void mimeappsList()
    {
        QFETCH(QByteArray, before);
        QTemporaryDir home;
        const QString list = home.filePath("mimeapps.list");
        if (!before.isEmpty())
            writeFile(list, before);
        QCOMPARE(registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.path()), "");
        QTEST(readAll(list), "after");

        // A second registration writes nothing: every file keeps its bytes and its (back-dated) modification time.
        const QStringList files { list, home.filePath("data/applications/tarnwick.desktop"),
            home.filePath("data/mime/packages/tarnwick.xml") };
        const QDateTime past = QDateTime::currentDateTime().addDays(-3);
        QList<QByteArray> bytes;
        for (const QString &path : files) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(past, QFileDevice::FileModificationTime));
            bytes.append(readAll(path));
        }
        QCOMPARE(registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.path()), "");
        for (qsizetype i = 0; i < files.size(); ++i) {
            QCOMPARE(readAll(files[i]), bytes[i]);
            QCOMPARE(QFileInfo(files[i]).lastModified().toSecsSinceEpoch(), past.toSecsSinceEpoch());
        }
    }

    void unwritableDataFolder()
    {
        QTemporaryDir home;
        writeFile(home.filePath("data"), "not a folder");
        const QString error = registerFreedesktop("/opt/tarnwick", home.filePath("data"), home.filePath("config"));
        QVERIFY2(error.contains("tarnwick.xml") && !error.contains(u'\n'), qPrintable(error));
        QVERIFY(!QFileInfo::exists(home.filePath("config")));
    }

private:
    QByteArray m_path;
    std::unique_ptr<QTemporaryDir> m_bin;
};

QTEST_GUILESS_MAIN(tst_FileAssociations)
#include "tst_FileAssociations.moc"
