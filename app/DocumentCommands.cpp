#include "DocumentCommands.h"

#include "ConfigDocument.h"
#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"
#include "GameFolder.h"
#include "PartialFiles.h"
#include "Prompts.h"
#include "ShellWindow.h"
#include "WaitCursor.h"
#include "frmLoad.h"
#include "frmNew.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace {

bool hasConfigExtension(const QString &path)
{
    return path.endsWith(QLatin1StringView(".cfg"), Qt::CaseInsensitive)
        || path.endsWith(QLatin1StringView(".config"), Qt::CaseInsensitive);
}

} // namespace

DocumentCommands::DocumentCommands(ShellWindow &shell, ConfigDocument &doc, QObject *parent)
    : QObject(parent)
    , m_shell(shell)
    , m_doc(doc)
{ }

bool DocumentCommands::saveChangesPrompt(const QString &ending)
{
    if (!m_doc.isModified())
        return true;
    const QString question
        = QStringLiteral("Save changes to configuration file \n\"%1\"%2").arg(m_doc.displayName(), ending);
    switch (Prompts::ask(m_shell.widget(), Prompts::programTitle(), question,
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Question)) {
    case QMessageBox::Yes:
        SaveCfg();
        return !m_saveCancelled;
    case QMessageBox::No:
        return true;
    default:
        return false;
    }
}

void DocumentCommands::newCommand()
{
    if (!saveChangesPrompt())
        return;
    if (!m_new)
        m_new = new frmNew(m_shell.widget());
    m_new->prepare();
    if (m_shell.ShowForm(m_new, true) != QDialog::Accepted)
        return;
    NewCfg(m_doc, m_new->documentName(), m_new->mode());
}

void DocumentCommands::openCommand()
{
    if (saveChangesPrompt())
        OpenCfg(QString());
}

bool DocumentCommands::OpenCfg(QString path)
{
    path = Prompts::fileOfKind(m_shell.widget(), path, hasConfigExtension,
        QStringLiteral("This isn't an CFG or CONFIG file."), configFilter(), QStringLiteral("cfg"), startFolder());
    if (path.isEmpty())
        return false;
    QString error;
    DroppedLines dropped;
    dropped.examples = 1000;
    if (!readWhileSplashShows(path, &error, &dropped)) {
        Prompts::ask(m_shell.widget(), Prompts::programTitle(), error, QMessageBox::Ok, QMessageBox::Critical);
        return false;
    }
    m_doc.setFile(path, QFileInfo(path).fileName(), true);
    m_doc.setModified(false);
    m_lastFolder = QFileInfo(path).absolutePath();
    Q_EMIT opened(path, dropped);
    if (dropped.count > 0)
        m_shell.SetText(droppedLinesWarning(dropped, path), MsgType::Caution);
    return true;
}

QString DocumentCommands::droppedLinesWarning(const DroppedLines &dropped, const QString &path)
{
    const QString what = dropped.count == 1
        ? QStringLiteral("1 line of this file is a console command%1 that Tarnwick does not keep.")
        : QStringLiteral("%2 lines of this file are console commands%1 that Tarnwick does not keep.");
    const QString examples = dropped.commands.isEmpty()
        ? QString()
        : QStringLiteral(" (such as %1)").arg(dropped.commands.join(QStringLiteral(", ")));
    const QString first = what.arg(examples, QLocale().toString(dropped.count));
    const QString name = QFileInfo(path).fileName();
    const QString original = path + QStringLiteral(".orig");
    if (dropped.writtenByTarnwick)
        return first + QStringLiteral(" A save does not write them back.");
    if (QFileInfo::exists(original))
        return first
            + QStringLiteral(" A save does not write them back; %1.orig already holds an earlier original.").arg(name);
    return first + QStringLiteral(" The original file is kept as %1.orig when you save.").arg(name);
}

bool DocumentCommands::readWhileSplashShows(const QString &path, QString *error, DroppedLines *dropped)
{
    if (!m_load)
        m_load = new frmLoad(m_shell.widget());
    bool read = false;
    const WaitCursor busy;
    const Prompts::CommandsOff off;
    m_load->runModal(true, [&] { read = ReadCfgFile(m_doc, path, FileScope::Whole, error, dropped); });
    return read;
}

void DocumentCommands::SaveCfg()
{
    m_saveCancelled = false;
    if (!m_doc.HasFile()) {
        m_saveDialogTitle = QStringLiteral("Save");
        SaveCfgAs(QString());
        return;
    }
    m_saveCancelled = !write(m_doc.path());
    if (!m_saveCancelled)
        m_doc.setModified(false);
}

