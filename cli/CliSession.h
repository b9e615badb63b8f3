// CliSession: tarnwick-cli's commands, run on one document that starts as a freshly started program's.
#pragma once

#include "ConfigDocument.h"
#include "GameLaunch.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdio>
#include <optional>

class CliSession
{
public:
    enum Exit { Success = 0, Failure = 1, Usage = 2, LinesDropped = 3, NoPicture = 3 };

    CliSession(FILE *out, FILE *err);

    /// Runs a command line (without the program name) and returns the exit code.
    int run(const QStringList &args);
    /// Runs the commands of a script, one a line; stops at the first that fails.
    int runScript(const QByteArray &script);

    static QString usage();

private:
    int runLine(const QString &line);
    int open(const QString &path);
    int save(const QString &path);
    int exportKind(const QString &kind, const QString &path);
    int importKind(const QString &kind, const QString &path);
    int newDocument(const QString &mode, const QString &name);
    int set(const QString &name, const QString &value);
    int setvar(const QString &name, const QString &value);
    int unsetvar(const QString &name);
    int bind(const QString &index, const QString &slot, const QString &key);
    int unbind(const QString &index, const QString &slot);
    int print();
    int listArchive(const QString &path);
    int check(const QString &path);
    int demos(const QString &gameFolder);
    int models(const QString &gameFolder, bool icons);
    int find(const QStringList &roots);
    static QString skippedArchives(const QStringList &paths);
    int start(const QString &gameFolder, const QString &demo);
    std::optional<GameLaunch::DemoList> demoList(const QString &gameFolder);
    int writeLines(const QStringList &lines);

    int fail(const QString &message);
    int usageError(const QString &message);

    ConfigDocument m_doc;
    FILE *m_out;
    FILE *m_err;
    int m_line = 0; // script line being run, for messages
};
