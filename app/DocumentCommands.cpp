#include "DocumentCommands.h"

#include "ConfigDocument.h"
#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"
#include "Prompts.h"
#include "frmNew.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

namespace {

const QString programTitle = QStringLiteral("Tarnwick");

bool hasConfigExtension(const QString &path)
{
    return path.endsWith(QLatin1StringView(".cfg"), Qt::CaseInsensitive)
        || path.endsWith(QLatin1StringView(".config"), Qt::CaseInsensitive);
}

} // namespace

DocumentCommands::DocumentCommands(QWidget *window, ConfigDocument &doc, QObject *parent)
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
    if (m_new->exec() != QDialog::Accepted)
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
    for (;;) {
        if (path.isEmpty()) {
            path = Prompts::openFileName(m_window, QStringLiteral("Open"), configFilter(), startFolder());
            if (path.isEmpty())
                return false;
        }
        if (hasConfigExtension(path))
            break;
        const QString question
            = QStringLiteral("This isn't an CFG or CONFIG file.\nDo you want to choose another file?");
        if (Prompts::ask(m_window, QStringLiteral("Incorrect file extension"), question,
                QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning)
            != QMessageBox::Yes)
            return false;
        path.clear();
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    QString error;
    const bool read = OpenCfgFile(m_doc, path, &error);
    QGuiApplication::restoreOverrideCursor();
    if (!read) {
        Prompts::ask(m_window, programTitle, error, QMessageBox::Ok, QMessageBox::Critical);
        return false;
    }
    m_lastFolder = QFileInfo(path).absolutePath();
    return true;
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

QString DocumentCommands::startFolder() const
{
    if (!m_lastFolder.isEmpty())
        return m_lastFolder;
    const QString perUser = QDir::home().filePath(QStringLiteral(".q3a/baseq3"));
    return QFileInfo(perUser).isDir() ? perUser : QString();
}
