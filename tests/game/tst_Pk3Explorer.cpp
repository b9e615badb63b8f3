// The PK3 Explorer page on archives written here, every box and dialog answered through Prompts.
#include "FileIcons.h"
#include "Pk3ExplorerPage.h"
#include "Prompts.h"
#include "TestFiles.h"
#include "TestZip.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using TestZip::RawEntry;
using TestZip::zipBytes;

class tst_Pk3Explorer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_page = new Pk3ExplorerPage;
        Prompts::setNextAnswers({});
    }

    void cleanup()
    {
        QVERIFY(!Prompts::hasPendingAnswers());
        QVERIFY(!QGuiApplication::overrideCursor()); // the wait cursor never stays
        delete m_page;
    }

    // A row an entry, in the archive's order, folders left out: Name, Extension, Type, Path and the icon key.
    void rows()
    {
        const std::pair<RawEntry, QStringList> rows[] = {
            { { "models/players/sarge/head.md3" },
                { "head", "MD3", "Quake 3 Model", "models\\players\\sarge", ".MD3" } },
            { { "autoexec" }, { "autoexec", "", "File", "", "DEFAULT" } },
            { { "odd." }, { "odd", "", "File", "", "DEFAULT" } },
            { { "secret.cfg", "data", false, true }, { "secret +", "CFG", "Configuration File", "", ".CFG" } },
            { { "maps/q3dm17.v2.bsp" }, { "q3dm17.v2", "BSP", "Quake 3 Map", "maps", ".BSP" } },
            { { "demos/Final.Dm_68" }, { "Final", "DM_68", "Quake 3 Demo", "demos", ".DM_68" } },
            { { "v/a.dm_x" }, { "a", "DM_X", "DM_X File", "v", ".DM_X" } },
        };
        QList<RawEntry> entries { { "models/" }, { "models/players/" } };
        for (const auto &row : rows)
            entries.append(row.first);
        QVERIFY(m_page->LoadPK3(archive("rows.pk3", entries)));
        QCOMPARE(rowCount(), int(std::size(rows)));
        for (int row = 0; row < rowCount(); ++row) {
            QStringList shown;
            for (int column = 0; column < Pk3ExplorerPage::ColumnCount; ++column)
                shown.append(cell(row, column));
            const QModelIndex first = list()->model()->index(row, 0);
            shown.append(first.data(Pk3ExplorerPage::IconKeyRole).toString());
            QCOMPARE(shown, rows[row].second);
            QVERIFY(!first.data(Qt::DecorationRole).value<QIcon>().isNull());
        }
    }

    // An archive of folders alone is shown only when the user says so; "No" keeps what was shown.
    void archiveWithoutFiles()
    {
        const QString full = archive("full.pk3", { { "a.cfg" }, { "b.cfg" } });
        const QString empty = archive("folders.pk3", { { "models/" }, { "models/players/" }, { "maps/" } });
        answer({ "No" });
        QVERIFY(!m_page->LoadPK3(empty));
        QCOMPARE(shownBoxes(), "E");
        checkShows(QString(), 0);
        QVERIFY(m_page->LoadPK3(full));
        for (const QString &reply : { QStringLiteral("No"), QStringLiteral("Yes") }) {
            answer({ reply });
            QCOMPARE(m_page->LoadPK3(empty), reply == u"Yes");
            QCOMPARE(shownBoxes(), "E");
            checkShows(reply == u"Yes" ? empty : full, reply == u"Yes" ? 0 : 2);
        }
    }

    // A name not ending in .pk3 (any case) asks whether to choose another file; the answers name files of the folder.
    void extensionQuestion()
    {
        write("maps.zip", zipBytes({ { "base.shader" } }));
        write("MAPS.PK3", zipBytes({ { "base.shader" } }));
        const std::tuple<const char *, QStringList, const char *, const char *> rows[] = {
            { "maps.zip", { "No" }, "X", "" },
            { "maps.zip", { "Yes", "" }, "XO", "" }, // then the dialog is cancelled
            { "", { "maps.zip", "Yes", "MAPS.PK3" }, "OXO", "MAPS.PK3" },
            { "MAPS.PK3", {}, "", "MAPS.PK3" },
        };
        for (const auto &[path, answers, shown, loaded] : rows) {
            m_page->ClosePK3();
            answer(answers);
            QCOMPARE(m_page->LoadPK3(*path ? m_dir.filePath(QString::fromLatin1(path)) : QString()), *loaded != 0);
            QCOMPARE(shownBoxes(), QLatin1String(shown));
            checkShows(*loaded ? m_dir.filePath(QString::fromLatin1(loaded)) : QString(), *loaded ? 1 : 0);
        }
    }

    void reopenThenClose()
    {
        QSignalSpy titles(m_page, &Pk3ExplorerPage::titleChanged);
        QVERIFY(!closeButton()->isEnabled());
        const QString pak = archive("pak0.pk3", { { "a.cfg" } });
        QVERIFY(m_page->LoadPK3(pak));
        archive("pak0.pk3", { { "a.cfg" }, { "b.cfg" } });
        for (const QString &reply : { QStringLiteral("No"), QStringLiteral("Yes") }) {
            answer({ reply });
            QCOMPARE(m_page->LoadPK3(pak), reply == u"Yes");
            QCOMPARE(shownBoxes(), "R");
            checkShows(pak, reply == u"Yes" ? 2 : 1);
        }
        closeButton()->click();
        checkShows(QString(), 0);
        QCOMPARE(titles, QList<QVariantList>({ { "PK3 Explorer - " + pak }, { "PK3 Explorer" } }));
    }

    void headerClicksFlipTheOrder()
    {
        m_page->resize(640, 400);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_page));
        QHeaderView *header = list()->horizontalHeader();
        QCOMPARE(header->sortIndicatorSection(), -1);
        QVERIFY(m_page->LoadPK3(
            archive("sort.pk3", { { "p2/b.skin" }, { "p4/d.cfg" }, { "p1/a.md3" }, { "p3/c.shader" } })));
        QCOMPARE(cell(0, 0), "b"); // the archive's order
        list()->selectRow(3); // "c" stays selected through the sorts
        const std::tuple<int, Qt::SortOrder, const char *> steps[] = {
            { Pk3ExplorerPage::TypeColumn, Qt::AscendingOrder, "Configuration File" },
            { Pk3ExplorerPage::TypeColumn, Qt::DescendingOrder, "Shader Script" },
            { Pk3ExplorerPage::NameColumn, Qt::AscendingOrder, "a" },
            { Pk3ExplorerPage::NameColumn, Qt::DescendingOrder, "d" },
            { Pk3ExplorerPage::ExtensionColumn, Qt::AscendingOrder, "CFG" },
            { Pk3ExplorerPage::PathColumn, Qt::DescendingOrder, "p4" }, // also flips when the column changes
        };
        for (const auto &[column, order, first] : steps) {
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                QPoint(header->sectionViewportPosition(column) + 5, header->height() / 2));
            QCOMPARE(cell(0, column), QLatin1String(first));
            QCOMPARE(header->sortIndicatorSection(), column);
            QCOMPARE(header->sortIndicatorOrder(), order);
            const QModelIndexList selected = list()->selectionModel()->selectedRows();
            QCOMPARE(selected.size(), 1);
            QCOMPARE(cell(selected[0].row(), 0), "c");
        }
        // Another archive comes sorted as the list was.
        QVERIFY(m_page->LoadPK3(archive("other.pk3", { { "a/z.wav" }, { "b/y.bot" } })));
        QCOMPARE(cell(0, Pk3ExplorerPage::PathColumn), "b");
    }

    // The kinds of damage are tst_cUnzip's matter; here the page keeps what it showed.
    void unreadableArchiveChangesNothing()
    {
        const QString good = archive("good.pk3", { { "a.cfg" } });
        QVERIFY(m_page->LoadPK3(good));
        const QByteArray zip = zipBytes({ { "a.cfg" }, { "b.cfg" } });
        for (const QString &bad : { write("cut.pk3", zip.left(zip.size() / 2)), m_dir.filePath("missing.pk3") }) {
            answer({ "Ok" });
            QVERIFY(!m_page->LoadPK3(bad));
            QCOMPARE(shownBoxes(), "F");
            checkShows(good, 1);
        }
    }

    // Speed is bench_pk3's matter; here every entry of a fair-sized archive reaches the list, an extension takes
    // one icon (looked up once) however many files have it, and timers still fire meanwhile.
    void manyEntries()
    {
        FileIcons::iconKey(QStringLiteral("warm.up"), QString()); // the preloaded icons exist
        const int icons = FileIcons::iconCount();
        QList<RawEntry> items;
        for (int i = 0; i < 2000; ++i)
            items.append(
                { "set" + QByteArray::number(i % 97) + "/file" + QByteArray::number(i) + (i % 2 ? ".qqq1" : ".QQQ1") });
        // The listing lets the event loop turn: a timer fires while its wait cursor is on.
        bool firedInListing = false;
        QTimer::singleShot(0, this, [&] { firedInListing = QGuiApplication::overrideCursor() != nullptr; });
        QVERIFY(m_page->LoadPK3(archive("big.pk3", items)));
        QVERIFY(firedInListing);
        QCOMPARE(rowCount(), 2000);
        QCOMPARE(cell(1999, 0), "file1999");
        QCOMPARE(FileIcons::iconCount(), icons + 1);
    }

