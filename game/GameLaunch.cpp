#include "GameLaunch.h"

#include "GameFolder.h"
#include "cUnzip.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>

#include <memory>
#include <optional>

namespace {

using GameLaunch::Demo;
using GameLaunch::DemoList;

#ifdef Q_OS_WIN
constexpr bool windowsHost = true;
#else
constexpr bool windowsHost = false;
#endif

// The program and what goes before the game's own parameters: the engine alone, or wine and a Windows build.
QStringList launcher(const QString &gameFolder)
{
    const QString first = GameFolder::executableIn(gameFolder);
    if (windowsHost || first.isEmpty())
        return first.isEmpty() ? QStringList() : QStringList { first };
    QString windowsBuild;
    for (const QString &name : GameFolder::executableNames()) {
        const QFileInfo program(gameFolder + u'/' + name);
        const bool forWindows = name.endsWith(QStringLiteral(".exe"), Qt::CaseInsensitive);
        if (!program.isFile())
            continue;
        if (!forWindows && program.isExecutable())
            return { program.filePath() };
        if (forWindows && windowsBuild.isEmpty())
            windowsBuild = program.filePath();
    }
    const QString wine = QStandardPaths::findExecutable(QStringLiteral("wine"));
    if (!windowsBuild.isEmpty() && !wine.isEmpty())
        return { wine, windowsBuild };
    return { first };
}

// A demo file's entry: ".dm3" as the original game records them, ".dm_" and the protocol's number as current
// engines do.
std::optional<Demo> demoOf(const QString &fileName)
{
    // Most names of an archive are no demo's: their extension, if any, does not start with "dm".
    const qsizetype dot = fileName.lastIndexOf(u'.');
    if (dot < 1 || fileName.size() - dot < 4 || fileName.at(dot + 1).toLower() != u'd'
        || fileName.at(dot + 2).toLower() != u'm')
        return std::nullopt;
    static const QRegularExpression pattern(
        QStringLiteral("^(.+)\\.(?:(dm3)|dm_[0-9]+)\\z"), QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(fileName);
    if (!match.hasMatch())
        return std::nullopt;
    if (match.capturedLength(2) == 0)
        return Demo { fileName, fileName };
    return Demo { match.captured(1), match.captured(1) + QStringLiteral(".dm3") };
}

// Whether an archive's entry may be a demo, from its stored name: the extension of its last part starts with "dm"
// in any case (the last dot of the whole name is its file name's, when that has one). The rest are passed over
// before their names are made.
bool mayBeDemo(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    return dot >= 0 && name.size() - dot >= 3 && (name[dot + 1] | 0x20) == 'd' && (name[dot + 2] | 0x20) == 'm';
}

class Collector
{
public:
    explicit Collector(const std::function<void()> &betweenArchives)
        : m_betweenArchives(betweenArchives)
    { }

    // The loose demos, then the archives' demos, each folder in name order without regard to case.
    void collect(const QString &dataFolder)
    {
        const QDir::Filters files = QDir::Files | QDir::Hidden;
        const QDir::SortFlags byName = QDir::Name | QDir::IgnoreCase;
        for (const QString &name : QDir(dataFolder + QStringLiteral("/demos")).entryList(files, byName))
            add(name);
        for (const QString &path : GameLaunch::archivesIn(dataFolder)) {
            cUnzip archive;
            archive.setZipFile(path);
            if (!archive.List([this](const cUnzip::ZipEntry &e) { add(e.entryName); }, mayBeDemo))
                m_list.unreadable.append(archive.ZipFile());
            if (m_betweenArchives)
                m_betweenArchives();
        }
    }

    DemoList take() { return std::move(m_list); }

private:
    void add(const QString &fileName)
    {
        const std::optional<Demo> demo = demoOf(fileName);
        if (demo && !m_names.contains(demo->name)) {
            m_names.insert(demo->name);
            m_list.demos.append(*demo);
        }
    }

    const std::function<void()> &m_betweenArchives;
    DemoList m_list;
    QSet<QString> m_names;
};

} // namespace

namespace GameLaunch {

std::function<void()> eventLoopTurns(int intervalMs)
{
    auto last = std::make_shared<QElapsedTimer>();
    return [last, intervalMs] {
        if (last->isValid() && !last->hasExpired(intervalMs))
            return;
        last->start();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    };
}

StartRequest gameStartRequest(const QString &gameFolder, const QStringList &parameters)
{
    // Absolute, since the program path must still hold once the game folder is the working folder.
    const QString folder = gameFolder.isEmpty() ? gameFolder : QDir(gameFolder).absolutePath();
    QStringList command = launcher(folder);
    const QString program = command.isEmpty() ? QString() : command.takeFirst();
    return { program, command + parameters, folder };
}

bool StartGame(const QString &gameFolder, const QStringList &parameters, QString *error)
{
    const StartRequest request = gameStartRequest(gameFolder, parameters);
    QProcess process;
    process.setProgram(request.program);
    process.setArguments(request.arguments);
    process.setWorkingDirectory(request.workingFolder);
    if (!request.program.isEmpty() && process.startDetached())
        return true;
    if (error) {
        *error = request.program.isEmpty()
            ? QStringLiteral("\"%1\" holds no game program").arg(QDir::toNativeSeparators(gameFolder))
            : process.errorString();
    }
    return false;
}

QString homeDataFolder()
{
    return QDir::homePath() + QStringLiteral("/.q3a/baseq3");
}

QStringList dataFolders(const QString &gameFolder)
{
    const QFileInfo data(GameFolder::dataFolder(gameFolder));
    if (!data.isDir())
        return {};
    const QFileInfo home(homeDataFolder());
    if (home.isDir() && home.canonicalFilePath() != data.canonicalFilePath())
        return { data.filePath(), home.filePath() };
    return { data.filePath() };
}

QStringList archivesIn(const QString &folder)
{
    // Name order without regard to case, so every platform lists alike; links to archives count, since
    // packaged games link their PK3s into the folder.
    const QDir dir(folder);
    QStringList paths;
    for (const QString &name :
        dir.entryList({ QStringLiteral("*.pk3") }, QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase))
        paths.append(dir.filePath(name));
    return paths;
}

DemoList FillDemoList(const QString &gameFolder, const std::function<void()> &betweenArchives)
{
    Collector collector(betweenArchives);
    for (const QString &folder : dataFolders(gameFolder))
        collector.collect(folder);
    return collector.take();
}

QStringList timedemoParameters(const Demo &demo)
{
    return { QStringLiteral("+timedemo"), QStringLiteral("1"), QStringLiteral("+demo"), demo.file };
}

} // namespace GameLaunch
