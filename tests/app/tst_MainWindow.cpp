// Drives the real main window: pages and the left bar, the help board, the controls wired to their rules,
// text fields, key buttons, and a configuration shown in every control.
#include "AppFont.h"
#include "ConfigWriter.h"
#include "ControlRules.h"
#include "DocumentCommands.h"
#include "Keys.h"
#include "MsgBoard.h"
#include "Pk3ExplorerPage.h"
#include "SettingCatalog.h"
#include "TestCorpus.h"
#include "TitleStrip.h"
#include "frmKey.h"
#include "frmMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

class tst_MainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void startsWithNoPageSelected();
    void selectPage_data();
    void selectPage();
    void pk3TitleFollowsTheArchive();
    void leftBarPositions();
    void controlSubPages_data();
    void controlSubPages();
    void pagesFitAtOpeningSize();
    void regionsFollowTheWindow();
    void largerFontScrollsInsteadOfClipping();
    void clientPasswordDialog();
    void editsMarkModified();
    void controlsFollowTheirRules();
    void emptiedNumberComesBack();
    void keyButtonsDefineMoveAndDelete();
    void corpusFilesShowAndWriteBack_data() { TestCorpus::addRows(); }
    void corpusFilesShowAndWriteBack();

private:
    template <typename T> T *find(const QString &name) const
    {
        T *widget = m_window->findChild<T *>(name);
        if (!widget)
            qFatal("no widget %s", qPrintable(name));
        return widget;
    }
    MsgBoard *board() const { return find<MsgBoard>(QStringLiteral("MsgBoard1")); }
    void hover(QWidget *widget) const
    {
        QEnterEvent enter(QPointF(1, 1), widget->mapTo(m_window, QPointF(1, 1)), widget->mapToGlobal(QPointF(1, 1)));
        QApplication::sendEvent(widget, &enter);
    }
    void setChecked(const QString &box, bool on) const;
    int buttonTop(const QString &name) const { return find<QWidget>(name)->geometry().top(); }

    frmMain *m_window = nullptr;
};

void tst_MainWindow::initTestCase()
{
    AppFont::install();
}

void tst_MainWindow::init()
{
    m_window = new frmMain;
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
}

void tst_MainWindow::cleanup()
{
    delete m_window;
    m_window = nullptr;
}

void tst_MainWindow::setChecked(const QString &box, bool on) const
{
    auto *check = find<QCheckBox>(box);
    if (check->isChecked() != on)
        check->click();
}

void tst_MainWindow::startsWithNoPageSelected()
{
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Untitled - Tarnwick"));
    QCOMPARE(m_window->title(), QStringLiteral("Tarnwick"));
    QCOMPARE(board()->Message(), QStringLiteral("Welcome to Tarnwick."));
    QCOMPARE(board()->MsgType(), 2);
    for (const char *page : { "picPlayer", "picServer", "picCtrls", "picGFX", "picNet", "picHUD", "picRail", "picPK3" })
        QVERIFY2(!find<QWidget>(QString::fromLatin1(page))->isVisible(), page);
    for (int i = 0; i < 4; ++i)
        QVERIFY(!find<QWidget>(QStringLiteral("btnCtrls_%1").arg(i))->isVisible());
    QVERIFY(!m_window->document().isModified());
    // The size the window opens at, in pixels of 15 twips.
    QCOMPARE(m_window->frameGeometry().size(), QSize(695, 500));
}

void tst_MainWindow::selectPage_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("container");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("help"); // empty: the board keeps what it showed
    QTest::addColumn<bool>("boardShown");

    const QString unchanged;
    QTest::newRow("Client") << 0 << "picPlayer"
                            << "Client Settings"
                            << "Client / Player Settings" << true;
    QTest::newRow("Server") << 1 << "picServer"
                            << "Server Settings" << unchanged << true;
    QTest::newRow("Control") << 2 << "picCtrls"
                             << "Control - Move"
                             << "To define the key use the left button on your mouse.\r\n"
                                "To delete the key use the right button on your mouse."
                             << true;
    QTest::newRow("Renderer") << 3 << "picGFX"
                              << "Renderer Settings" << unchanged << true;
    QTest::newRow("Sound") << 4 << "picNet"
                           << "Sound & Network Settings" << unchanged << true;
    QTest::newRow("HUD") << 5 << "picHUD"
                         << "HUD Display Settings" << unchanged << true;
    QTest::newRow("Railgun") << 6 << "picRail"
                             << "Railgun Settings" << unchanged << true;
    QTest::newRow("PK3") << 7 << "picPK3"
                         << "PK3 Explorer" << unchanged << false;
}