void DocumentCommands::saveAsCommand()
{
    m_saveDialogTitle = QStringLiteral("Save As");
    SaveCfgAs(QString());
}

void DocumentCommands::SaveCfgAs(QString path)
{
    if (path.isEmpty()) {
        path = Prompts::saveFileName(m_shell.widget(), m_saveDialogTitle,
            configFilter() + QStringLiteral("|All Files (*.*)|*.*"), QStringLiteral("cfg"), startFolder());
        if (path.isEmpty()) {
            m_saveCancelled = true;
            return;
        }
    }
    if (!write(path)) {
        m_saveCancelled = true;
        return;
    }
    m_doc.setFile(path, QFileInfo(path).fileName(), true);
    m_doc.setModified(false);
    m_saveCancelled = false;
    m_lastFolder = QFileInfo(path).absolutePath();
}

bool DocumentCommands::write(const QString &path)
{
    // A file some of whose lines the document does not hold is kept as it was before the first save over it.
    QString keptAs;
    QString error;
    // The file is replaced only once the new one is whole: nothing to delete first.
    if (KeepOriginal(path, &keptAs, &error) && WriteCfgFile(m_doc, path, FileScope::Whole, &error)) {
        if (!keptAs.isEmpty())
            m_shell.setMenuHelp(
                QStringLiteral("The original file was kept as %1").arg(QDir::toNativeSeparators(keptAs)));
        return true;
    }
    Prompts::reportError(m_shell.widget(), QStringLiteral("Save Config File"), 75, error);
    return false;
}

void DocumentCommands::restoreDefaultsCommand()
{
    if (!m_doc.canRestore())
        return;
    if (Prompts::ask(m_shell.widget(), Prompts::programTitle(),
            QStringLiteral("Are you sure you want to reset every settings to default?"),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::Question)
        == QMessageBox::Yes)
        m_doc.ApplySnapshot();
}

Page DocumentCommands::pageOf(PartialKind kind)
{
    switch (kind) {
    case PartialKind::Controls:
        return Page::Control;
    case PartialKind::Renderer:
        return Page::Renderer;
    case PartialKind::HudDisplay:
        return Page::HudDisplay;
    case PartialKind::Railgun:
        return Page::Railgun;
    }
    return Page::Control;
}

bool DocumentCommands::ExportFile(QString path, PartialKind kind)
{
    if (path.isEmpty()) {
        path = Prompts::saveFileName(m_shell.widget(), QStringLiteral("Export File"), PartialFiles::exportFilter(kind),
            PartialFiles::defaultExtension(kind).toLower(), startFolder());
        if (path.isEmpty())
            return false;
    }
    QString error;
    const bool written = [&] {
        const WaitCursor busy;
        return ::ExportFile(m_doc, path, kind, &error);
    }();
    if (!written)
        Prompts::reportError(m_shell.widget(), QStringLiteral("Save Config File"), 75, error);
    return written;
}

bool DocumentCommands::ImportFile(QString path, PartialKind kind)
{
    if (path.isEmpty()) {
        path = Prompts::openFileName(m_shell.widget(), QStringLiteral("Import File"), PartialFiles::importFilter(kind),
            PartialFiles::defaultExtension(kind).toLower(), startFolder());
        if (path.isEmpty())
            return false;
    }
    QString error;
    const bool read = [&] {
        const WaitCursor busy;
        return ::ImportFile(m_doc, path, kind, &error);
    }();
    if (!read) {
        Prompts::ask(m_shell.widget(), Prompts::programTitle(), error, QMessageBox::Ok, QMessageBox::Critical);
        return false;
    }
    m_lastFolder = QFileInfo(path).absolutePath();
    m_shell.SelectPage(pageOf(kind));
    return true;
}

QString DocumentCommands::startFolder() const
{
    if (!m_lastFolder.isEmpty())
        return m_lastFolder;
    // Before any file: the game's own configuration folder, else the game's per-user one.
    const QString game = GameFolder::dataFolder(m_shell.gameFolder());
    if (!m_shell.gameFolder().isEmpty() && QFileInfo(game).isDir())
        return game;
    const QString perUser = QDir::home().filePath(QStringLiteral(".q3a/baseq3"));
    return QFileInfo(perUser).isDir() ? perUser : QString();
}
