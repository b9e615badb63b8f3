#include "PlayerModels.h"

#include "GameLaunch.h"
#include "TgaImage.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <algorithm>

namespace {

using PlayerModels::Model;
using PlayerModels::ModelTree;
using PlayerModels::Skin;

QString asciiUpper(const QString &text)
{
    QString upper = text;
    for (QChar &c : upper) {
        if (c >= u'a' && c <= u'z')
            c = QChar(c.unicode() - 'a' + 'A');
    }
    return upper;
}

bool lessByLabel(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) < 0;
}

// The skin an icon's file name names: "icon_" and the last four characters (".tga") taken off; empty when
// the name is no icon or holds no skin.
QString skinOf(const QString &fileName)
{
    if (fileName.size() <= 9 || !fileName.startsWith(QStringLiteral("icon_"), Qt::CaseInsensitive))
        return {};
    return fileName.mid(5, fileName.size() - 9);
}

class Collector
{
public:
    // Folders in name order without regard to case, links to folders left alone: a link can loop.
    static QStringList subfolders(const QString &folder, const QString &name = {})
    {
        QStringList paths;
        const QDir dir(folder);
        for (const QString &sub : dir.entryList(
                 QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks | QDir::Hidden, QDir::Name | QDir::IgnoreCase)) {
            if (name.isEmpty() || sub.compare(name, Qt::CaseInsensitive) == 0)
                paths.append(dir.filePath(sub));
        }
        return paths;
    }

    void collect(const QString &dataFolder, const std::function<void()> &betweenArchives)
    {
        for (const QString &models : subfolders(dataFolder, QStringLiteral("models"))) {
            for (const QString &players : subfolders(models, QStringLiteral("players"))) {
                for (const QString &model : subfolders(players)) {
                    const QDir dir(model);
                    const QStringList icons = dir.entryList(
                        { QStringLiteral("icon_*.tga") }, QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
                    for (const QString &icon : icons)
                        add(dir.dirName(), skinOf(icon), { {}, dir.filePath(icon), {} });
                }
            }
        }
        for (const QString &path : GameLaunch::archivesIn(dataFolder)) {
            cUnzip archive;
            archive.setZipFile(path);
            const auto each = [this, &archive](const cUnzip::ZipEntry &e) {
                addEntry(e.entryFolder, e.entryName, archive.ZipFile());
            };
            if (!archive.List(each, underPlayers))
                m_tree.unreadable.append(archive.ZipFile());
            if (betweenArchives)
                betweenArchives();
        }
    }

    ModelTree take()
    {
        std::stable_sort(m_tree.models.begin(), m_tree.models.end(),
            [](const Model &a, const Model &b) { return lessByLabel(a.label, b.label); });
        for (Model &model : m_tree.models) {
            std::stable_sort(model.skins.begin(), model.skins.end(),
                [](const Skin &a, const Skin &b) { return lessByLabel(a.label, b.label); });
        }
        return std::move(m_tree);
    }

private:
    // Whether an archive's entry may lie under models/players/ (in any case, either separator): most do not, and are
    // passed over before their names are made.
    static bool underPlayers(QByteArrayView name)
    {
        static constexpr char prefix[] = "models/players/";
        if (name.size() < qsizetype(sizeof prefix - 1))
            return false;
        for (qsizetype i = 0; i < qsizetype(sizeof prefix - 1); ++i) {
            const char c = name[i];
            if (prefix[i] == '/' ? c != '/' && c != '\\' : (c | 0x20) != prefix[i])
                return false;
        }
        return true;
    }

    // Only an icon right in a model's folder: models/players/MODEL/icon_SKIN.*
    void addEntry(const QString &folder, const QString &name, const QString &archive)
    {
        static const QString players = QStringLiteral("models\\players\\");
        const QString model = folder.mid(players.size());
        if (!folder.startsWith(players, Qt::CaseInsensitive) || model.isEmpty() || model.contains(u'\\'))
            return;
        const QString skin = skinOf(name);
        if (!skin.isEmpty()) // most of a model's files are no icon
            add(model, skin, { {}, QString(folder).replace(u'\\', u'/') + u'/' + name, archive });
    }

    void add(const QString &model, const QString &skin, Skin found)
    {
        if (skin.isEmpty())
            return;
        const QString modelKey = asciiUpper(model);
        auto at = m_models.find(modelKey);
        if (at == m_models.end()) {
            at = m_models.insert(modelKey, int(m_tree.models.size()));
            m_tree.models.append({ PlayerModels::wordCapitalised(model), {} });
        }
        const QString skinKey = modelKey + u'/' + asciiUpper(skin);
        if (m_skins.contains(skinKey))
            return;
        m_skins.insert(skinKey, true);
        found.label = PlayerModels::wordCapitalised(skin);
        m_tree.models[*at].skins.append(found);
    }

    ModelTree m_tree;
    QHash<QString, int> m_models; // upper-cased name: index in m_tree.models
    QHash<QString, bool> m_skins; // upper-cased "MODEL/SKIN"
};

} // namespace

namespace PlayerModels {

QString wordCapitalised(const QString &name)
{
    QString label = name;
    bool wordStart = true;
    for (QChar &c : label) {
        const char16_t u = c.unicode();
        if (wordStart && u >= u'a' && u <= u'z')
            c = QChar(u - u'a' + u'A');
        else if (!wordStart && u >= u'A' && u <= u'Z')
            c = QChar(u - u'A' + u'a');
        wordStart = u == u' ';
    }
    return label;
}

QString nodeKey(const Model &model, const Skin *skin)
{
    const QString key = QStringLiteral("MDL|") + asciiUpper(model.label);
    return skin ? key + u'_' + asciiUpper(skin->label) : key;
}

QString modelValue(const Model &model, const Skin *skin)
{
    return (skin ? model.label + u'/' + skin->label : model.label).toLower();
}

ModelTree ScanPlayerModels(const QString &gameFolder, const std::function<void()> &betweenArchives)
{
    Collector collector;
    for (const QString &folder : GameLaunch::dataFolders(gameFolder))
        collector.collect(folder, betweenArchives);
    return collector.take();
}

TgaImage::Picture IconReader::icon(const Skin &skin)
{
    // An icon is a few kilobytes; a damaged archive or a stray file claiming more is not read whole.
    constexpr qint64 limit = 16 * 1024 * 1024;
    if (skin.archive.isEmpty()) {
        QFile file(skin.icon);
        if (!file.open(QIODevice::ReadOnly) || file.size() > limit)
            return {};
        return TgaImage::decode(file.readAll());
    }
    if (m_archive.ZipFile() != skin.archive || m_archive.FileCount() == 0) {
        m_archive.setZipFile(skin.archive);
        if (!m_archive.Directory())
            return {};
    }
    for (int i = 1; i <= m_archive.FileCount(); ++i) {
        if (m_archive.Filename(i).size() + 1 + m_archive.FileDirectory(i).size() != skin.icon.size()
            || !skin.icon.endsWith(m_archive.Filename(i)))
            continue;
        if (QString(m_archive.FileDirectory(i)).replace(u'\\', u'/') + u'/' + m_archive.Filename(i) == skin.icon)
            return TgaImage::decode(m_archive.FileData(i, limit));
    }
    return {};
}

} // namespace PlayerModels