void tst_MainWindow::pk3TitleFollowsTheArchive()
{
    QTemporaryDir dir;
    const QString archive = dir.filePath("maps.pk3");
    QProcess zip;
    zip.setWorkingDirectory(dir.path());
    QFile(dir.filePath("readme.txt")).open(QIODevice::WriteOnly);
    zip.start("zip", { "-q", archive, "readme.txt" });
    if (!zip.waitForFinished() || zip.exitCode() != 0)
        QSKIP("needs the zip tool");
    m_window->SelectPage(Page::Pk3Explorer);
    QVERIFY(m_window->pk3Page()->LoadPK3(archive));
    QCOMPARE(m_window->title(), "PK3 Explorer - " + archive);
    m_window->SelectPage(Page(0));
    m_window->SelectPage(Page::Pk3Explorer);
    QCOMPARE(m_window->title(), "PK3 Explorer - " + archive);
    m_window->pk3Page()->ClosePK3();
    QCOMPARE(m_window->title(), QStringLiteral("PK3 Explorer"));
}

void tst_MainWindow::selectPage()
{
    QFETCH(int, index);
    QFETCH(QString, container);
    QFETCH(QString, title);
    QFETCH(QString, help);
    QFETCH(bool, boardShown);

    // Start from another page, so every container has been shown once and must hide again.
    find<QAbstractButton>(QStringLiteral("btnMain_%1").arg((index + 1) % PageCount))->click();
    const QString before = board()->Message();
    QTest::mouseClick(find<QWidget>(QStringLiteral("btnMain_%1").arg(index)), Qt::LeftButton);
    QCOMPARE(m_window->title(), title);
    QCOMPARE(find<TitleStrip>(QStringLiteral("picMsg"))->text(), title);
    for (QScrollArea *page : m_window->findChildren<QScrollArea *>()) {
        if (page->parentWidget() == m_window->centralWidget())
            QCOMPARE(page->isVisible(), page->objectName() == container);
    }
    QCOMPARE(board()->isVisible(), boardShown);
    QCOMPARE(board()->Message(), help.isEmpty() ? before : help);
    QCOMPARE(board()->MsgType(), 2);

    // Indices outside the pages change nothing.
    m_window->SelectPage(Page(8));
    m_window->SelectPage(Page(-1));
    QCOMPARE(m_window->currentPage(), std::optional(Page(index)));
}

void tst_MainWindow::leftBarPositions()
{
    // Tops in twips, 15 to a pixel.
    const QList<int> hidden { 30, 420, 810, 1200, 1590, 1980, 2370, 2760 };
    const QList<int> shown { 30, 420, 810, 2760, 3150, 3540, 3930, 4320 };
    const QList<int> subPages { 1200, 1590, 1980, 2370 };
    const auto check = [this](const QList<int> &tops) {
        for (int i = 0; i < PageCount; ++i)
            QCOMPARE(buttonTop(QStringLiteral("btnMain_%1").arg(i)), tops[i] / 15);
    };
    check(hidden);
    m_window->SelectPage(Page(2));
    check(shown);
    for (int i = 0; i < 4; ++i) {
        QWidget *button = find<QWidget>(QStringLiteral("btnCtrls_%1").arg(i));
        QVERIFY(button->isVisible());
        QCOMPARE(button->geometry(), QRect(7, subPages[i] / 15, 94, 25));
    }
    QCOMPARE(find<QWidget>(QStringLiteral("btnMain_3"))->geometry(), QRect(2, 184, 104, 25));
    m_window->SelectPage(Page(5));
    check(hidden);
    QVERIFY(!find<QWidget>(QStringLiteral("btnCtrls_0"))->isVisible());
}

void tst_MainWindow::controlSubPages_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("subPage");
    QTest::addColumn<QString>("title");
    QTest::newRow("Move") << 0 << "picMove"
                          << "Control - Move";
    QTest::newRow("Shoot") << 1 << "picShoot"
                           << "Control - Shoot";
    QTest::newRow("Look") << 2 << "picLook"
                          << "Control - Look";
    QTest::newRow("Misc") << 3 << "picMisc"
                          << "Control - Miscellaneous";
}

