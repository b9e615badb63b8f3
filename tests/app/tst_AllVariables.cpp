// The All Variables page on the real window: every variable of real files, the filter, edits both ways, Add,
// Remove, the dropped lines, and the page's button and help.
#include "AllVariablesPage.h"
#include "AppFont.h"
#include "MsgBoard.h"
#include "TestCorpus.h"
#include "VariablesModel.h"
#include "WindowTestSupport.h"

using namespace WindowTest;

class tst_AllVariables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AppFont::install(); }
    void init()
    {
        m_window = answeredWindow();
        m_page = m_window->variablesPage();
    }
    void cleanup() { closeWindow(m_window); }

    void everyVariableAndOneLineEdited_data() { TestCorpus::addRows(); }

    // Every setting and every kept line has its row; a kept value typed in the table changes that line and no
    // other of the written file.
    void everyVariableAndOneLineEdited()
    {
        QFETCH(QString, path);
        TARNWICK_SKIP_WITHOUT_CORPUS(path);
        ConfigDocument &doc = m_window->document();
        QVERIFY(m_window->documentCommands().OpenCfg(path));
        VariablesModel *model = m_page->model();
        QCOMPARE(model->settingCount(), 87);
        QCOMPARE(model->rowCount(), 87 + doc.keptLines().size());
        const int kept = firstNamedKeptLine(doc);
        if (kept < 0)
            return;
        QTemporaryDir dir;
        m_window->documentCommands().SaveCfgAs(dir.filePath("before.cfg"));
        const QModelIndex value
            = m_page->filter()->mapFromSource(model->index(model->settingCount() + kept, VariablesModel::ValueColumn));
        QVERIFY(m_page->filter()->setData(value, QStringLiteral("edited value")));
        QVERIFY(doc.isModified());
        m_window->documentCommands().SaveCfgAs(dir.filePath("after.cfg"));
        const QList<QByteArray> before = readTestFile(dir.filePath("before.cfg")).split('\n');
        const QList<QByteArray> after = readTestFile(dir.filePath("after.cfg")).split('\n');
        QCOMPARE(after.size(), before.size());
        QList<qsizetype> changed;
        for (qsizetype i = 0; i < before.size(); ++i) {
            if (before[i] != after[i])
                changed << i;
        }
        QCOMPARE(changed.size(), 1);
        const Variables::KeptVariable was = Variables::parseKeptLine(QString::fromLatin1(before[changed[0]]));
        QCOMPARE(after[changed[0]], Variables::rewrittenLine(was, "edited value").toLatin1() + '\r');
    }

    void filterDroppedLinesAndHelp()
    {
        QTemporaryDir dir;
        const QString path = writeTestFile(
            dir.filePath("mine.cfg"), smallCfg + "seta cg_drawCrosshairNames 1\r\nexec more.cfg\r\n  seta x 1\r\n");
        QVERIFY(m_window->documentCommands().OpenCfg(path));
        // The ninth button shows the page and its help.
        QTest::mouseClick(find(QStringLiteral("btnMain_8")), Qt::LeftButton);
        QVERIFY(find(QStringLiteral("picVars"))->isVisible());
        QCOMPARE(m_window->title(), QStringLiteral("All Variables"));
        QCOMPARE(board()->Message(), AllVariablesPage::selectionHelp());

        // The player types; rows whose name or value hold the text stay, whatever the case.
        auto *field = find<QLineEdit>(QStringLiteral("txtFilter"));
        QTest::keyClicks(field, QStringLiteral("CROSSHAIR"));
        const VariablesFilter *filter = m_page->filter();
        QStringList names;
        for (int row = 0; row < filter->rowCount(); ++row)
            names << filter->index(row, VariablesModel::NameColumn).data().toString();
        QCOMPARE(names, (QStringList { "cg_crosshairsize", "cg_drawcrosshair", "cg_drawCrosshairNames" }));
        QCOMPARE(find<QLabel>(QStringLiteral("lblVarCount"))->text(), QStringLiteral("3 of 88 variables"));
        field->clear();
        QCOMPARE(filter->rowCount(), 88);

        // The lines the read dropped, with their reasons, below the table.
        auto *dropped = find<QTreeWidget>(QStringLiteral("lvDropped"));
        QCOMPARE(dropped->topLevelItemCount(), 2);
        QCOMPARE(dropped->topLevelItem(1)->text(2), QStringLiteral("starts with a blank"));
        QCOMPARE(find<QLabel>(QStringLiteral("lblDropped"))->text(),
            QStringLiteral("Lines of mine.cfg a save does not keep (2):"));

        // Hover help: a button's, a setting's own, a kept line's.
        hover(find(QStringLiteral("cmdAddVar")));
        QVERIFY(board()->Message().startsWith(u"Adds a variable"));
        moveOver(u"cg_fov");
        QVERIFY(board()->Message().startsWith(u"cg_fov is a setting of the Renderer page. "));
        moveOver(u"cg_drawCrosshairNames");
        QVERIFY(board()->Message().startsWith(u"cg_drawCrosshairNames has no control"));
    }

    void addAndRemove()
    {
        ConfigDocument &doc = m_window->document();
        m_window->SelectPage(Page::AllVariables);
        add("my_var", "1 2");
        QCOMPARE(doc.keptLines(), QStringList { "seta my_var \"1 2\"" });
        QCOMPARE(m_page->view()->currentIndex().siblingAtColumn(0).data().toString(), QStringLiteral("my_var"));
        QVERIFY(doc.isModified());
        // A setting's name goes to its control.
        add("CG_FOV", "120");
        QCOMPARE(find<QLineEdit>(QStringLiteral("txtFOV"))->text(), QStringLiteral("120"));
        QCOMPARE(doc.keptLines().size(), 1);
        auto *remove = find<QPushButton>(QStringLiteral("cmdRemoveVar"));
        QVERIFY(!remove->isEnabled()); // the setting's row is selected
        // A name with a blank is refused with a box, and the dialog stays until cancelled.
        Prompts::setNextAnswers({ QMessageBox::Ok });
        whenModal(this, [](QWidget *dialog) {
            WindowTest::find<QLineEdit>(dialog, QStringLiteral("txtVarName"))->setText(QStringLiteral("two words"));
            WindowTest::find<QPushButton>(dialog, QStringLiteral("cmdOK"))->click();
            QVERIFY(dialog->isVisible());
            WindowTest::find<QPushButton>(dialog, QStringLiteral("cmdCancel"))->click();
        });
        find<QPushButton>(QStringLiteral("cmdAddVar"))->click();
        QVERIFY(titlesShown().contains(u"Tarnwick"));
        QCOMPARE(doc.keptLines().size(), 1);

        m_page->selectVariable(QStringLiteral("my_var"));
        QVERIFY(remove->isEnabled());
        doc.setModified(false);
        remove->click();
        QVERIFY(doc.keptLines().isEmpty() && doc.isModified());
    }

    // Controls and table in step, also through Restore Defaults and New.
    void controlsAndTableInStep()
    {
        QTemporaryDir dir;
        QVERIFY(m_window->documentCommands().OpenCfg(writeTestFile(dir.filePath("small.cfg"), smallCfg)));
        find<QCheckBox>(QStringLiteral("chkBlood"))->click();
        QCOMPARE(valueOf(u"com_blood"), QStringLiteral("1"));
        QVERIFY(m_page->model()->setData(indexOf(u"cg_fov"), QStringLiteral("130")));
        QCOMPARE(find<QLineEdit>(QStringLiteral("txtFOV"))->text(), QStringLiteral("130"));

        Prompts::setNextAnswers({ QMessageBox::Yes });
        m_window->documentCommands().restoreDefaultsCommand();
        QCOMPARE(valueOf(u"cg_fov"), QStringLiteral("110"));
        QCOMPARE(valueOf(u"com_blood"), QStringLiteral("0"));

        QVERIFY(m_page->model()->setData(indexOf(u"r_mode"), QStringLiteral("5")));
        Prompts::setNextAnswers({ QMessageBox::No }); // don't save
        whenModal(this, [](QWidget *dialog) {
            WindowTest::find<QRadioButton>(dialog, QStringLiteral("optNew_1"))->click();
            WindowTest::find<QPushButton>(dialog, QStringLiteral("cmdOK"))->click();
        });
        m_window->documentCommands().newCommand();
        QCOMPARE(valueOf(u"r_mode"), QStringLiteral("3"));
    }

