// tarnwick-cli: Tarnwick's document operations without a window, for players' scripts and for tests.
#include "CliSession.h"

#include <QFile>

int main(int argc, char **argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args.append(QFile::decodeName(argv[i]));
    CliSession session(stdout, stderr);
    return session.run(args);
}
