// The player models of game folders built here, and the TGA reader on pictures written here.
#include "PlayerModels.h"
#include "TestGameFiles.h"
#include "TgaImage.h"

#include <QtEndian>

class tst_PlayerModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scan_data()
    {
        QTest::addColumn<QStringList>("files"); // see TestGameFiles::make
        QTest::addColumn<QStringList>("tree"); // "Model", then "Model/Skin", " @ARCHIVE" for one from an archive
        QTest::addColumn<QStringList>("unreadable");
        const auto row = [](const char *tag, const QStringList &files, const QStringList &tree,
                             const QStringList &unreadable = {}) { QTest::newRow(tag) << files << tree << unreadable; };
        const QString disk = "game/baseq3/models/players/";
        const QString base = "game/baseq3/";
        row("a folder and archive entries merge in any case, the first found kept, sorted by label",
            { disk + "Sarge/icon_red.tga", disk + "Sarge/ICON_Default.TGA",
                base
                    + "pak0.pk3:Models/Players/sarge/icon_RED.tga,models/players/SARGE/icon_blue.tga,"
                      "models/players/major/icon_default.tga" },
            { "Major", "Major/Default @pak0.pk3", "Sarge", "Sarge/Blue @pak0.pk3", "Sarge/Default", "Sarge/Red" });
        row("names: disk needs .tga, archives any extension; too short, too deep or not under a model skipped",
            { disk + "big BOB/icon_dark red.tga", disk + "big BOB/icon_blue.jpg", disk + "big BOB/icon_.tga",
                disk + "big BOB/notes.txt", disk + "empty/icon_.tga",
                base
                    + "p.pk3:models/players/big bob/icon_blue.jpg,models/players/x/icon_.tga,models/players/x/icon_,"
                      "models/players/x/deep/icon_y.tga,models/players/icon_z.tga,models/icon_w.tga" },
            { "Big Bob", "Big Bob/Blue @p.pk3", "Big Bob/Dark Red" });
        row("archives in name order regardless of case; a link to an archive counts, to a folder not",
            { base + "b.pk3:models/players/m/icon_s.tga", base + "A.pk3:models/players/M/icon_S.tga,x.txt",
                "packs/l.pk3:models/players/l/icon_x.tga", base + "l.pk3>../../packs/l.pk3", "packs/f/icon_f.tga",
                disk + "linked>../../../../packs/f", base + "dir.pk3>../../packs" },
            { "L", "L/X @l.pk3", "M", "M/S @A.pk3" });
        row("unreadable archives collected; the home folder after the game's",
            { base + "bad.pk3!", base + "g.pk3:models/players/g/icon_a.tga", "home/.q3a/baseq3/worse.pk3!",
                "home/.q3a/baseq3/models/players/G/icon_A.tga", "home/.q3a/baseq3/models/players/h/icon_b.tga" },
            { "G", "G/A @g.pk3", "H", "H/B" }, { base + "bad.pk3", "home/.q3a/baseq3/worse.pk3" });
        row("no baseq3, nothing", { "game/models/players/m/icon_s.tga" }, {});
    }

    void scan()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, tree);
        QFETCH(QStringList, unreadable);
        QTemporaryDir root;
        TestGameFiles::make(root, files);
        qputenv("HOME", QFile::encodeName(root.filePath("home")));
        const PlayerModels::ModelTree scanned = PlayerModels::ScanPlayerModels(root.filePath("game"));
        QStringList got;
        for (const PlayerModels::Model &model : scanned.models) {
            got.append(model.label);
            for (const PlayerModels::Skin &skin : model.skins) {
                got.append(model.label + u'/' + skin.label
                    + (skin.archive.isEmpty() ? QString() : " @" + QFileInfo(skin.archive).fileName()));
                QVERIFY(QFileInfo(skin.archive.isEmpty() ? skin.icon : skin.archive).exists());
            }
        }
        QCOMPARE(got, tree);
        QCOMPARE(scanned.unreadable, TestGameFiles::under(root, unreadable));
    }

    void icons()
    {
        // From disk and from an archive, stored or packed; nothing for what is no picture or no longer there.
        QTemporaryDir root;
        const QByteArray blue = tga(2, 24, 0x20, QByteArray("\xff\0\0", 3).repeated(4));
        writeTestFile(root.filePath("icon_a.tga"), blue);
        const QString pk3 = root.filePath("p.pk3");
        writeTestFile(
            pk3, TestZip::zipBytes({ { "m/icon_b.tga", blue, true }, { "m/icon_c.tga", blue.first(20) }, { "m/x" } }));
        PlayerModels::IconReader reader;
        const auto pixel = [&reader](const QString &icon, const QString &archive = {}) {
            const TgaImage::Picture image = reader.icon({ {}, icon, archive });
            return image.isNull() ? 0 : image.pixel(1, 1);
        };
        QCOMPARE(pixel(root.filePath("icon_a.tga")), 0xff0000ffu);
        QCOMPARE(pixel("m/icon_b.tga", pk3), 0xff0000ffu);
        QCOMPARE(pixel("m/icon_c.tga", pk3), 0u);
        QCOMPARE(pixel("m/icon_d.tga", pk3), 0u);
        QCOMPARE(pixel(root.filePath("icon_z.tga")), 0u);
        writeTestFile(pk3, TestZip::zipBytes({ { "m/other.tga", blue } })); // replaced since it was listed
        QCOMPARE(pixel("m/icon_b.tga", pk3), 0u);
    }

    void tga_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QList<uint>>("pixels"); // 2 × 2, top row first; none for a null image
        const QByteArray red("\0\0\xff", 3), blue("\xff\0\0", 3), grey = "\x80", white = "\xff";
        const uint R = 0xffff0000, B = 0xff0000ff, G = 0xff808080, W = 0xffffffff;
        const auto row = [](const char *tag, const QByteArray &bytes, const QList<uint> &pixels = {}) {
            QTest::newRow(tag) << bytes << pixels;
        };
        row("colour, bottom-left origin", tga(2, 24, 0, red + red + blue + red), { B, R, R, R });
        row("colour with alpha and an image ID, top-left",
            tga(2, 32, 0x20, QByteArray("\x10\x20\x30\x40", 4).repeated(4), "id"), QList<uint>(4, 0x40302010));
        row("grey, right to left", tga(3, 8, 0x30, grey + white + white + white), { W, G, W, W });
        row("run-length colour: a run across rows, then raw", tga(10, 24, 0x20, "\x82" + red + QByteArray(1, 0) + blue),
            { R, R, R, B });
        row("run-length grey, bottom-left", tga(11, 8, 0, "\x01" + grey + white + "\x81" + white), { W, W, G, W });
        row("colour map type", tga(1, 8, 0, "\0\0\0\0"));
        row("16-bit colour", tga(2, 16, 0, QByteArray(8, 'x')));
        row("grey 16-bit", tga(3, 16, 0, QByteArray(8, 'x')));
        row("no width", tga(2, 24, 0, {}).replace(12, 2, QByteArray(2, '\0')));
        row("huge, short run-length data", tga(10, 24, 0, "\xff" + red).replace(12, 4, "\xff\xff\xff\xff"));
        row("a packet running past the picture ends with it", tga(10, 24, 0, "\x82" + red + "\x01" + blue),
            { R, B, R, R });
    }

    void tga()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QList<uint>, pixels);
        const TgaImage::Picture image = TgaImage::decode(bytes);
        QCOMPARE(image.isNull(), pixels.isEmpty());
        if (pixels.isEmpty())
            return;
        QCOMPARE(QSize(image.width, image.height), QSize(2, 2));
        QCOMPARE((QList<uint> { image.pixel(0, 0), image.pixel(1, 0), image.pixel(0, 1), image.pixel(1, 1) }), pixels);
        for (qsizetype n = 0; n < bytes.size(); ++n) // every byte is needed: any cut gives no picture
            QVERIFY2(TgaImage::decode(bytes.first(n)).isNull(), qPrintable(QString::number(n)));
    }

private:
    // A 2 × 2 TGA of the type, depth and descriptor, then `id` and `data`.
    static QByteArray tga(int type, int depth, int descriptor, const QByteArray &data, const QByteArray &id = {})
    {
        QByteArray header(18, '\0');
        header[0] = char(id.size());
        header[2] = char(type);
        qToLittleEndian<quint16>(2, header.data() + 12);
        qToLittleEndian<quint16>(2, header.data() + 14);
        header[16] = char(depth);
        header[17] = char(descriptor);
        return header + id + data;
    }
};

QTEST_GUILESS_MAIN(tst_PlayerModels)
#include "tst_PlayerModels.moc"
