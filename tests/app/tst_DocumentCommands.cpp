// New, Open, Save, Save As and Restore Defaults on the real window, every box answered through Prompts; and
// nothing lost unasked: the window says which lines of a file a save will not keep, and keeps the original once.
#include "ConfigWriter.h"
#include "MsgBoard.h"
#include "WindowSettings.h"
#include "WindowTestSupport.h"
#include "frmNew.h"

using namespace WindowTest;
Q_DECLARE_METATYPE(ActionBinding)

class tst_DocumentCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_window = answeredWindow(false); }
    void cleanup() { closeWindow(m_window); }

    void newModesAndName_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::addColumn<ActionBinding>("forward");
        const auto row = [](const char *tag, int mode, const char *typed, const char *name, ActionBinding forward) {
            QTest::newRow(tag) << mode << QString::fromLatin1(typed) << QString::fromLatin1(name) << forward;
        };
        row("keep keys", 0, "Duel", "Duel", { "W", "" });
        row("defaults", 1, "  Team  ", "Team", { "W", "UPARROW" });
        row("clear, empty name", 2, "   ", "Untitled", {});
    }
    void newModesAndName()
    {
        QFETCH(int, mode);
        QFETCH(QString, typed);
        QFETCH(QString, name);
        QFETCH(ActionBinding, forward);
        QVERIFY(commands().OpenCfg(file("keys.cfg")));
        answerNewDialog(mode, typed, true);
        commands().newCommand();
        ConfigDocument &doc = m_window->document();
        QCOMPARE(m_window->windowTitle(), name + QStringLiteral(" - Tarnwick"));
        QVERIFY(!doc.HasFile() && !doc.isModified() && !doc.canRestore());
        QCOMPARE(doc.bindings().at(1), forward);

        // Cancel in the dialog changes nothing.
        answerNewDialog(0, QStringLiteral("Other"), false);
        commands().newCommand();
        QCOMPARE(doc.displayName(), name);
    }

    void openChecksTheExtension()
    {
        const QString text = file("settings.txt");
        ConfigDocument &doc = m_window->document();
        // No: the current document stays as it is.
        Prompts::setNextAnswers({ text, QMessageBox::No });
        QVERIFY(!commands().OpenCfg(QString()));
        const QList<Prompts::Shown> shown = Prompts::takeShown();
        QVERIFY(shown.size() == 2 && shown[0].text == DocumentCommands::configFilter());
        QCOMPARE(shown[1].title, QStringLiteral("Incorrect file extension"));
        QCOMPARE(doc.displayName(), QStringLiteral("Untitled"));
        // Yes: the dialog opens again; an upper-case .CONFIG is taken.
        Prompts::setNextAnswers({ text, QMessageBox::Yes, file("settings.CONFIG") });
        QVERIFY(commands().OpenCfg(QString()));
        QCOMPARE(doc.displayName(), QStringLiteral("settings.CONFIG"));
        QVERIFY(doc.HasFile() && doc.canRestore() && !doc.isModified());
    }

    void saveAsSaysWhyItFailsAndReplacesWithoutAsking()
    {
        // Which failures leave the old file untouched is tst_ConfigWriter's; here, what the window makes of one.
        QVERIFY(QDir(m_dir.path()).mkpath("folder"));
        editFov(*m_window);
        Prompts::setNextAnswers({ m_dir.filePath("folder"), QMessageBox::Ok });
        commands().saveAsCommand();
        QCOMPARE(titlesShown(), (QStringList { "Save As", "Save Config File" }));
        QVERIFY(m_window->document().isModified() && !m_window->document().HasFile() && commands().saveCancelled());
        // A file that is there is replaced, with no question.
        const QString target = file("old.cfg", "old content\r\n");
        Prompts::setNextAnswers({ target });
        commands().saveAsCommand();
        QCOMPARE(titlesShown(), QStringList { "Save As" });
        QCOMPARE(readTestFile(target), ConfigWriter::fileBytes(m_window->document(), FileScope::Whole));
        QCOMPARE(m_window->windowTitle(), QStringLiteral("old.cfg - Tarnwick"));
        QVERIFY(!m_window->document().isModified() && m_window->document().HasFile());
    }

    void failedSaveOfACleanDocumentLeavesItClean()
    {
        // Save of an unchanged document where a folder has since taken the file's place: the box says why, and the
        // document is as unchanged as before.
        const QString path = file("gone.cfg");
        QVERIFY(commands().OpenCfg(path));
        QVERIFY(QFile::remove(path) && QDir().mkdir(path));
        Prompts::setNextAnswers({ QMessageBox::Ok });
        commands().saveCommand();
        QCOMPARE(Prompts::takeShown().value(0).title, QStringLiteral("Save Config File"));
        QVERIFY(commands().saveCancelled());
        QVERIFY(!m_window->document().isModified());
    }

    void fileDialogsCompleteTheExtension()
    {
        // The real dialog, as Open shows it: a name typed without its extension finds the configuration file.
        QTemporaryDir folder;
        writeTestFile(folder.filePath("q3config.cfg"), "");
        writeTestFile(folder.filePath("notes.a-long-extension-of-another-program"), ""); // its type name is long
        const auto dialog
            = Prompts::fileDialog(nullptr, false, "Open", "All Files (*.*)|*", QStringLiteral("cfg"), folder.path());
        dialog->setOption(QFileDialog::DontUseNativeDialog);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        // Every column shows its texts whole, and the dialog shows every column.
        auto *treeView = dialog->findChild<QTreeView *>("treeView");
        QVERIFY(treeView);
        QAbstractItemView *details = treeView;
        QTRY_VERIFY(details->model()->rowCount(details->rootIndex()) == 2);
        for (int column : { 1, 2, 3 })
            QTRY_VERIFY2(treeView->header()->sectionSize(column) >= details->sizeHintForColumn(column),
                qPrintable(QString::number(column)));
        QTRY_VERIFY(details->viewport()->width() >= treeView->header()->length());
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText("q3config");
        QMetaObject::invokeMethod(dialog.get(), "accept", Qt::DirectConnection);
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(dialog->selectedFiles().value(0), folder.filePath("q3config.cfg"));
    }

    void restoreDefaultsBringsBackSettingsNotKeys()
    {
        ConfigDocument &doc = m_window->document();
        commands().restoreDefaultsCommand(); // unavailable before a file is opened: asks nothing
        QVERIFY(Prompts::takeShown().isEmpty());
        QVERIFY(commands().OpenCfg(file("mine.cfg")));
        editFov(*m_window);
        doc.DefineKey(1, KeySlot::First, QStringLiteral("UPARROW"));
        Prompts::setNextAnswers({ QMessageBox::No });
        commands().restoreDefaultsCommand();
        QCOMPARE(doc.text(u"txtFOV"), QStringLiteral("120"));
        Prompts::setNextAnswers({ QMessageBox::Yes });
        commands().restoreDefaultsCommand();
        QCOMPARE(doc.text(u"txtFOV"), QStringLiteral("110"));
        QCOMPARE(doc.bindings().at(1).firstKey, QStringLiteral("UPARROW"));
        QVERIFY(!doc.isModified());
    }

    void dialogsStartWhereTheFilesAre_data()
    {
        QTest::addColumn<QStringList>("folders"); // of "game/baseq3", "home/.q3a/baseq3" and "mine/q3.cfg" (opened)
        QTest::addColumn<QString>("start"); // where Open and Import start; "" for nowhere in particular
        QTest::newRow("nothing known") << QStringList() << "";
        QTest::newRow("per-user folder") << QStringList { "home/.q3a/baseq3" } << "home/.q3a/baseq3";
        QTest::newRow("game folder first") << QStringList { "game/baseq3", "home/.q3a/baseq3" } << "game/baseq3";
        QTest::newRow("last opened file's folder")
            << QStringList { "game/baseq3", "home/.q3a/baseq3", "mine/q3.cfg" } << "mine";
    }
    void dialogsStartWhereTheFilesAre()
    {
        QFETCH(QStringList, folders);
        QFETCH(QString, start);
        QTemporaryDir place;
        const QDir root(place.path());
        root.mkpath("home");
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", root.filePath("home").toLocal8Bit());
        m_window->settings().setGameFolder(root.filePath("game"));
        for (const QString &entry : folders) {
            const bool opened = entry.endsWith(u".cfg");
            root.mkpath(opened ? QFileInfo(entry).path() : entry);
            if (opened)
                QVERIFY(commands().OpenCfg(writeTestFile(root.filePath(entry), "")));
        }
        commands().OpenCfg(QString());
        commands().ImportFile(QString(), PartialKind::HudDisplay);
        qputenv("HOME", oldHome);
        const QList<Prompts::Shown> shown = Prompts::takeShown();
        QCOMPARE(shown.size(), 2);
        for (const Prompts::Shown &dialog : shown)
            QCOMPARE(dialog.folder, start.isEmpty() ? QString() : root.filePath(start));
    }

    void openSaysWhatASaveDrops_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("warning"); // empty: the board keeps its greeting
        const QByteArray commands = "seta cg_fov 100\r\nexec more.cfg\r\nvstr rail\r\nexec other.cfg\r\n";
        QTest::newRow("commands")
            << commands
            << "3 lines of this file are console commands (such as exec, vstr) that Tarnwick does not "
               "keep. The original file is kept as mine.cfg.orig when you save.";
        QTest::newRow("one bare variable")
            << QByteArray("com_maxfps 125\n")
            << "1 line of this file is a console command (such as com_maxfps) that Tarnwick "
               "does not keep. The original file is kept as mine.cfg.orig when you save.";
        QTest::newRow("written by Tarnwick") << "//generated by Tarnwick\r\n" + commands
                                             << "3 lines of this file are console commands (such as exec, vstr) that "
                                                "Tarnwick does not keep. A save does not write them back.";
        QTest::newRow("comments only") << QByteArray("// my settings\r\n\r\nseta cg_fov 100 // wide\r\n") << QString();
    }

    void openSaysWhatASaveDrops()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, warning);
        QVERIFY(commands().OpenCfg(file("mine.cfg", bytes)));
        QCOMPARE(board()->Message(), warning.isEmpty() ? QStringLiteral("Welcome to Tarnwick.") : warning);
        QCOMPARE(board()->MsgType(), int(warning.isEmpty() ? MsgType::Information : MsgType::Caution));
        // The next help text replaces it, as any other.
        hover(find(m_window, "chkBlood"));
        QVERIFY(board()->Message().contains("blood"));
    }

    void firstSaveKeepsTheOriginal()
    {
        const QByteArray original = "seta cg_fov 100\nbind ESCAPE \"togglemenu\"\nexec more.cfg\n";
        const QString path = file("autoexec.cfg", original);
        QVERIFY(commands().OpenCfg(path));
        editFov(*m_window);
        commands().saveCommand();
        QCOMPARE(readTestFile(path + ".orig"), original);
        QVERIFY(readTestFile(path).startsWith("//generated by Tarnwick"));
        QVERIFY(find<QLabel>(m_window, "PAN1")->text().contains(QDir::toNativeSeparators(path + ".orig")));
        // The second save finds Tarnwick's own file: the copy stays as the first save left it.
        writeTestFile(path + ".orig", "untouched");
        editFov(*m_window);
        commands().saveCommand();
        QCOMPARE(readTestFile(path + ".orig"), QByteArray("untouched"));
        QVERIFY(Prompts::takeShown().isEmpty());
    }

    void failedCopyStopsTheSave()
    {
        // A name whose ".orig" would be too long for the file system: no copy, so no save.
        const QByteArray original = "vstr go\n";
        const QString path = file(QString(247, u'a') + ".cfg", original);
        QVERIFY(commands().OpenCfg(path));
        editFov(*m_window);
        Prompts::setNextAnswers({ QMessageBox::Ok });
        commands().saveCommand();
        const QList<Prompts::Shown> shown = Prompts::takeShown();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown[0].title, QStringLiteral("Save Config File"));
        QVERIFY2(shown[0].text.contains(".cfg.orig"), qPrintable(shown[0].text));
        QCOMPARE(readTestFile(path), original);
        QVERIFY(m_window->document().isModified());
    }

private:
    MsgBoard *board() const { return find<MsgBoard>(m_window, "MsgBoard1"); }
    QString file(const QString &n, const QByteArray &b = smallCfg) { return writeTestFile(m_dir.filePath(n), b); }

    DocumentCommands &commands() { return m_window->documentCommands(); }

    void answerNewDialog(int mode, const QString &name, bool ok)
    {
        whenModal(this, [=](QWidget *modal) {
            auto *dialog = qobject_cast<frmNew *>(modal);
            QVERIFY(dialog);
            auto *field = WindowTest::find<QLineEdit>(dialog, "txtFName");
            QCOMPARE(field->selectedText(), QStringLiteral("Untitled"));
            QVERIFY(WindowTest::find<QRadioButton>(dialog, "optNew_2")->isChecked());
            WindowTest::find<QRadioButton>(dialog, QStringLiteral("optNew_%1").arg(mode))->click();
            field->setText(name);
            ok ? dialog->accept() : dialog->reject();
        });
    }

    frmMain *m_window = nullptr;
    QTemporaryDir m_dir;
};

QTEST_MAIN(tst_DocumentCommands)
#include "tst_DocumentCommands.moc"
