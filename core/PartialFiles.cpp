#include "PartialFiles.h"

#include "CfgText.h"
#include "ConfigReader.h"
#include "ConfigWriter.h"

#include <array>

namespace {

struct KindInfo
{
    FileScope scope;
    const char *extension;
    const char *name;
    const char *description;
};

const std::array<KindInfo, 4> kinds { {
    { FileScope::Controls, "ctr", "controls", "Controls Settings File" },
    { FileScope::Renderer, "rnr", "renderer", "Renderer Settings File" },
    { FileScope::HudDisplay, "hud", "hud", "HUD Display Settings File" },
    { FileScope::Railgun, "rlg", "railgun", "Railgun Settings File" },
} };

const KindInfo &info(PartialKind kind)
{
    return kinds.at(size_t(kind));
}

QString describedPattern(PartialKind kind)
{
    const QString ext = QString::fromLatin1(info(kind).extension);
    return QString::fromLatin1(info(kind).description) + QStringLiteral(" (*.") + ext + QStringLiteral(")|*.") + ext;
}

} // namespace

namespace PartialFiles {

FileScope scopeOf(PartialKind kind)
{
    return info(kind).scope;
}

QString extension(PartialKind kind)
{
    return u'.' + QString::fromLatin1(info(kind).extension);
}

QString exportFilter(PartialKind kind)
{
    return describedPattern(kind) + QStringLiteral("|All Files (*.*)|*.*");
}

QString importFilter(PartialKind kind)
{
    return describedPattern(kind) + QStringLiteral("|Configuration File (*.cfg)|*.cfg");
}

QString defaultExtension(PartialKind kind)
{
    return CfgText::asciiUpper(QString::fromLatin1(info(kind).extension));
}

std::optional<PartialKind> kindFromName(const QString &name)
{
    for (size_t i = 0; i < kinds.size(); ++i) {
        if (CfgText::equalsNoCase(name, QString::fromLatin1(kinds[i].name)) || name == QString::number(i))
            return PartialKind(i);
    }
    return std::nullopt;
}

} // namespace PartialFiles

bool ExportFile(ConfigDocument &doc, const QString &path, PartialKind kind, QString *error)
{
    // Another file is written, not the document: what it had not saved is still unsaved.
    return WriteCfgFile(doc, path, PartialFiles::scopeOf(kind), error);
}

bool ImportFile(ConfigDocument &doc, const QString &path, PartialKind kind, QString *error)
{
    if (!ReadCfgFile(doc, path, PartialFiles::scopeOf(kind), error))
        return false;
    doc.setModified(true);
    return true;
}
