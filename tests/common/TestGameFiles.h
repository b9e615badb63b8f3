// TestGameFiles: game folders the tests build from short descriptions of their files.
#pragma once

#include "TestFiles.h"
#include "TestZip.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

namespace TestGameFiles {

inline QStringList under(const QTemporaryDir &root, QStringList paths)
{
    for (QString &path : paths)
        path = root.filePath(path);
    return paths;
}

// Under `root`: "PATH" an empty file, "PATH*" a file that may run, "PATH>TARGET" a link,
// "PATH:E1,E2" an archive of those entries, "PATH!" a file that is no archive.
inline void make(const QTemporaryDir &root, const QStringList &files)
{
    for (const QString &item : files) {
        const QString path = root.filePath(item.section(QRegularExpression("[>:!*]"), 0, 0));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        if (item.contains(u'>')) {
            QVERIFY(QFile::link(item.section(u'>', 1), path));
        } else if (item.contains(u':')) {
            QList<TestZip::RawEntry> entries;
            for (const QString &entry : item.section(u':', 1).split(u','))
                entries.append({ entry.toUtf8(), "demo" });
            writeTestFile(path, TestZip::zipBytes(entries));
        } else {
            writeTestFile(path, item.endsWith(u'!') ? "not an archive" : "");
        }
        if (item.endsWith(u'*'))
            QFile(path).setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
}

} // namespace TestGameFiles
