#include "FuzzTargets.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <array>
#include <memory>

namespace FuzzTargets {

std::span<const Target> all()
{
    static constexpr std::array<Target, 8> targets { {
        { "reader", reader },
        { "rewrite", rewrite },
        { "bindline", bindLines },
        { "ini", settingsFile },
        { "cmdline", commandLine },
        { "payload", handOver },
        { "pk3", pk3 },
        { "tga", tga },
    } };
    return targets;
}

const Target *find(QStringView name)
{
    for (const Target &target : all()) {
        if (name == QLatin1StringView(target.name))
            return &target;
    }
    return nullptr;
}

QString scratchFolder()
{
    static const std::unique_ptr<QTemporaryDir> folder = [] {
        // Every input writes a file or two: memory is quicker than a disk, and spares it. A temporary folder
        // chosen in TMPDIR (scripts/fuzz chooses one) wins.
        const QFileInfo shm(QStringLiteral("/dev/shm"));
        const bool useShm = qEnvironmentVariableIsEmpty("TMPDIR") && shm.isDir() && shm.isWritable();
        const QString base = useShm ? shm.filePath() : QDir::tempPath();
        return std::make_unique<QTemporaryDir>(base + QStringLiteral("/tarnwick-fuzz-XXXXXX"));
    }();
    return folder->path();
}

QString scratchFile(const QString &name, QByteArrayView bytes)
{
    const QString path = QDir(scratchFolder()).filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(bytes.data(), bytes.size()) != bytes.size()) {
        qFatal("fuzz: can't write %s: %s", qPrintable(path), qPrintable(file.errorString()));
    }
    return path;
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace FuzzTargets
