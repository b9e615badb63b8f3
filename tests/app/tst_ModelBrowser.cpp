// The player model browser as the Player Model button opens it in the real window, on game folders built here.
#include "TestGameFiles.h"
#include "WindowSettings.h"
#include "WindowTestSupport.h"

#include <QtEndian>

using namespace WindowTest;

namespace {

// A 2 × 2 run-length encoded TGA of one colour, as several real models' icons are.
QByteArray redIcon()
{
    QByteArray header(18, '\0');
    header[2] = 10;
    qToLittleEndian<quint16>(2, header.data() + 12);
    qToLittleEndian<quint16>(2, header.data() + 14);
    header[16] = 24;
    return header + QByteArray("\x83\x00\x00\xff", 4);
}

QTreeWidgetItem *node(QTreeWidget *tree, const QString &path)
{
    const QList<QTreeWidgetItem *> found
        = tree->findItems(path.section(u'/', -1), Qt::MatchExactly | Qt::MatchRecursive);
    for (QTreeWidgetItem *item : found) {
        if ((item->parent() ? item->parent()->text(0) + u'/' : QString()) + item->text(0) == path)
            return item;
    }
    qFatal("no node %s", qPrintable(path));
}

QStringList nodes(QTreeWidget *tree)
{
    QStringList paths;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        paths.append(((*it)->parent() ? (*it)->parent()->text(0) + u'/' : QString()) + (*it)->text(0));
    return paths;
}

} // namespace

