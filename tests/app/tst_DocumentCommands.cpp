// New, Open, Save, Save As and Restore Defaults on the real window, every box answered through Prompts.
#include "ConfigWriter.h"
#include "DocumentCommands.h"
#include "Prompts.h"
#include "SettingCatalog.h"
#include "TestFiles.h"
#include "WindowSettings.h"
#include "frmMain.h"
#include "frmNew.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

using Prompts::Answer;
Q_DECLARE_METATYPE(ActionBinding)

class tst_DocumentCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void savePromptAnswers_data();
    void savePromptAnswers();
    void newModesAndName_data();
    void newModesAndName();
    void openChecksTheExtension();
    void saveOfNewDocumentAsksAndCancelKeepsModified();
    void saveAsReplacesWithoutAsking();
    void failedSaveKeepsTheOldFile_data();
    void failedSaveKeepsTheOldFile();
    void failedSaveOfACleanDocumentLeavesItClean();
    void fileDialogsCompleteTheExtension();
    void restoreDefaultsBringsBackSettingsNotKeys();
    void dialogsStartWhereTheFilesAre_data();
    void dialogsStartWhereTheFilesAre();

private:
    QString file(const QString &name, const QByteArray &bytes = "seta cg_fov \"110\"\r\nbind w \"+forward\"\r\n");
    void edit() { m_window->document().setText(SettingCatalog::instance().indexOfControl(u"txtFOV"), 0, "120"); }
    void answerNewDialog(int mode, const QString &name, bool ok);

    frmMain *m_window = nullptr;
    QTemporaryDir m_dir;
};

void tst_DocumentCommands::init()
{
    m_window = new frmMain;
    Prompts::setNextAnswers({});
}

void tst_DocumentCommands::cleanup()
{
    QVERIFY(!Prompts::hasPendingAnswers());
    delete m_window;
}

QString tst_DocumentCommands::file(const QString &name, const QByteArray &bytes)
{
    return writeTestFile(m_dir.filePath(name), bytes);
}

void tst_DocumentCommands::answerNewDialog(int mode, const QString &name, bool ok)
{
    QTimer::singleShot(0, this, [=] {
        auto *dialog = qobject_cast<frmNew *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        QCOMPARE(dialog->findChild<QLineEdit *>("txtFName")->selectedText(), QStringLiteral("Untitled"));
        QVERIFY(dialog->findChild<QRadioButton *>("optNew_2")->isChecked());
        dialog->findChild<QRadioButton *>(QStringLiteral("optNew_%1").arg(mode))->click();
        dialog->findChild<QLineEdit *>("txtFName")->setText(name);
        ok ? dialog->accept() : dialog->reject();
    });
}

void tst_DocumentCommands::savePromptAnswers_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("goesOn");
    QTest::addColumn<bool>("saved");
    QTest::newRow("yes saves") << int(QMessageBox::Yes) << true << true;
    QTest::newRow("no goes on") << int(QMessageBox::No) << true << false;
    QTest::newRow("cancel stops") << int(QMessageBox::Cancel) << false << false;
}

void tst_DocumentCommands::savePromptAnswers()
{
    QFETCH(int, answer);
    QFETCH(bool, goesOn);
    QFETCH(bool, saved);
    QVERIFY(m_window->documentCommands().OpenCfg(file("mine.cfg")));
    edit();
    Prompts::setNextAnswers({ QMessageBox::StandardButton(answer) });
    QCOMPARE(m_window->documentCommands().saveChangesPrompt(), goesOn);
    const QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown[0].title, QStringLiteral("Tarnwick"));
    QCOMPARE(shown[0].text, QStringLiteral("Save changes to configuration file \n\"mine.cfg\"?"));
    QFile f(m_dir.filePath("mine.cfg"));
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll().contains("seta cg_fov \"120\""), saved);
    QCOMPARE(m_window->document().isModified(), !saved);
}

void tst_DocumentCommands::newModesAndName_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::addColumn<ActionBinding>("forward");
    QTest::newRow("keep keys") << 0 << "Duel"
                               << "Duel" << ActionBinding { "W", "" };
    QTest::newRow("defaults") << 1 << "  Team  "
                              << "Team" << ActionBinding { "W", "UPARROW" };
    QTest::newRow("clear, empty name") << 2 << "   "
                                       << "Untitled" << ActionBinding {};
}

void tst_DocumentCommands::newModesAndName()
{
    QFETCH(int, mode);
    QFETCH(QString, typed);
    QFETCH(QString, name);
    QFETCH(ActionBinding, forward);
    QVERIFY(m_window->documentCommands().OpenCfg(file("keys.cfg")));
    answerNewDialog(mode, typed, true);
    m_window->documentCommands().newCommand();
    ConfigDocument &doc = m_window->document();
    QCOMPARE(doc.displayName(), name);
    QCOMPARE(m_window->windowTitle(), name + QStringLiteral(" - Tarnwick"));
    QVERIFY(!doc.HasFile() && !doc.isModified() && !doc.canRestore());
    QCOMPARE(doc.bindings().at(1), forward);
    // A following Save asks for a file name.
    Prompts::setNextAnswers({ QString() });
    m_window->documentCommands().SaveCfg();
    QCOMPARE(Prompts::takeShown().value(0).title, QStringLiteral("Save"));

    // Cancel in the dialog changes nothing.
    answerNewDialog(0, QStringLiteral("Other"), false);
    m_window->documentCommands().newCommand();
    QCOMPARE(doc.displayName(), name);
}

