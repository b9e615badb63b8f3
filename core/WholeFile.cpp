#include "WholeFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

bool WriteWholeFile(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    if (error) {
        *error = QStringLiteral("Could not write \"%1\": %2")
                     .arg(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()), file.errorString());
    }
    file.cancelWriting();
    return false;
}
