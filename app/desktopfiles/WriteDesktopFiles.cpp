// tarnwick-desktopfiles FOLDER PROGRAM: writes the desktop entry (running PROGRAM), the MIME package and the icons
// into the data folder FOLDER, laid out as under share/, for an installed copy to come with. They are the files the
// program writes into a user's data folder when nothing installed holds them, so the two never differ.
#include "FileAssociations.h"

#include <QString>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: tarnwick-desktopfiles FOLDER PROGRAM\n", stderr);
        return 2;
    }
    const QString error
        = FileAssociations::installDataFiles({ QString::fromLocal8Bit(argv[2]) }, QString::fromLocal8Bit(argv[1]));
    if (!error.isEmpty()) {
        std::fprintf(stderr, "tarnwick-desktopfiles: %s\n", qPrintable(error));
        return 1;
    }
    return 0;
}
