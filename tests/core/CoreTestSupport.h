// Helpers shared by the core tests: reading bytes as a file, and looking at what the writer would write.
#pragma once

#include "ConfigDocument.h"
#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"
#include "SettingMapping.h"
#include "TestFiles.h"

#include <QTemporaryDir>
#include <QTest>

namespace TestSupport {

/// Reads `bytes` as a file's content into the document for the scope.
inline bool readBytes(ConfigDocument &doc, const QByteArray &bytes, FileScope scope = FileScope::Whole)
{
    QTemporaryDir dir;
    return ReadCfgFile(doc, writeTestFile(dir.filePath(QStringLiteral("test.cfg")), bytes), scope);
}

/// The value the writer would put in the setting line of `name`.
inline QString written(const ConfigDocument &doc, const char *name)
{
    const SettingCatalog &catalog = SettingCatalog::instance();
    const int index = catalog.indexOfSetting(QString::fromLatin1(name));
    Q_ASSERT(index >= 0);
    const SettingRow &row = catalog.row(index);
    return SettingMapping::fileValue(row, &doc.values()[row.firstSlot]);
}

inline int rowOf(const char *control)
{
    return SettingCatalog::instance().indexOfControl(QString::fromLatin1(control));
}

/// The output of a whole-file write, one string a line (without the CR LF ends).
inline QStringList wholeFileLines(const ConfigDocument &doc)
{
    QString text = QString::fromLatin1(ConfigWriter::fileBytes(doc, FileScope::Whole));
    text.chop(2);
    return text.split(QStringLiteral("\r\n"));
}

/// A document as a freshly started program holds it.
struct StartDocument : ConfigDocument
{
    StartDocument() { StartUpDocument(*this); }
};

} // namespace TestSupport
