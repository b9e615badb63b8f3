// What a player sees of the pages at the window's opening size: whole list entries.
#include "AppFont.h"
#include "frmMain.h"

#include <QApplication>
#include <QComboBox>
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

private:
    void showPage(int page) const;

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

void tst_PageLayouts::showPage(int page) const
{
    m_window->SelectPage(page);
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

QTEST_MAIN(tst_PageLayouts)
#include "tst_PageLayouts.moc"
