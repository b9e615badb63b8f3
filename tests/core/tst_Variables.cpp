// Every variable by name: setvar and unsetvar on kept lines and settings, and the table that follows the document.
#include "CoreTestSupport.h"
#include "Variables.h"
#include "VariablesModel.h"

#include <QSignalSpy>

using namespace TestSupport;

class tst_Variables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setAndUnset_data()
    {
        QTest::addColumn<QStringList>("command"); // setvar NAME VALUE or unsetvar NAME
        QTest::addColumn<bool>("done");
        QTest::addColumn<QStringList>("kept"); // the kept lines afterwards
        QTest::addColumn<QString>("fov"); // what the writer writes for cg_fov afterwards
        const QStringList before = keptBefore();
        const auto row = [&](const char *tag, const QStringList &command, bool done, const QStringList &kept,
                             const char *fov = "90") {
            QTest::newRow(tag) << command << done << kept << QString::fromLatin1(fov);
        };
        row("the last line of a name, in its place", { "setvar", "FOO", "3" }, true,
            { "seta foo 1", "SET Bar \"a b\"", "seta foo \"3\"", "seta cg_fov 130" });
        row("set stays set", { "setvar", "bar", "x y" }, true,
            { "seta foo 1", "set Bar \"x y\"", "seta foo 2 // last", "seta cg_fov 130" });
        row("a new name is appended", { "setvar", "zed", "" }, true, before + QStringList { "seta zed \"\"" });
        row("a setting takes the value through its rule", { "setvar", "CG_FOV", "80" }, true, before, "90");
        row("a setting takes its value, its kept line stays", { "setvar", "cg_fov", "120" }, true, before, "120");
        row("name with a blank", { "setvar", "a b", "1" }, false, before);
        row("name with a quote", { "setvar", "a\"b", "1" }, false, before);
        row("no name", { "setvar", "", "1" }, false, before);
        row("value with a quote", { "setvar", "foo", "a\"b" }, false, before);
        row("value with a comment", { "setvar", "foo", "a//b" }, false, before);
        row("value with a line break", { "setvar", "foo", "a\nb" }, false, before);
        row("unset removes every line of the name", { "unsetvar", "Foo" }, true,
            { "SET Bar \"a b\"", "seta cg_fov 130" });
        row("unset a setting", { "unsetvar", "cg_fov" }, false, before);
        row("unset a name no line sets", { "unsetvar", "baz" }, false, before);
    }

    void setAndUnset()
    {
        QFETCH(QStringList, command);
        QFETCH(bool, done);
        QFETCH(QStringList, kept);
        QFETCH(QString, fov);
        StartDocument doc;
        doc.setKeptLines(keptBefore());
        QString error;
        const bool result = command[0] == u"setvar"
            ? Variables::setVariable(doc, command[1], command[2], &error) != Variables::Change::Refused
            : Variables::unsetVariable(doc, command[1], &error);
        QCOMPARE(result, done);
        QCOMPARE(error.isEmpty(), done);
        QCOMPARE(doc.keptLines(), kept);
        QCOMPARE(written(doc, "cg_fov"), fov);
        QCOMPARE(doc.isModified(), kept != keptBefore() || fov != u"90");
    }

    // The table: settings first, then the kept lines; kept values edited, refused, removed; the filter and the sort.
    void tableFollowsTheDocument()
    {
        StartDocument doc;
        QVERIFY(readBytes(doc, "seta cg_fov 100\r\nseta zz_last \"1\"\r\nset Aa_first 2\r\nseta cg_DrawMine x\r\n"));
        VariablesModel model(doc);
        VariablesFilter filter(&model);
        const int settings = model.settingCount();
        QCOMPARE(model.rowCount(), settings + 3);
        const int fov = model.rowOf(u"CG_FOV");
        QCOMPARE(model.text(fov, VariablesModel::ValueColumn), QStringLiteral("100"));
        QCOMPARE(model.text(settings + 1, VariablesModel::KeywordColumn), QStringLiteral("set"));

        // A kept value rewrites its line; one the line can't hold is refused and said.
        doc.setModified(false);
        QVERIFY(model.setData(model.index(settings, VariablesModel::ValueColumn), QStringLiteral("two words")));
        QCOMPARE(doc.keptLines().at(0), QStringLiteral("seta zz_last \"two words\""));
        QVERIFY(doc.isModified());
        QSignalSpy refused(&model, &VariablesModel::editRefused);
        QVERIFY(!model.setData(model.index(settings, VariablesModel::ValueColumn), QStringLiteral("a\"b")));
        QCOMPARE(refused.size(), 1);
        QVERIFY(!(model.flags(model.index(settings, VariablesModel::NameColumn)) & Qt::ItemIsEditable));

        // Sorted by name without regard to case; the filter looks at names and values, without regard to case.
        QCOMPARE(filter.index(0, 0).data().toString(), QStringLiteral("Aa_first"));
        filter.setFilterText(QStringLiteral("DRAWMINE"));
        QCOMPARE(filter.rowCount(), 1);
        filter.setFilterText(QStringLiteral("TWO WORDS"));
        QCOMPARE(filter.index(0, 0).data().toString(), QStringLiteral("zz_last"));

        // Rows come and go with the kept lines; settings can't be removed.
        QVERIFY(!model.removeRows(fov, 1));
        QVERIFY(model.removeRows(settings, 2));
        QCOMPARE(doc.keptLines(), QStringList { "seta cg_DrawMine x" });
        doc.appendKeptLine(QStringLiteral("seta new 1"));
        QCOMPARE(model.text(model.rowCount() - 1, VariablesModel::NameColumn), QStringLiteral("new"));
    }

private:
    static QStringList keptBefore()
    {
        return { "seta foo 1", "SET Bar \"a b\"", "seta foo 2 // last", "seta cg_fov 130" };
    }
};

QTEST_GUILESS_MAIN(tst_Variables)
#include "tst_Variables.moc"
