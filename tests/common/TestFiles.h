// TestFiles: small files the tests write into their temporary folders and read back.
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

/// The whole file; empty when it can't be read.
inline QByteArray readTestFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
