// The Q3Config Search of the real window: a search of the home folder built here, and Load, which opens the
// chosen file as the document through the window's own open sequence.
#include "WindowTestSupport.h"
#include "frmSearch.h"

using namespace WindowTest;

class tst_SearchCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The home folder is the place the dialog offers first, and searches unless told otherwise.
    void initTestCase() { qputenv("HOME", QFile::encodeName(m_home.path())); }

    void init()
    {
        for (const char *folder : { "a", "b" }) {
            QVERIFY(QDir(m_home.path()).mkpath(QString::fromLatin1(folder)));
            writeTestFile(
                m_home.filePath(QStringLiteral("%1/q3config.cfg").arg(QString::fromLatin1(folder))), smallCfg);
        }
        m_window = answeredWindow();
    }
    void cleanup() { closeWindow(m_window); }

    void load_data()
    {
        QTest::addColumn<bool>("modified");
        QTest::addColumn<bool>("deleted"); // the chosen file is deleted after the search
        QTest::addColumn<QList<Answer>>("answers");
        QTest::addColumn<QStringList>("shown"); // titles, then texts, of the boxes shown
        QTest::addColumn<bool>("opened");
        const QString save = "Save changes to configuration file \n\"Untitled\" before loading a new?";
        const QString gone = "The file '" + m_home.filePath("a/q3config.cfg") + "' seams to be not existing any more.";
        QTest::newRow("opens the file") << false << false << QList<Answer> {} << QStringList {} << true;
        QTest::newRow("modified, Cancel: all stays as it was")
            << true << false << QList<Answer> { QMessageBox::Cancel } << QStringList { "Tarnwick", save } << false;
        QTest::newRow("deleted since the search")
            << false << true << QList<Answer> { QMessageBox::Ok } << QStringList { "Error", gone } << false;
    }

    void load()
    {
        QFETCH(bool, modified);
        QFETCH(bool, deleted);
        QFETCH(QList<Answer>, answers);
        QFETCH(QStringList, shown);
        QFETCH(bool, opened);
        if (modified)
            editFov(*m_window);
        const QString chosen = m_home.filePath("a/q3config.cfg");
        QStringList seen;
        whenModal(this, [&](QWidget *dialog) {
            QCOMPARE(dialog->objectName(), QStringLiteral("frmSearch"));
            QVERIFY(!m_window->gate().HotKeysEnabled());
            find<QPushButton>(dialog, "cmdSearch")->click();
            QTRY_VERIFY(!qobject_cast<frmSearch *>(dialog)->searching());
            auto *results = find<QComboBox>(dialog, "cbResults");
            QCOMPARE(results->count(), 2);
            QCOMPARE(results->currentText(), chosen);
            if (deleted)
                QVERIFY(QFile::remove(chosen));
            Prompts::setNextAnswers(answers);
            find<QPushButton>(dialog, "cmdLoad")->click();
            for (const Prompts::Shown &box : Prompts::takeShown())
                seen << box.title << box.text;
            QCOMPARE(dialog->isVisible(), !opened);
            QCOMPARE(results->count(), 2); // the list stays
            if (dialog->isVisible())
                find<QPushButton>(dialog, "cmdCancel")->click();
        });
        m_window->commands().run("Search1");
        QCOMPARE(seen, shown);
        const ConfigDocument &doc = m_window->document();
        QCOMPARE(doc.path(), opened ? chosen : QString());
        QCOMPARE(doc.isModified(), modified && !opened);
        QCOMPARE(m_window->windowTitle(),
            opened ? QStringLiteral("q3config.cfg - Tarnwick") : QStringLiteral("Untitled - Tarnwick"));
        QCOMPARE(m_window->commands().menu().isEnabled("Def1"), opened);
    }

private:
    QTemporaryDir m_home;
    frmMain *m_window = nullptr;
};

QTEST_MAIN(tst_SearchCommands)
#include "tst_SearchCommands.moc"
