#include "CommandLine.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace CommandLine {

namespace {

    // A normal file matching `path`: hidden files and folders don't count; a name with wildcards counts
    // when any normal file in its folder matches it.
    bool normalFileMatches(const QString &path)
    {
        const QFileInfo info(path);
        const QString name = info.fileName();
        if (name.contains(u'*') || name.contains(u'?')) {
            return !QDir(info.path()).entryList({ name }, QDir::Files).isEmpty();
        }
        return info.isFile() && !info.isHidden();
    }

    bool anyFileAt(const QString &path)
    {
        return QFileInfo(path).isFile();
    }

    struct PartialEnding
    {
        const char *ending;
        PartialKind kind;
        bool (*exists)(const QString &);
    };

    const PartialEnding partialEndings[] = {
        { "CTR", PartialKind::Controls, normalFileMatches },
        { "RNR", PartialKind::Renderer, normalFileMatches },
        { "HUD", PartialKind::HudDisplay, anyFileAt },
        { "RLG", PartialKind::Railgun, anyFileAt },
    };

} // namespace

Request classify(const QString &text)
{
    QString path = text.trimmed();
    if (path.isEmpty())
        return {};
    if (path.startsWith(u'"'))
        path.remove(0, 1);
    if (path.endsWith(u'"'))
        path.chop(1);
    if (path.endsWith(QLatin1StringView("\\OPEN"), Qt::CaseInsensitive)
        || path.endsWith(QLatin1StringView("/OPEN"), Qt::CaseInsensitive))
        return { Action::OpenDialog, QString(), std::nullopt };
    if (path.endsWith(QLatin1StringView("CFG"), Qt::CaseInsensitive)
        || (path.endsWith(QLatin1StringView("CONFIG"), Qt::CaseInsensitive) && normalFileMatches(path)))
        return { Action::OpenConfig, path, std::nullopt };
    for (const PartialEnding &p : partialEndings) {
        if (path.endsWith(QLatin1StringView(p.ending), Qt::CaseInsensitive) && p.exists(path))
            return { Action::Import, path, p.kind };
    }
    return {};
}

QString joinArguments(const QStringList &arguments)
{
    return arguments.mid(1).join(u' ');
}

} // namespace CommandLine