class tst_ModelBrowser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("HOME", QFile::encodeName(m_game.filePath("home")));
        TestGameFiles::make(m_game,
            { "ioquake3.x86_64*", "baseq3/models/players/Sarge/icon_red.tga", "baseq3/bad.pk3!", "baseq3/worse.pk3!" });
        writeTestFile(m_game.filePath("baseq3/models/players/Sarge/icon_default.tga"), redIcon());
        writeTestFile(m_game.filePath("baseq3/pak0.pk3"),
            TestZip::zipBytes({ { "models/players/sarge/icon_RED.jpg" }, { "models/players/keel/icon_default.tga" } }));
    }

    void init()
    {
        m_window = answeredWindow();
        m_window->settings().setGameFolder(m_game.path());
    }
    void cleanup() { closeWindow(m_window); }

    void choosing_data()
    {
        QTest::addColumn<QString>("caption"); // the button's caption before
        QTest::addColumn<QString>("shown"); // lblSel on opening; OK is enabled when it names a node
        QTest::addColumn<QString>("click"); // the node clicked, if any
        QTest::addColumn<QString>("close"); // OK, Cancel or Esc
        QTest::addColumn<QString>("after"); // the caption after; the document is modified when it changed
        const auto row = [](const char *tag, const char *caption, const char *shown, const char *click,
                             const char *close, const char *after) {
            QTest::newRow(tag) << QString::fromLatin1(caption) << QString::fromLatin1(shown)
                               << QString::fromLatin1(click) << QString::fromLatin1(close)
                               << QString::fromLatin1(after);
        };
        row("preselected, OK", "sarge/DEFAULT", "Sarge/Default", "", "OK", "sarge/default");
        row("a skin", "sarge/default", "Sarge/Default", "Sarge/Red", "OK", "sarge/red");
        row("a model alone", "sarge/default", "Sarge/Default", "Sarge", "OK", "sarge");
        row("not installed", "major/red", "major/red", "Keel/Default", "OK", "keel/default");
        row("Cancel", "sarge/default", "Sarge/Default", "Sarge/Red", "Cancel", "sarge/default");
        row("Esc", "sarge/default", "Sarge/Default", "Sarge/Red", "Esc", "sarge/default");
    }

    void choosing()
    {
        QFETCH(QString, caption);
        QFETCH(QString, shown);
        QFETCH(QString, click);
        QFETCH(QString, close);
        QFETCH(QString, after);
        ConfigDocument &doc = m_window->document();
        const int row = SettingCatalog::instance().indexOfControl(u"cmdModel");
        doc.setText(row, 0, caption);
        doc.setModified(false);
        whenBrowserReady([&](QWidget *dialog) {
            QCOMPARE(titlesShown(), QStringList { "Tarnwick" }); // both unreadable archives in one box
            auto *tree = find<QTreeWidget>(dialog, "tvwMdls");
            auto *ok = find<QPushButton>(dialog, "cmdOk");
            QCOMPARE(nodes(tree), (QStringList { "Keel", "Keel/Default", "Sarge", "Sarge/Default", "Sarge/Red" }));
            QCOMPARE(node(tree, "Sarge/Red")->data(0, Qt::UserRole).toString(), QStringLiteral("MDL|SARGE_RED"));
            QCOMPARE(find<QLabel>(dialog, "lblSel")->text(), shown);
            QCOMPARE(ok->isEnabled(), shown != caption);
            // The preselected default skin shows its icon; Keel's can't be decoded and shows none.
            QCOMPARE(!find<QLabel>(dialog, "picIcon")->pixmap().isNull(), shown == u"Sarge/Default");
            if (!click.isEmpty()) {
                QTreeWidgetItem *item = node(tree, click);
                tree->scrollToItem(item);
                QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(item).center());
                QCOMPARE(find<QLabel>(dialog, "lblSel")->text(), click);
                QVERIFY(ok->isEnabled());
            }
            if (close == u"Esc")
                QTest::keyClick(dialog, Qt::Key_Escape);
            else
                find<QPushButton>(dialog, close == u"OK" ? QStringLiteral("cmdOk") : QStringLiteral("cmdCancel"))
                    ->click();
        });
        find<QPushButton>(m_window, "cmdModel")->click();
        QCOMPARE(doc.text(row), after);
        QCOMPARE(find<QPushButton>(m_window, "cmdModel")->text(), after);
        QCOMPARE(doc.isModified(), after != caption);
    }

    void scansOnceRefreshKeepsTheSelection()
    {
        // The first opening scans; later ones show the tree as it was, until Refresh.
        auto *button = find<QPushButton>(m_window, "cmdModel");
        const QString added = m_game.filePath("baseq3/models/players/Sarge/icon_blue.tga");
        whenBrowserReady([](QWidget *dialog) { find<QPushButton>(dialog, "cmdCancel")->click(); });
        button->click();
        QCOMPARE(titlesShown().size(), 1);
        writeTestFile(added, {});
        whenModal(this, [this](QWidget *dialog) {
            auto *tree = find<QTreeWidget>(dialog, "tvwMdls");
            QVERIFY(!nodes(tree).contains("Sarge/Blue"));
            tree->setCurrentItem(node(tree, "Sarge/Red"));
            // The scan lets the event loop turn: a timer fires while its wait cursor is on.
            bool firedInScan = false;
            QTimer::singleShot(0, this, [&] { firedInScan = QGuiApplication::overrideCursor() != nullptr; });
            find<QPushButton>(dialog, "cmdRefresh")->click();
            QVERIFY(firedInScan);
            QCOMPARE(titlesShown().size(), 1);
            QVERIFY(nodes(tree).contains("Sarge/Blue"));
            QCOMPARE(tree->currentItem(), node(tree, "Sarge/Red"));
            // Without the game (the folder picker cancelled), the tree keeps what it had.
            m_window->settings().setGameFolder(m_game.filePath("baseq3"));
            Prompts::setNextAnswers({ "" });
            find<QPushButton>(dialog, "cmdRefresh")->click();
            QVERIFY(nodes(tree).contains("Sarge/Blue"));
            m_window->settings().setGameFolder(m_game.path());
            QVERIFY(find<QPushButton>(dialog, "cmdOk")->isEnabled());
            find<QPushButton>(dialog, "cmdOk")->click();
        });
        button->click();
        QFile::remove(added);
        QCOMPARE(button->text(), QStringLiteral("sarge/red"));
    }

private:
    // Hands the browser to `answer` once its scan, if any, has ended.
    void whenBrowserReady(const std::function<void(QWidget *)> &answer)
    {
        whenModal(this, [answer](QWidget *dialog) {
            [&] {
                QTRY_VERIFY(find<QPushButton>(dialog, "cmdRefresh")->isEnabled());
                answer(dialog);
            }();
            if (dialog->isVisible()) // a failed check left it open
                qobject_cast<QDialog *>(dialog)->reject();
        });
    }

    QTemporaryDir m_game;
    frmMain *m_window = nullptr;
};

QTEST_MAIN(tst_ModelBrowser)
#include "tst_ModelBrowser.moc"