void tst_MainWindow::controlSubPages()
{
    QFETCH(int, index);
    QFETCH(QString, subPage);
    QFETCH(QString, title);

    m_window->SelectPage(Page(2));
    QTest::mouseClick(find<QWidget>(QStringLiteral("btnCtrls_%1").arg(index)), Qt::LeftButton);
    QCOMPARE(m_window->title(), title);
    for (const char *name : { "picMove", "picShoot", "picLook", "picMisc" })
        QCOMPARE(find<QWidget>(QString::fromLatin1(name))->isVisible(), subPage == QLatin1StringView(name));
    // Clicking Control again starts over on Move.
    m_window->SelectPage(Page(2));
    QVERIFY(find<QWidget>(QStringLiteral("picMove"))->isVisible());
    QCOMPARE(m_window->title(), QStringLiteral("Control - Move"));
}

void tst_MainWindow::pagesFitAtOpeningSize()
{
    // A desktop frame takes a border and a caption off the opening size; the pages must still fit.
    m_window->resize(695 - 8, 500 - 31);
    for (int page = 0; page < int(Page::Pk3Explorer); ++page) {
        m_window->SelectPage(Page(page));
        for (int sub = 0; sub < (page == 2 ? 4 : 1); ++sub) {
            if (page == 2)
                m_window->SelectControlSubPage(ControlSubPage(sub));
            QApplication::processEvents();
            auto *area = qobject_cast<QScrollArea *>(
                m_window->findChildren<QScrollArea *>().at(0)->parentWidget()->findChildren<QScrollArea *>().at(page));
            QVERIFY(area);
            const QSize need = area->widget()->minimumSizeHint();
            const QSize have = area->viewport()->size();
            QVERIFY2(!area->verticalScrollBar()->isVisible() && !area->horizontalScrollBar()->isVisible(),
                qPrintable(QStringLiteral("%1 needs %2x%3, has %4x%5")
                               .arg(area->objectName())
                               .arg(need.width())
                               .arg(need.height())
                               .arg(have.width())
                               .arg(have.height())));
        }
    }
}

void tst_MainWindow::regionsFollowTheWindow()
{
    m_window->resize(900, 700);
    QApplication::processEvents();
    m_window->SelectPage(Page(3));
    const QWidget *client = m_window->centralWidget();
    const int width = client->width();
    const int height = client->height();
    // Twips: toolbar band 390, left bar 1630 wide from 400 down, strip 300 high, pages from 740 down,
    // help board 480 high, 30 between regions.
    QCOMPARE(find<QWidget>(QStringLiteral("picLBar"))->geometry(), QRect(0, 27, 109, height - 26 - 1));
    QCOMPARE(find<QWidget>(QStringLiteral("picMsg"))->geometry(), QRect(111, 28, width - 109 - 4, 20));
    const int pageHeight = height - 49 - 32 - 3;
    QCOMPARE(find<QWidget>(QStringLiteral("picGFX"))->geometry(), QRect(111, 49, width - 113, pageHeight));
    QCOMPARE(board()->geometry(), QRect(111, 49 + pageHeight, width - 113, 32));
}

void tst_MainWindow::largerFontScrollsInsteadOfClipping()
{
    QFont big = QApplication::font();
    big.setPointSize(big.pointSize() * 2);
    m_window->setFont(big);
    m_window->SelectPage(Page(3));
    QApplication::processEvents();
    auto *page = find<QScrollArea>(QStringLiteral("picGFX"));
    QVERIFY(page->verticalScrollBar()->isVisible() || page->horizontalScrollBar()->isVisible());
    QVERIFY(page->widget()->height() >= page->widget()->minimumSizeHint().height());
}

void tst_MainWindow::clientPasswordDialog()
{
    m_window->SelectPage(Page(1));
    auto *button = find<QPushButton>(QStringLiteral("cmdClPas"));
    QVERIFY(!button->isEnabled());
    setChecked(QStringLiteral("chkPrivSv"), true);
    QVERIFY(button->isEnabled());
    m_window->document().setModified(false);
    const auto answer = [this, button](const QString &expectPrefill, const QString &type, bool ok) {
        QTimer::singleShot(0, this, [=] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog);
            auto *field = dialog->findChild<QLineEdit *>(QStringLiteral("txtPass"));
            QCOMPARE(field->text(), expectPrefill);
            field->setText(type);
            dialog->findChild<QPushButton *>(ok ? QStringLiteral("cmdOK") : QStringLiteral("cmdCancel"))->click();
        });
        button->click();
    };
    answer(QString(), QStringLiteral("s3cret"), true);
    answer(QStringLiteral("s3cret"), QStringLiteral("other"), false); // Cancel keeps the password
    answer(QStringLiteral("s3cret"), QString(), true);
    QVERIFY(!m_window->document().isModified()); // the password is no setting of the file
}