void tst_DocumentCommands::openChecksTheExtension()
{
    const QString text = file("settings.txt");
    const QString upper = file("settings.CONFIG");
    ConfigDocument &doc = m_window->document();
    // No: the current document stays as it is.
    Prompts::setNextAnswers({ text, QMessageBox::No });
    QVERIFY(!m_window->documentCommands().OpenCfg(QString()));
    QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 2);
    QCOMPARE(shown[0].title, QStringLiteral("Open"));
    QCOMPARE(shown[0].text, DocumentCommands::configFilter());
    QCOMPARE(shown[1].title, QStringLiteral("Incorrect file extension"));
    QCOMPARE(shown[1].text, QStringLiteral("This isn't an CFG or CONFIG file.\nDo you want to choose another file?"));
    QCOMPARE(doc.displayName(), QStringLiteral("Untitled"));
    // Yes: the dialog opens again; an upper-case .CONFIG is taken.
    Prompts::setNextAnswers({ text, QMessageBox::Yes, upper });
    QVERIFY(m_window->documentCommands().OpenCfg(QString()));
    QCOMPARE(doc.displayName(), QStringLiteral("settings.CONFIG"));
    QVERIFY(doc.HasFile() && doc.canRestore() && !doc.isModified());
}

void tst_DocumentCommands::saveOfNewDocumentAsksAndCancelKeepsModified()
{
    edit();
    Prompts::setNextAnswers({ QString() });
    m_window->documentCommands().saveCommand();
    QCOMPARE(Prompts::takeShown().value(0).title, QStringLiteral("Save"));
    QVERIFY(m_window->documentCommands().saveCancelled());
    QVERIFY(m_window->document().isModified());
    // A cancelled save also stops the command whose prompt asked for it.
    Prompts::setNextAnswers({ QMessageBox::Yes, QString() });
    QVERIFY(!m_window->documentCommands().saveChangesPrompt(QStringLiteral(" before closing?")));
}

void tst_DocumentCommands::saveAsReplacesWithoutAsking()
{
    const QString target = file("old.cfg", "old content\r\n");
    edit();
    Prompts::setNextAnswers({ target });
    m_window->documentCommands().saveAsCommand();
    QCOMPARE(Prompts::takeShown().size(), 1); // the dialog only: no overwrite question
    QFile f(target);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(), ConfigWriter::fileBytes(m_window->document(), FileScope::Whole));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("old.cfg - Tarnwick"));
    QVERIFY(!m_window->document().isModified() && m_window->document().HasFile());
}

void tst_DocumentCommands::failedSaveKeepsTheOldFile_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("missing folder") << "missing/out.cfg";
    QTest::newRow("a folder in the way") << "folder";
    QTest::newRow("read-only folder") << "locked/out.cfg";
}

