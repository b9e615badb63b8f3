// TestFiles: small files the tests write into their temporary folders.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QtGlobal>

/// Writes `bytes` to `path` and returns the path; a test that can't write its own file stops at once.
inline QString writeTestFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}