private:
    QString write(const QString &name, const QByteArray &bytes) { return writeTestFile(m_dir.filePath(name), bytes); }
    QString archive(const QString &name, const QList<RawEntry> &items) { return write(name, zipBytes(items)); }
    QTableView *list() const { return m_page->findChild<QTableView *>(QStringLiteral("lvPK3")); }
    QPushButton *closeButton() const { return m_page->findChild<QPushButton *>(QStringLiteral("cmdClose")); }
    QString cell(int row, int column) const { return list()->model()->index(row, column).data().toString(); }
    int rowCount() const { return list()->model()->rowCount(); }
    // "Yes", "No", "Ok"; anything else answers a file dialog with that file of the folder ("" = Cancel).
    void answer(const QStringList &codes)
    {
        const QHash<QString, QMessageBox::StandardButton> buttons { { "Yes", QMessageBox::Yes },
            { "No", QMessageBox::No }, { "Ok", QMessageBox::Ok } };
        QList<Prompts::Answer> answers;
        for (const QString &code : codes)
            answers.append(buttons.contains(code) ? Prompts::Answer(buttons[code])
                                                  : Prompts::Answer(code.isEmpty() ? code : m_dir.filePath(code)));
        Prompts::setNextAnswers(answers);
    }

    // One letter a box or dialog shown: O Open, X the extension question, E the empty-archive question,
    // R the re-open question, F a failure naming the archive.
    QString shownBoxes()
    {
        QString boxes;
        for (const Prompts::Shown &shown : Prompts::takeShown()) {
            boxes += shown.title == u"Open"                  ? u'O'
                : shown.title == u"Incorrect file extension" ? u'X'
                : shown.text.contains(u"no files")           ? u'E'
                : shown.text.contains(u"currently open")     ? u'R'
                : shown.text.contains(m_dir.path())          ? u'F' // a failure naming the archive
                                                             : u'?';
        }
        return boxes;
    }

    // The page, its reader, title and Close button all show `path` ("" for none) with `rows` rows.
    void checkShows(const QString &path, int rows) const
    {
        QCOMPARE(m_page->CurrentPK3Path(), path);
        QCOMPARE(m_page->reader().ZipFile(), path);
        QCOMPARE(m_page->title(), path.isEmpty() ? "PK3 Explorer" : "PK3 Explorer - " + path);
        QCOMPARE(rowCount(), rows);
        QCOMPARE(m_page->reader().FileCount(), rows);
        QCOMPARE(closeButton()->isEnabled(), !path.isEmpty());
    }

    QTemporaryDir m_dir;
    Pk3ExplorerPage *m_page = nullptr;
};

QTEST_MAIN(tst_Pk3Explorer)
#include "tst_Pk3Explorer.moc"
