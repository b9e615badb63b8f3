// Tests for the small dialogs: the password prompt and the about box.
#include "LinkLabel.h"
#include "frmAbout.h"
#include "frmPassword.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class tst_AppDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void passwordPrefillsTheField();
    void passwordButtons_data();
    void passwordButtons();
    void programName_data();
    void programName();
    void aboutShowsTheProgramName();
    void creditLinksAreReported_data();
    void creditLinksAreReported();
    void aboutClosesOnOK();
};

void tst_AppDialogs::passwordPrefillsTheField()
{
    frmPassword dialog;
    dialog.setPassword(QStringLiteral("s3cret"));
    auto *txtPass = dialog.findChild<QLineEdit *>(QStringLiteral("txtPass"));
    QVERIFY(txtPass);
    QCOMPARE(txtPass->text(), QStringLiteral("s3cret"));
    QCOMPARE(txtPass->echoMode(), QLineEdit::Password);
    QCOMPARE(dialog.password(), QStringLiteral("s3cret"));
}

void tst_AppDialogs::passwordButtons_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("OK accepts") << "cmdOK" << int(QDialog::Accepted);
    QTest::newRow("Cancel rejects") << "cmdCancel" << int(QDialog::Rejected);
}

void tst_AppDialogs::passwordButtons()
{
    QFETCH(QString, button);
    QFETCH(int, result);
    frmPassword dialog;
    dialog.setPassword(QStringLiteral("old"));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto *txtPass = dialog.findChild<QLineEdit *>(QStringLiteral("txtPass"));
    txtPass->setFocus();
    txtPass->selectAll();
    QTest::keyClicks(txtPass, QStringLiteral("new pass"));
    QTest::mouseClick(dialog.findChild<QPushButton *>(button), Qt::LeftButton);
    QCOMPARE(dialog.result(), result);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.password(), QStringLiteral("new pass"));
}

void tst_AppDialogs::programName_data()
{
    QTest::addColumn<int>("major");
    QTest::addColumn<int>("minor");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0.92") << 0 << 92 << "Tarnwick\nv0.92 (BETA)";
    QTest::newRow("1.0") << 1 << 0 << "Tarnwick\nv1.0 (BETA)";
}

void tst_AppDialogs::programName()
{
    QFETCH(int, major);
    QFETCH(int, minor);
    QFETCH(QString, expected);
    QCOMPARE(frmAbout::programNameText(major, minor), expected);
}

void tst_AppDialogs::aboutShowsTheProgramName()
{
    frmAbout dialog;
    auto *lblProgName = dialog.findChild<QLabel *>(QStringLiteral("lblProgName"));
    QVERIFY(lblProgName);
    QVERIFY(lblProgName->text().startsWith(QStringLiteral("Tarnwick\nv")));
    QVERIFY(lblProgName->text().endsWith(QStringLiteral(" (BETA)")));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("About Tarnwick"));
}

void tst_AppDialogs::creditLinksAreReported_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QUrl>("url");
    QTest::newRow("author") << "The Tarnwick developers" << QUrl(QStringLiteral("mailto:developers@tarnwick.invalid"));
    QTest::newRow("thanks") << "Everyone who shared a config"
                            << QUrl(QStringLiteral("mailto:players@tarnwick.invalid"));
}

void tst_AppDialogs::creditLinksAreReported()
{
    QFETCH(QString, name);
    QFETCH(QUrl, url);
    frmAbout dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    LinkLabel *link = nullptr;
    for (LinkLabel *candidate : dialog.findChildren<LinkLabel *>()) {
        if (candidate->text() == name)
            link = candidate;
    }
    QVERIFY(link);
    QVERIFY(link->toolTip().contains(name));
    QSignalSpy spy(&dialog, &frmAbout::linkActivated);
    QTest::mouseClick(link, Qt::LeftButton, {}, QPoint(3, 3));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toUrl(), url);
}

void tst_AppDialogs::aboutClosesOnOK()
{
    frmAbout dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("cmdOK")), Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

QTEST_MAIN(tst_AppDialogs)
#include "tst_AppDialogs.moc"
