// What a player sees of the pages at the window's opening size: whole list entries, one key column on
// every Control sub-page.
#include "AppFont.h"
#include "ControlPage.h"
#include "Keys.h"
#include "frmMain.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QStyleOptionComboBox>
#include <QTest>

class tst_PageLayouts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void listsShowTheirLongestEntry();
    void keyButtonsShareOneColumn_data();
    void keyButtonsShareOneColumn();

private:
    void showPage(int page, int sub = 0) const;

    frmMain *m_window = nullptr;
};

void tst_PageLayouts::initTestCase()
{
    AppFont::install();
}

void tst_PageLayouts::init()
{
    m_window = new frmMain;
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    // The opening size less a desktop frame's border and caption.
    m_window->resize(695 - 8, 500 - 31);
    QApplication::processEvents();
}

void tst_PageLayouts::cleanup()
{
    delete m_window;
    m_window = nullptr;
}

void tst_PageLayouts::showPage(int page, int sub) const
{
    m_window->SelectPage(page);
    if (page == 2)
        m_window->SelectControlSubPage(sub);
    QApplication::processEvents();
}

void tst_PageLayouts::listsShowTheirLongestEntry()
{
    int lists = 0;
    for (int page = 0; page < frmMain::PK3Page; ++page) {
        showPage(page);
        for (QComboBox *list : m_window->findChildren<QComboBox *>()) {
            if (!list->isVisible())
                continue;
            ++lists;
            int longest = 0;
            QString entry;
            for (int i = 0; i < list->count(); ++i) {
                const int width = list->fontMetrics().horizontalAdvance(list->itemText(i));
                if (width > longest) {
                    longest = width;
                    entry = list->itemText(i);
                }
            }
            // The style draws the shown entry inside the edit field, a pixel in from each side.
            QStyleOptionComboBox option;
            option.initFrom(list);
            option.frame = list->hasFrame();
            const QRect field
                = list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list);
            QVERIFY2(field.width() - 2 >= longest,
                qPrintable(QStringLiteral("%1 shows %2 px of \"%3\" (%4 px)")
                               .arg(list->objectName())
                               .arg(field.width() - 2)
                               .arg(entry)
                               .arg(longest)));
        }
    }
    QCOMPARE(lists, 11);
}

void tst_PageLayouts::keyButtonsShareOneColumn_data()
{
    QTest::addColumn<int>("fontScale");
    QTest::newRow("desktop font") << 1;
    QTest::newRow("font twice as large") << 2;
}

void tst_PageLayouts::keyButtonsShareOneColumn()
{
    QFETCH(int, fontScale);
    if (fontScale != 1) {
        QFont font = QApplication::font();
        font.setPointSize(font.pointSize() * fontScale);
        m_window->setFont(font);
    }
    auto *control = m_window->findChild<ControlPage *>();
    QVERIFY(control);
    int column = -1;
    for (int sub = 0; sub < ControlPage::SubPageCount; ++sub) {
        showPage(2, sub);
        QWidget *page = control->subPage(sub);
        QRect keysAt; // where the sub-page's first key button stands; every other one stands below it
        for (int action = 0; action < ActionTable::Count; ++action) {
            QWidget *keys = control->keyButton(action);
            if (!page->isAncestorOf(keys))
                continue;
            const QRect at(keys->mapTo(page, QPoint(0, 0)), keys->size());
            if (keysAt.isNull())
                keysAt = at;
            QCOMPARE(at.left(), keysAt.left());
            QCOMPARE(at.width(), keysAt.width());
        }
        if (column < 0)
            column = keysAt.left();
        QVERIFY2(keysAt.left() == column,
            qPrintable(QStringLiteral("sub-page %1: keys at %2, not %3").arg(sub).arg(keysAt.left()).arg(column)));
        QLabel *heading = page->findChildren<QLabel *>(QRegularExpression(QStringLiteral("Heading$"))).value(0);
        QVERIFY(heading);
        const int headingCentre = heading->mapTo(page, heading->rect().center()).x();
        QVERIFY2(qAbs(headingCentre - keysAt.center().x()) <= 1,
            qPrintable(
                QStringLiteral("heading centred at %1, keys at %2").arg(headingCentre).arg(keysAt.center().x())));
    }
}

QTEST_MAIN(tst_PageLayouts)
#include "tst_PageLayouts.moc"