void tst_MainWindow::editsMarkModified()
{
    ConfigDocument &doc = m_window->document();
    const QList<std::function<void()>> edits {
        [this] { find<QCheckBox>(QStringLiteral("chkBlood"))->click(); },
        [this] { find<QRadioButton>(QStringLiteral("optLighting_1"))->click(); },
        [this] { find<QComboBox>(QStringLiteral("cbResolution"))->setCurrentIndex(5); },
        [this] { find<QSlider>(QStringLiteral("sldGamma"))->setValue(15); },
        [this] { find<QLineEdit>(QStringLiteral("txtName"))->setText(QStringLiteral("Visor")); },
        [this] { find<QCheckBox>(QStringLiteral("chkTiers_4"))->click(); },
        [this] { find<QCheckBox>(QStringLiteral("chkPure"))->click(); },
    };
    for (const auto &edit : edits) {
        doc.setModified(false);
        edit();
        QVERIFY(doc.isModified());
    }
    QCOMPARE(doc.state(QStringLiteral("optLighting")), 1);
    QCOMPARE(doc.state(QStringLiteral("cbResolution")), 5);
    QCOMPARE(doc.text(QStringLiteral("txtName")), QStringLiteral("Visor"));
    QCOMPARE(doc.state(QStringLiteral("chkTiers"), 4), 1);
}

void tst_MainWindow::controlsFollowTheirRules()
{
    // The rules themselves are tested without a window; here, that the controls are wired to them.
    m_window->SelectPage(Page::SoundNetwork);
    auto *udp = find<QCheckBox>(QStringLiteral("chkUDP"));
    setChecked(QStringLiteral("chkUDP"), false);
    hover(udp);
    QVERIFY(board()->Message().startsWith(QStringLiteral("Enables TCP/IP")));
    QCOMPARE(board()->MsgType(), int(MsgType::Information));
    // Ticked with the pointer still on it: the text and its type follow at once.
    udp->click();
    QVERIFY(board()->Message().startsWith(QStringLiteral("Disables TCP/IP")));
    QCOMPARE(board()->MsgType(), int(MsgType::Caution));
    // A change elsewhere leaves the hovered control's text alone.
    find<QCheckBox>(QStringLiteral("chk8Bit"))->click();
    QVERIFY(board()->Message().startsWith(QStringLiteral("Disables TCP/IP")));

    // The view size's label is a caption, not a reading.
    m_window->SelectPage(Page::Client);
    find<QSlider>(QStringLiteral("Slider1"))->setValue(40);
    QCOMPARE(find<QLabel>(QStringLiteral("lblSlider1"))->text(), QStringLiteral("View Size: 100"));
}

