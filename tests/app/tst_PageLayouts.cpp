// What a player sees of the pages at the window's opening size: every page whole without scrolling, whole list
// entries, one key column on every Control sub-page, units beside their fields.
#include "AppFont.h"
#include "ControlPage.h"
#include "Keys.h"
#include "WindowTestSupport.h"

Q_DECLARE_METATYPE(Page)

class tst_PageLayouts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AppFont::install(); }

    void init()
    {
        m_window = WindowTest::shownWindow();
        // The opening size less a desktop frame's border and caption.
        m_window->resize(695 - 8, 500 - 31);
        QApplication::processEvents();
    }

    void cleanup() { delete m_window; }

    void pagesFitWithoutScrolling()
    {
        QList<QScrollArea *> pages;
        for (int page = 0; page < PageCount; ++page)
            pages << m_window->page(Page(page));
        for (int page = 0; page < int(Page::Pk3Explorer); ++page) {
            for (int sub = 0; sub < (Page(page) == Page::Control ? ControlSubPageCount : 1); ++sub) {
                showPage(Page(page), sub);
                const QScrollArea *area = pages[page];
                QVERIFY2(!area->verticalScrollBar()->isVisible() && !area->horizontalScrollBar()->isVisible(),
                    qPrintable(QStringLiteral("page %1, sub-page %2").arg(page).arg(sub)));
            }
        }
    }

    void listsShowTheirLongestEntry()
    {
        int lists = 0;
        for (int page = 0; page < int(Page::Pk3Explorer); ++page) {
            showPage(Page(page));
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
                QVERIFY2(field.width() - 2 >= longest, qPrintable(list->objectName() + u' ' + entry));
            }
        }
        QCOMPARE(lists, 11);
    }

    void keyButtonsShareOneColumn_data()
    {
        QTest::addColumn<int>("fontScale");
        QTest::newRow("desktop font") << 1;
        QTest::newRow("font twice as large") << 2;
    }
    void keyButtonsShareOneColumn()
    {
        QFETCH(int, fontScale);
        QFont font = QApplication::font();
        font.setPointSize(font.pointSize() * fontScale);
        m_window->setFont(font);
        m_window->page(Page::Control);
        auto *control = m_window->findChild<ControlPage *>();
        QVERIFY(control);
        int column = -1;
        for (int sub = 0; sub < ControlSubPageCount; ++sub) {
            showPage(Page::Control, sub);
            QWidget *page = control->subPage(ControlSubPage(sub));
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
                qPrintable(QStringLiteral("heading at %1, keys at %2").arg(headingCentre).arg(keysAt.center().x())));
        }
    }

    void unitsFollowTheirFields_data()
    {
        QTest::addColumn<Page>("page");
        QTest::addColumn<QString>("field");
        QTest::newRow("force respawn") << Page::Client << "txtForce";
        QTest::newRow("message time") << Page::HudDisplay << "txtNTime";
    }
    void unitsFollowTheirFields()
    {
        QFETCH(Page, page);
        QFETCH(QString, field);
        showPage(page);
        auto *edit = WindowTest::find<QLineEdit>(m_window, field);
        const QRect fieldAt(edit->mapTo(m_window, QPoint(0, 0)), edit->size());
        // The unit is the label "sec" on the field's row.
        const QLabel *label = nullptr;
        for (const QLabel *candidate : m_window->findChildren<QLabel *>()) {
            if (candidate->isVisible() && candidate->text() == u"sec"
                && qAbs(candidate->mapTo(m_window, candidate->rect().center()).y() - fieldAt.center().y()) <= 2)
                label = candidate;
        }
        QVERIFY(label);
        const int gap = label->mapTo(m_window, QPoint(0, 0)).x() - fieldAt.right();
        QVERIFY2(gap > 0 && gap <= 10, qPrintable(QStringLiteral("the unit begins %1 px after its field").arg(gap)));
    }

private:
    void showPage(Page page, int sub = 0) const
    {
        m_window->SelectPage(page);
        if (page == Page::Control)
            m_window->SelectControlSubPage(ControlSubPage(sub));
        QApplication::processEvents();
    }

    frmMain *m_window = nullptr;
};

QTEST_MAIN(tst_PageLayouts)
#include "tst_PageLayouts.moc"