void tst_DocumentCommands::failedSaveKeepsTheOldFile()
{
    QFETCH(QString, target);
    QDir(m_dir.path()).mkpath("folder");
    QDir(m_dir.path()).mkpath("locked");
    QFile::setPermissions(m_dir.filePath("locked"), QFile::ReadOwner | QFile::ExeOwner);
    const QString old = file("locked-old.cfg", "precious\r\n");
    if (QFileInfo(m_dir.filePath("locked")).isWritable() && target.startsWith(u"locked"))
        QSKIP("running as a user who writes into read-only folders");
    edit();
    Prompts::setNextAnswers({ m_dir.filePath(target), QMessageBox::Ok });
    m_window->documentCommands().saveAsCommand();
    const QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 2);
    QCOMPARE(shown[1].title, QStringLiteral("Save Config File"));
    QVERIFY(shown[1].text.startsWith(QStringLiteral("An error occurred:\nErr Number ")));
    QVERIFY(m_window->document().isModified() && !m_window->document().HasFile());
    QVERIFY(m_window->documentCommands().saveCancelled());
    QFile f(old);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(), QByteArray("precious\r\n"));
    QFile::setPermissions(m_dir.filePath("locked"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void tst_DocumentCommands::failedSaveOfACleanDocumentLeavesItClean()
{
    // Save of an unchanged document where a folder has since taken the file's place: the box says why, and the
    // document is as unchanged as before.
    const QString path = file("gone.cfg");
    QVERIFY(m_window->documentCommands().OpenCfg(path));
    QVERIFY(QFile::remove(path) && QDir().mkdir(path));
    Prompts::setNextAnswers({ QMessageBox::Ok });
    m_window->documentCommands().saveCommand();
    QCOMPARE(Prompts::takeShown().value(0).title, QStringLiteral("Save Config File"));
    QVERIFY(m_window->documentCommands().saveCancelled());
    QVERIFY(!m_window->document().isModified());
}

void tst_DocumentCommands::fileDialogsCompleteTheExtension()
{
    // The real dialog, as Open shows it: a name typed without its extension finds the configuration file.
    file("q3config.cfg");
    const auto dialog = Prompts::fileDialog(
        nullptr, false, "Open", DocumentCommands::configFilter(), QStringLiteral("cfg"), m_dir.path());
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    // Wide enough that the size and type columns are not cut short.
    auto *details = dialog->findChild<QTreeView *>("treeView");
    QVERIFY(details);
    const QFontMetrics metrics = details->fontMetrics();
    for (int column : { 1, 2 })
        QVERIFY2(details->header()->sectionSize(column) > metrics.horizontalAdvance("999 bytes "),
            qPrintable(QString::number(column)));
    QVERIFY(dialog->width() >= details->header()->length());
    dialog->findChild<QLineEdit *>("fileNameEdit")->setText("q3config");
    QMetaObject::invokeMethod(dialog.get(), "accept", Qt::DirectConnection);
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
    QCOMPARE(dialog->selectedFiles().value(0), m_dir.filePath("q3config.cfg"));
}

void tst_DocumentCommands::restoreDefaultsBringsBackSettingsNotKeys()
{
    ConfigDocument &doc = m_window->document();
    m_window->documentCommands().restoreDefaultsCommand(); // unavailable before a file is opened: asks nothing
    QVERIFY(Prompts::takeShown().isEmpty());
    QVERIFY(m_window->documentCommands().OpenCfg(file("mine.cfg")));
    edit();
    doc.DefineKey(1, KeySlot::First, QStringLiteral("UPARROW"));
    Prompts::setNextAnswers({ QMessageBox::No });
    m_window->documentCommands().restoreDefaultsCommand();
    QCOMPARE(doc.text(u"txtFOV"), QStringLiteral("120"));
    Prompts::setNextAnswers({ QMessageBox::Yes });
    m_window->documentCommands().restoreDefaultsCommand();
    QCOMPARE(Prompts::takeShown().value(0).text,
        QStringLiteral("Are you sure you want to reset every settings to default?"));
    QCOMPARE(doc.text(u"txtFOV"), QStringLiteral("110"));
    QCOMPARE(doc.bindings().at(1).firstKey, QStringLiteral("UPARROW"));
    QVERIFY(!doc.isModified());
}

void tst_DocumentCommands::dialogsStartWhereTheFilesAre_data()
{
    QTest::addColumn<bool>("gameData"); // the game folder holds baseq3
    QTest::addColumn<bool>("perUser"); // ~/.q3a/baseq3 exists
    QTest::addColumn<bool>("opened"); // a file was opened before
    QTest::addColumn<QString>("folder"); // "game", "user", "opened" or ""
    QTest::newRow("nothing known") << false << false << false << "";
    QTest::newRow("per-user folder") << false << true << false << "user";
    QTest::newRow("game folder first") << true << true << false << "game";
    QTest::newRow("last opened file's folder") << true << true << true << "opened";
}

void tst_DocumentCommands::dialogsStartWhereTheFilesAre()
{
    QFETCH(bool, gameData);
    QFETCH(bool, perUser);
    QFETCH(bool, opened);
    QFETCH(QString, folder);
    QTemporaryDir place;
    const QDir root(place.path());
    root.mkpath("game");
    if (gameData)
        root.mkpath("game/baseq3");
    if (perUser)
        root.mkpath("home/.q3a/baseq3");
    root.mkpath("home");
    root.mkpath("mine");
    const QByteArray oldHome = qgetenv("HOME");
    qputenv("HOME", root.filePath("home").toLocal8Bit());
    m_window->settings().setGameFolder(root.filePath("game"));
    if (opened) {
        QFile f(root.filePath("mine/q3.cfg"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.close();
        QVERIFY(m_window->documentCommands().OpenCfg(f.fileName()));
    }
    Prompts::setNextAnswers({ QString(), QString() });
    m_window->documentCommands().OpenCfg(QString());
    m_window->documentCommands().ImportFile(QString(), PartialKind::HudDisplay);
    qputenv("HOME", oldHome);
    const QMap<QString, QString> expected { { "", "" }, { "game", root.filePath("game/baseq3") },
        { "user", root.filePath("home/.q3a/baseq3") }, { "opened", root.filePath("mine") } };
    const QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 2);
    for (const Prompts::Shown &dialog : shown)
        QCOMPARE(dialog.folder, expected.value(folder));
}

QTEST_MAIN(tst_DocumentCommands)
#include "tst_DocumentCommands.moc"