private:
    template <typename T = QWidget> T *find(const QString &name) const { return WindowTest::find<T>(m_window, name); }
    MsgBoard *board() const { return find<MsgBoard>(QStringLiteral("MsgBoard1")); }
    QModelIndex indexOf(QStringView name) const
    {
        return m_page->model()->index(m_page->model()->rowOf(name), VariablesModel::ValueColumn);
    }
    QString valueOf(QStringView name) const { return indexOf(name).data().toString(); }

    static int firstNamedKeptLine(const ConfigDocument &doc)
    {
        for (int i = 0; i < doc.keptLines().size(); ++i) {
            if (!Variables::parseKeptLine(doc.keptLines()[i]).name.isEmpty())
                return i;
        }
        return -1;
    }

    void add(const char *name, const char *value)
    {
        whenModal(this, [=](QWidget *dialog) {
            WindowTest::find<QLineEdit>(dialog, QStringLiteral("txtVarName"))->setText(QString::fromLatin1(name));
            WindowTest::find<QLineEdit>(dialog, QStringLiteral("txtVarValue"))->setText(QString::fromLatin1(value));
            WindowTest::find<QPushButton>(dialog, QStringLiteral("cmdOK"))->click();
        });
        find<QPushButton>(QStringLiteral("cmdAddVar"))->click();
    }

    // The mouse comes over the row of a variable.
    void moveOver(QStringView name) const
    {
        QTableView *view = m_page->view();
        const QModelIndex shown = m_page->filter()->mapFromSource(indexOf(name));
        view->scrollTo(shown);
        const QPointF at = view->visualRect(shown).center();
        QMouseEvent move(
            QEvent::MouseMove, at, view->viewport()->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &move);
    }

    frmMain *m_window = nullptr;
    AllVariablesPage *m_page = nullptr;
};

QTEST_MAIN(tst_AllVariables)
#include "tst_AllVariables.moc"
