// Drives the real main window: pages and the left bar, the help board, the controls wired to their rules,
// text fields, key buttons, and a configuration shown in every control.
#include "AppFont.h"
#include "ConfigWriter.h"
#include "ControlRules.h"
#include "Keys.h"
#include "MsgBoard.h"
#include "Pk3ExplorerPage.h"
#include "TestCorpus.h"
#include "TestZip.h"
#include "WindowTestSupport.h"
#include "frmKey.h"

using namespace WindowTest;

class tst_MainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AppFont::install(); }
    void init() { m_window = shownWindow(); }
    void cleanup() { delete m_window; }

    void eachPageShowsAlone()
    {
        // None at first, in a window of 10425 x 7500 twips; none is even built before it is asked for.
        QVERIFY(m_window->centralWidget()->findChildren<QScrollArea *>().isEmpty());
        const QList<QScrollArea *> containers = pages();
        QCOMPARE(containers.size(), PageCount);
        QVERIFY(std::none_of(containers.begin(), containers.end(), [](QWidget *page) { return page->isVisible(); }));
        QVERIFY(!m_window->currentPage() && !subPageButton(0)->isVisible() && !m_window->document().isModified());
        QCOMPARE(m_window->frameGeometry().size(), QSize(695, 500));
        QSet<QString> titles;
        for (int index = 0; index < PageCount; ++index) {
            // Start from another page, so every container has been shown once and must hide again.
            m_window->SelectPage(Page((index + 1) % PageCount));
            QTest::mouseClick(pageButton(index), Qt::LeftButton);
            for (int other = 0; other < PageCount; ++other)
                QCOMPARE(containers[other]->isVisible(), other == index);
            QCOMPARE(board()->isVisible(), Page(index) != Page::Pk3Explorer);
            titles << m_window->title();
            // Indices outside the pages change nothing.
            m_window->SelectPage(Page(PageCount));
            m_window->SelectPage(Page(-1));
            QCOMPARE(m_window->currentPage(), std::optional(Page(index)));
        }
        QCOMPARE(titles.size(), PageCount);
    }

    void pk3TitleFollowsTheArchive()
    {
        QTemporaryDir dir;
        const QString archive = writeTestFile(dir.filePath("maps.pk3"), TestZip::zipBytes({ { "readme.txt" } }));
        m_window->SelectPage(Page::Pk3Explorer);
        const QString plain = m_window->title();
        QVERIFY(m_window->pk3Page()->LoadPK3(archive));
        m_window->SelectPage(Page::Client);
        m_window->SelectPage(Page::Pk3Explorer);
        QCOMPARE(m_window->title(), plain + " - " + archive);
        m_window->pk3Page()->ClosePK3();
        QCOMPARE(m_window->title(), plain);
    }

    void controlSubPagesMoveTheLowerButtons()
    {
        const int lowerTop = pageButton(3)->y();
        m_window->SelectPage(Page::Control);
        // The sub-page buttons stand between Control and the buttons below it, which move down.
        QVERIFY(subPageButton(0)->isVisible() && pageButton(2)->geometry().bottom() < subPageButton(0)->y());
        QVERIFY(subPageButton(3)->isVisible() && subPageButton(3)->geometry().bottom() < pageButton(3)->y());
        const QStringList subPages { "picMove", "picShoot", "picLook", "picMisc" };
        for (int index = 0; index < ControlSubPageCount; ++index) {
            QTest::mouseClick(subPageButton(index), Qt::LeftButton);
            for (int sub = 0; sub < ControlSubPageCount; ++sub)
                QCOMPARE(find(subPages[sub])->isVisible(), sub == index);
        }
        m_window->SelectPage(Page::Control); // again: it starts over on Move
        QVERIFY(find(subPages[0])->isVisible());
        m_window->SelectPage(Page::HudDisplay);
        QVERIFY(!subPageButton(0)->isVisible() && pageButton(3)->y() == lowerTop);
    }

    void pageTakesTheRoomItIsGiven()
    {
        // Grown, the window gives the page the room; the left bar keeps its width.
        m_window->SelectPage(Page::Renderer);
        QApplication::processEvents();
        auto *page = find<QScrollArea>(QStringLiteral("picGFX"));
        const QWidget *bar = find(QStringLiteral("picLBar"));
        const QSize pageBefore = page->size(), barBefore = bar->size();
        m_window->resize(m_window->size() + QSize(200, 150));
        QApplication::processEvents();
        QCOMPARE(page->size(), pageBefore + QSize(200, 150));
        QCOMPARE(bar->size(), barBefore + QSize(0, 150));
        // A larger font makes the page scroll rather than clip.
        QFont big = QApplication::font();
        big.setPointSize(big.pointSize() * 2);
        m_window->setFont(big);
        QApplication::processEvents();
        QVERIFY(page->verticalScrollBar()->isVisible() || page->horizontalScrollBar()->isVisible());
        QVERIFY(page->widget()->height() >= page->widget()->minimumSizeHint().height());
    }

    void clientPasswordDialog()
    {
        m_window->SelectPage(Page::Server);
        auto *button = find<QPushButton>(QStringLiteral("cmdClPas"));
        QVERIFY(!button->isEnabled());
        setChecked(QStringLiteral("chkPrivSv"), true);
        QVERIFY(button->isEnabled());
        m_window->document().setModified(false);
        const auto answer = [this, button](const QString &expectPrefill, const QString &type, bool ok) {
            whenModal(this, [=](QWidget *dialog) {
                auto *field = WindowTest::find<QLineEdit>(dialog, QStringLiteral("txtPass"));
                QCOMPARE(field->echoMode(), QLineEdit::Password);
                QCOMPARE(field->text(), expectPrefill);
                field->setText(type);
                WindowTest::find<QPushButton>(dialog, QString::fromLatin1(ok ? "cmdOK" : "cmdCancel"))->click();
            });
            button->click();
        };
        answer(QString(), QStringLiteral("s3cret"), true);
        answer(QStringLiteral("s3cret"), QStringLiteral("other"), false); // Cancel keeps the password
        answer(QStringLiteral("s3cret"), QString(), true);
        QVERIFY(!m_window->document().isModified()); // the password is no setting of the file
    }

    void closedModalFormGivesTheKeyboardBack()
    {
        // Whatever window had the keyboard went with the dialog, as when a window manager gives it to none: the
        // main window takes it back a moment later.
        QDialog dialog(m_window);
        whenModal(this, [](QWidget *modal) {
            auto *elsewhere = new QWidget(nullptr, Qt::Tool);
            elsewhere->setAttribute(Qt::WA_DeleteOnClose);
            elsewhere->show();
            elsewhere->activateWindow();
            QTRY_COMPARE(QApplication::activeWindow(), elsewhere);
            static_cast<QDialog *>(modal)->reject();
            elsewhere->close();
        });
        m_window->ShowForm(&dialog, true);
        QTRY_COMPARE(QApplication::activeWindow(), m_window);
    }

    void editsMarkModified()
    {
        // Every kind of control writes into its own row, and marks the document modified.
        ConfigDocument &doc = m_window->document();
        const QList<std::function<void()>> edits { [this] { find<QCheckBox>("chkBlood")->click(); },
            [this] { find<QRadioButton>("optLighting_1")->click(); },
            [this] { find<QComboBox>("cbResolution")->setCurrentIndex(5); },
            [this] { find<QSlider>("sldGamma")->setValue(15); },
            [this] { find<QLineEdit>("txtName")->setText("Visor"); },
            [this] { find<QCheckBox>("chkTiers_4")->click(); }, [this] { find<QCheckBox>("chkPure")->click(); } };
        for (const auto &edit : edits) {
            doc.setModified(false);
            edit();
            QVERIFY(doc.isModified());
        }
        QVERIFY(doc.state(u"optLighting") == 1 && doc.state(u"cbResolution") == 5 && doc.state(u"chkTiers", 4) == 1);
        QCOMPARE(doc.text(u"txtName"), QStringLiteral("Visor"));
    }

    void controlsFollowTheirRules()
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

    void emptiedNumberComesBack()
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
        // Typed digits still go in as they are; a letter does not.
        QTest::keyClicks(fov, QStringLiteral("5x"));
        QCOMPARE(doc.text(QStringLiteral("txtFOV")), QStringLiteral("905"));
        // A field that must hold a number turns "0" at once.
        find<QLineEdit>(QStringLiteral("txtForce"))->clear();
        QCOMPARE(doc.text(QStringLiteral("txtForce")), QStringLiteral("0"));
    }

    void keyButtonsDefineMoveAndDelete()
    {
        ConfigDocument &doc = m_window->document();
        m_window->SelectPage(Page::Control);
        auto *forward = find<Keys>(QStringLiteral("btnKeys_1")), *back = find<Keys>(QStringLiteral("btnKeys_2"));
        const auto click = [](Keys *keys, Qt::MouseButton button, bool right) {
            QTest::mouseClick(keys, button, {}, QPoint(keys->width() * (right ? 3 : 1) / 4, keys->height() / 2));
        };
        const auto press = [&](Keys *keys, bool right, Qt::Key key) {
            whenModal(this, [key](QWidget *dialog) {
                QVERIFY(qobject_cast<frmKey *>(dialog));
                QTest::keyClick(dialog, key);
            });
            click(keys, Qt::LeftButton, right);
        };
        press(forward, false, Qt::Key_W);
        QVERIFY(forward->Caption() == u"W" && doc.isModified());
        // W taken for Move Backward's second key leaves Move Forward.
        press(back, true, Qt::Key_W);
        QVERIFY(doc.bindings().at(2).secondKey == u"W" && back->Caption2() == u"W");
        QVERIFY(doc.bindings().at(1).firstKey.isEmpty() && forward->Caption().isEmpty());
        // Esc changes nothing, not even the modified flag; nor does the middle button.
        doc.setModified(false);
        press(back, true, Qt::Key_Escape);
        click(back, Qt::MiddleButton, true);
        QVERIFY(!doc.isModified() && doc.bindings().at(2).secondKey == u"W");
        // A right click deletes, also an empty half, and marks the document modified.
        click(back, Qt::RightButton, true);
        QVERIFY(doc.bindings().at(2).secondKey.isEmpty() && back->Caption2().isEmpty());
        doc.setModified(false);
        click(back, Qt::RightButton, false);
        QVERIFY(doc.isModified());
    }

    void corpusFilesShowAndWriteBack_data() { TestCorpus::addRows(); }
    void corpusFilesShowAndWriteBack()
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
                else if (auto *box = qobject_cast<QCheckBox *>(find(name)))
                    QCOMPARE(box->isChecked(), doc.state(row, k) != 0);
                else if (auto *list = qobject_cast<QComboBox *>(find(name)))
                    QCOMPARE(list->currentIndex(), doc.state(row));
                else if (auto *slider = qobject_cast<QSlider *>(find(name)))
                    QCOMPARE(slider->value(), doc.state(row));
                else if (auto *edit = qobject_cast<QLineEdit *>(find(name)))
                    QCOMPARE(edit->text(), doc.text(row, k));
                else if (r.isStored())
                    QCOMPARE(find<QPushButton>(name)->text(), doc.text(row, k));
            }
        }
        for (const ControlRules::Enablement &e : ControlRules::allEffects(doc))
            QCOMPARE(find(e.control)->isEnabled(), e.enabled);
        for (int action = 0; action < ActionTable::Count; ++action)
            QCOMPARE(
                find<Keys>(QStringLiteral("btnKeys_%1").arg(action))->Caption(), doc.bindings().at(action).firstKey);

        // The window's document writes what the command-line program writes.
        const QString cliOut = out.filePath(QStringLiteral("cli.cfg"));
        QCOMPARE(QProcess::execute(QStringLiteral(TARNWICK_CLI), { QStringLiteral("rewrite"), path, cliOut }), 0);
        QVERIFY2(ConfigWriter::fileBytes(doc, FileScope::Whole) == readTestFile(cliOut), qPrintable(path));
    }

private:
    template <typename T = QWidget> T *find(const QString &name) const { return WindowTest::find<T>(m_window, name); }
    MsgBoard *board() const { return find<MsgBoard>(QStringLiteral("MsgBoard1")); }
    QWidget *pageButton(int i) const { return find(QStringLiteral("btnMain_%1").arg(i)); }
    QWidget *subPageButton(int i) const { return find(QStringLiteral("btnCtrls_%1").arg(i)); }
    void setChecked(const QString &box, bool on) const
    {
        if (find<QCheckBox>(box)->isChecked() != on)
            find<QCheckBox>(box)->click();
    }

    /// The page containers, in page order.
    QList<QScrollArea *> pages() const
    {
        QList<QScrollArea *> containers;
        for (int page = 0; page < PageCount; ++page)
            containers << m_window->page(Page(page));
        return containers;
    }

    frmMain *m_window = nullptr;
};

QTEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
