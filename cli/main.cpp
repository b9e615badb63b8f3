// tarnwick-cli: Tarnwick's document operations without a window, for players' scripts and for tests.
#include "CliSession.h"

#include <QFile>

#include <csignal>

int main(int argc, char **argv)
{
    // With TZ unset, the C library looks at /etc/localtime again on every local time conversion, and
    // libzip converts every entry's time when it opens an archive: naming the same file in TZ means the
    // same zone, looked up once.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
#ifdef SIGXFSZ
    // A write over the file size limit fails and is said, as a full disk is, rather than ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args.append(QFile::decodeName(argv[i]));
    CliSession session(stdout, stderr);
    return session.run(args);
}
