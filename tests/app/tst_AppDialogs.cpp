// Tests for the small dialogs: the password prompt and the about box.
#include "LinkLabel.h"
#include "frmAbout.h"
#include "frmPassword.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class tst_AppDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void passwordIsNotShown()
    {
        // What OK and Cancel do with it is the window's: tst_MainWindow::clientPasswordDialog.
        frmPassword dialog;
        QCOMPARE(dialog.findChild<QLineEdit *>(QStringLiteral("txtPass"))->echoMode(), QLineEdit::Password);
    }

    void aboutReportsItsLinksAndClosesOnOK()
    {
        QCOMPARE(frmAbout::programNameText(0, 92), QStringLiteral("Tarnwick\nv0.92 (BETA)"));
        frmAbout dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QSignalSpy spy(&dialog, &frmAbout::linkActivated);
        const QList<LinkLabel *> links = dialog.findChildren<LinkLabel *>();
        QVERIFY(!links.isEmpty());
        for (LinkLabel *link : links) {
            QVERIFY(link->toolTip().contains(link->text()));
            QTest::mouseClick(link, Qt::LeftButton, {}, QPoint(3, 3));
            QCOMPARE(spy.size(), 1);
            QCOMPARE(spy.takeFirst().at(0).toUrl().scheme(), QStringLiteral("mailto"));
        }
        QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("cmdOK")), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }
};

QTEST_MAIN(tst_AppDialogs)
#include "tst_AppDialogs.moc"