void tst_MainWindow::emptiedNumberComesBack()
{
    // An emptied number field is never written as 0: the document keeps the value, and the field shows it
    // again once it loses focus.
    ConfigDocument &doc = m_window->document();
    m_window->SelectPage(Page::Client);
    auto *fov = find<QLineEdit>(QStringLiteral("txtFOV"));
    fov->setFocus();
    QTest::keyClick(fov, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(fov, Qt::Key_Delete);
    QCOMPARE(fov->text(), QString());
    QCOMPARE(doc.text(QStringLiteral("txtFOV")), QStringLiteral("90"));
    find<QLineEdit>(QStringLiteral("txtName"))->setFocus();
    QCOMPARE(fov->text(), QStringLiteral("90"));
    // Typed digits still go in as they are.
    QTest::keyClicks(fov, QStringLiteral("5"));
    QCOMPARE(doc.text(QStringLiteral("txtFOV")), QStringLiteral("905"));
}

void tst_MainWindow::keyButtonsDefineMoveAndDelete()
{
    ConfigDocument &doc = m_window->document();
    m_window->SelectPage(Page(2));
    const auto press = [this](int action, bool right, Qt::Key key) {
        // The capture dialog is modal: answer it once it is up.
        QTimer::singleShot(0, this, [key] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(qobject_cast<frmKey *>(dialog));
            QTest::keyClick(dialog, key);
        });
        auto *keys = find<Keys>(QStringLiteral("btnKeys_%1").arg(action));
        QTest::mouseClick(keys, Qt::LeftButton, {}, QPoint(keys->width() * (right ? 3 : 1) / 4, keys->height() / 2));
    };
    press(1, false, Qt::Key_W);
    QCOMPARE(doc.bindings().at(1).firstKey, QStringLiteral("W"));
    QCOMPARE(find<Keys>(QStringLiteral("btnKeys_1"))->Caption(), QStringLiteral("W"));
    QVERIFY(doc.isModified());

    // W taken for Move Backward's second key leaves Move Forward.
    press(2, true, Qt::Key_W);
    QCOMPARE(doc.bindings().at(1).firstKey, QString());
    QCOMPARE(doc.bindings().at(2).secondKey, QStringLiteral("W"));
    QCOMPARE(find<Keys>(QStringLiteral("btnKeys_2"))->Caption2(), QStringLiteral("W"));

    // Esc changes nothing, not even the modified flag.
    doc.setModified(false);
    press(2, false, Qt::Key_Escape);
    QCOMPARE(doc.bindings().at(2).firstKey, QString());
    QVERIFY(!doc.isModified());

    // A right click deletes, also an empty half, and marks the document modified.
    auto *keys = find<Keys>(QStringLiteral("btnKeys_2"));
    QTest::mouseClick(keys, Qt::RightButton, {}, QPoint(keys->width() * 3 / 4, keys->height() / 2));
    QCOMPARE(doc.bindings().at(2).secondKey, QString());
    QCOMPARE(keys->Caption2(), QString());
    doc.setModified(false);
    QTest::mouseClick(keys, Qt::RightButton, {}, QPoint(keys->width() / 4, keys->height() / 2));
    QVERIFY(doc.isModified());
    // The middle button does nothing.
    doc.setModified(false);
    QTest::mouseClick(keys, Qt::MiddleButton, {}, QPoint(keys->width() / 4, keys->height() / 2));
    QVERIFY(!doc.isModified());
}

void tst_MainWindow::corpusFilesShowAndWriteBack()
{
    QFETCH(QString, path);
    TARNWICK_SKIP_WITHOUT_CORPUS(path);
    const SettingCatalog &catalog = SettingCatalog::instance();
    QTemporaryDir out;
    QVERIFY2(m_window->documentCommands().OpenCfg(path), qPrintable(path));
    const ConfigDocument &doc = m_window->document();
    QVERIFY(!doc.isModified());
    QCOMPARE(m_window->windowTitle(), doc.displayName() + QStringLiteral(" - Tarnwick"));

    // Every control shows the document's value.
    for (int row = 0; row < catalog.rows().size(); ++row) {
        const SettingRow &r = catalog.row(row);
        for (int k = 0; k < r.count; ++k) {
            const QString name = r.count > 1 ? r.control + u'_' + QString::number(k) : r.control;
            if (r.kind == ControlKind::OptionPair)
                QVERIFY(find<QRadioButton>(r.control + u'_' + QString::number(doc.state(row)))->isChecked());
            else if (auto *box = qobject_cast<QCheckBox *>(find<QWidget>(name)))
                QCOMPARE(box->isChecked(), doc.state(row, k) != 0);
            else if (auto *list = qobject_cast<QComboBox *>(find<QWidget>(name)))
                QCOMPARE(list->currentIndex(), doc.state(row));
            else if (auto *slider = qobject_cast<QSlider *>(find<QWidget>(name)))
                QCOMPARE(slider->value(), doc.state(row));
            else if (auto *edit = qobject_cast<QLineEdit *>(find<QWidget>(name)))
                QCOMPARE(edit->text(), doc.text(row, k));
            else if (r.isStored())
                QCOMPARE(find<QPushButton>(name)->text(), doc.text(row, k));
        }
    }
    for (const ControlRules::Enablement &e : ControlRules::allEffects(doc))
        QCOMPARE(find<QWidget>(e.control)->isEnabled(), e.enabled);
    for (int action = 0; action < ActionTable::Count; ++action)
        QCOMPARE(find<Keys>(QStringLiteral("btnKeys_%1").arg(action))->Caption(), doc.bindings().at(action).firstKey);

    // The window's document writes what the command-line program writes.
    const QString cliOut = out.filePath(QStringLiteral("cli.cfg"));
    QCOMPARE(QProcess::execute(QStringLiteral(TARNWICK_CLI), { QStringLiteral("rewrite"), path, cliOut }), 0);
    QFile written(cliOut);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QVERIFY2(ConfigWriter::fileBytes(doc, FileScope::Whole) == written.readAll(), qPrintable(path));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
