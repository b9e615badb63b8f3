// TestCorpus: real players' configuration files to run the tests over — the few kept in tests/data/configs,
// always there, and the corpus beside the project, when it is there.
#pragma once

#include <QDir>
#include <QStringList>
#include <QTest>

namespace TestCorpus {

/// $TARNWICK_CORPUS when set, else the corpus folder beside the project.
inline QString corpusFolder()
{
    const QString set = qEnvironmentVariable("TARNWICK_CORPUS");
    return set.isEmpty() ? QStringLiteral(TARNWICK_CORPUS) : set;
}

/// The paths of the folder's *.cfg files by name; none when the folder is absent.
inline QStringList cfgFiles(const QString &folder)
{
    const QDir dir(folder);
    QStringList paths;
    for (const QString &name : dir.entryList({ QStringLiteral("*.cfg") }, QDir::Files, QDir::Name))
        paths.append(dir.filePath(name));
    return paths;
}

inline QStringList dataFiles()
{
    return cfgFiles(QStringLiteral(TARNWICK_TEST_DATA "/configs"));
}
inline QStringList corpusFiles()
{
    return cfgFiles(corpusFolder());
}

/// A "path" column with a row per file of tests/data and of the corpus; without a corpus, one row "corpus"
/// with an empty path, which TARNWICK_SKIP_WITHOUT_CORPUS skips.
inline void addRows()
{
    QTest::addColumn<QString>("path");
    for (const QString &path : dataFiles())
        QTest::newRow(qPrintable(QStringLiteral("data/") + QFileInfo(path).fileName())) << path;
    const QStringList corpus = corpusFiles();
    for (const QString &path : corpus)
        QTest::newRow(qPrintable(QStringLiteral("corpus/") + QFileInfo(path).fileName())) << path;
    if (corpus.isEmpty())
        QTest::newRow("corpus") << QString();
}

} // namespace TestCorpus

/// Skips the test when `paths` (a path or a list of them) is empty: the corpus is not beside the project.
#define TARNWICK_SKIP_WITHOUT_CORPUS(paths)                                                                            \
    do {                                                                                                               \
        if ((paths).isEmpty())                                                                                         \
            QSKIP(                                                                                                     \
                qPrintable(QStringLiteral("no corpus of players' configurations in ") + TestCorpus::corpusFolder()));  \
    } while (false)
