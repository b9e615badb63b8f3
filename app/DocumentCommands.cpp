#include "DocumentCommands.h"

#include "ConfigDocument.h"
#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"
#include "GameFolder.h"
#include "PartialFiles.h"
#include "Program.h"
#include "Prompts.h"
#include "frmLoad.h"
#include "frmMain.h"
#include "frmNew.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <algorithm>

namespace {

const QString programTitle = QStringLiteral("Tarnwick");

bool hasConfigExtension(const QString &path)
{
    return path.endsWith(QLatin1StringView(".cfg"), Qt::CaseInsensitive)
        || path.endsWith(QLatin1StringView(".config"), Qt::CaseInsensitive);
}

} // namespace

DocumentCommands::DocumentCommands(frmMain *window, ConfigDocument &doc, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_doc(doc)
{ }

bool DocumentCommands::saveChangesPrompt(const QString &ending)
{
    if (!m_doc.isModified())
        return true;
    const QString question
        = QStringLiteral("Save changes to configuration file \n\"%1\"%2").arg(m_doc.displayName(), ending);
    switch (Prompts::ask(m_window, programTitle, question, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
        QMessageBox::Question)) {
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
        m_new = new frmNew(m_window);
    m_new->prepare();
    if (m_window->ShowForm(m_new, true) != QDialog::Accepted)
        return;
    NewCfg(m_doc, m_new->documentName(), m_new->mode());
}

void DocumentCommands::openCommand()
{
    if (saveChangesPrompt())
        OpenCfg(QString());
}

bool DocumentCommands::chooseAnotherFile(const QString &question)
{
    return Prompts::ask(m_window, QStringLiteral("Incorrect file extension"), question,
               QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning)
        == QMessageBox::Yes;
}

bool DocumentCommands::OpenCfg(QString path)
{
    for (;;) {
        if (path.isEmpty()) {
            path = Prompts::openFileName(m_window, QStringLiteral("Open"), configFilter(), startFolder());
            if (path.isEmpty())
                return false;
        }
        if (hasConfigExtension(path))
            break;
        if (!chooseAnotherFile(
                QStringLiteral("This isn't an CFG or CONFIG file.\nDo you want to choose another file?")))
            return false;
        path.clear();
    }
    QString error;
    if (!readWhileSplashShows(path, &error)) {
        Prompts::ask(m_window, programTitle, error, QMessageBox::Ok, QMessageBox::Critical);
        return false;
    }
    m_doc.setFile(path, QFileInfo(path).fileName(), true);
    m_doc.setModified(false);
    m_lastFolder = QFileInfo(path).absolutePath();
    return true;
}

bool DocumentCommands::readWhileSplashShows(const QString &path, QString *error)
{
    Program::LoadingConfiguration = true;
    Program::PendingLoadPath = path;
    if (!m_load)
        m_load = new frmLoad(m_window);
    bool read = false;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    {
        const Program::HotKeysOff off;
        m_load->runModal(true, [&] { read = ReadCfgFile(m_doc, Program::PendingLoadPath, FileScope::Whole, error); });
    }
    QGuiApplication::restoreOverrideCursor();
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
        path = Prompts::saveFileName(m_window, m_saveDialogTitle,
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
    // The file is replaced only once the new one is whole: nothing to delete first.
    QString error;
    if (WriteCfgFile(m_doc, path, FileScope::Whole, &error))
        return true;
    m_doc.setModified(true); // what was not saved is still a change
    Prompts::reportError(m_window, QStringLiteral("Save Config File"), 75, error);
    return false;
}

void DocumentCommands::restoreDefaultsCommand()
{
    if (!m_doc.canRestore())
        return;
    if (Prompts::ask(m_window, programTitle,
            QStringLiteral("Are you sure you want to reset every settings to default?"),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::Question)
        == QMessageBox::Yes)
        m_doc.ApplySnapshot();
}

int DocumentCommands::pageOfKind(int kind)
{
    static constexpr int pages[] = { 2, 3, 5, 6 };
    return kind >= 0 && kind < 4 ? pages[kind] : -1;
}

bool DocumentCommands::ExportFile(QString path, int kind)
{
    if (kind < 0 || kind > 3)
        return false;
    const auto partial = PartialKind(kind);
    if (path.isEmpty()) {
        path = Prompts::saveFileName(m_window, QStringLiteral("Export File"), PartialFiles::exportFilter(partial),
            PartialFiles::defaultExtension(partial).toLower(), startFolder());
        if (path.isEmpty())
            return false;
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    QString error;
    const bool written = ::ExportFile(m_doc, path, partial, &error);
    QGuiApplication::restoreOverrideCursor();
    if (!written)
        Prompts::reportError(m_window, QStringLiteral("Save Config File"), 75, error);
    return written;
}

bool DocumentCommands::ImportFile(QString path, int kind)
{
    for (;;) {
        if (path.isEmpty()) {
            const auto partial = PartialKind(std::clamp(kind, 0, 3));
            path = Prompts::openFileName(
                m_window, QStringLiteral("Import File"), PartialFiles::importFilter(partial), startFolder());
            if (path.isEmpty())
                return false;
        }
        if (kind >= 0 && kind <= 3)
            break;
        if (!chooseAnotherFile(
                QStringLiteral("This is not an RNR, CTR, HUD or RLG file.\r\nDo you want to choose another file?")))
            return false;
        path.clear();
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    QString error;
    const bool read = ::ImportFile(m_doc, path, PartialKind(kind), &error);
    QGuiApplication::restoreOverrideCursor();
    if (!read) {
        Prompts::ask(m_window, programTitle, error, QMessageBox::Ok, QMessageBox::Critical);
        return false;
    }
    m_lastFolder = QFileInfo(path).absolutePath();
    Q_EMIT pageWanted(pageOfKind(kind));
    return true;
}

QString DocumentCommands::startFolder() const
{
    if (!m_lastFolder.isEmpty())
        return m_lastFolder;
    // Before any file: the game's own configuration folder, else the game's per-user one.
    const QString game = GameFolder::dataFolder(GameFolder::path());
    if (!GameFolder::path().isEmpty() && QFileInfo(game).isDir())
        return game;
    const QString perUser = QDir::home().filePath(QStringLiteral(".q3a/baseq3"));
    return QFileInfo(perUser).isDir() ? perUser : QString();
}
