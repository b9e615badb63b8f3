// DocumentCommands: New, Open, Save, Save As, Restore Defaults, Export and Import on the window's document,
// with the save-changes prompts that guard them.
#pragma once

#include "ConfigReader.h"
#include "Pages.h"
#include "PartialFiles.h"

#include <QObject>
#include <QString>

class ConfigDocument;
class ShellWindow;
class frmLoad;
class frmNew;

class DocumentCommands : public QObject
{
    Q_OBJECT

public:
    DocumentCommands(ShellWindow &shell, ConfigDocument &doc, QObject *parent = nullptr);

    ConfigDocument &document() { return m_doc; }

    /// Asks to save a modified document ("?" or " before closing?" ends the question); false when the
    /// user cancels, or a save he agreed to did not happen.
    bool saveChangesPrompt(const QString &ending = QStringLiteral("?"));
    void newCommand();
    void openCommand();
    void saveCommand() { SaveCfg(); }
    void saveAsCommand();
    void restoreDefaultsCommand();

    /// Opens a configuration; with an empty path it asks for one (the extension is checked either way).
    bool OpenCfg(QString path);
    void SaveCfg();
    void SaveCfgAs(QString path);
    /// Writes the area of a partial settings kind to `path`; with an empty path it asks for one. True when the
    /// file was written.
    bool ExportFile(QString path, PartialKind kind);
    /// Reads the area of a kind from `path` into the document and shows its page; with an empty path it asks
    /// for one. Any configuration file will do: only the kind's area is taken from it. True when read.
    bool ImportFile(QString path, PartialKind kind);
    /// Whether the last save ended without writing (the dialog was cancelled or the write failed).
    bool saveCancelled() const { return m_saveCancelled; }

    /// The help board's warning after opening a file some of whose lines a save does not keep.
    static QString droppedLinesWarning(const DroppedLines &dropped, const QString &path);

    /// The page an import of `kind` shows.
    static Page pageOf(PartialKind kind);
    static QString configFilter() { return QStringLiteral("Configuration Files (*.cfg;*.config)|*.cfg;*.config"); }

Q_SIGNALS:
    /// A configuration was opened: the lines of it a save does not keep, the first thousand of them held.
    void opened(const QString &path, const DroppedLines &dropped);

private:
    QString startFolder() const;
    bool readWhileSplashShows(const QString &path, QString *error, DroppedLines *dropped);
    bool write(const QString &path);

    ShellWindow &m_shell;
    ConfigDocument &m_doc;
    frmNew *m_new = nullptr;
    frmLoad *m_load = nullptr;
    QString m_saveDialogTitle = QStringLiteral("Save");
    QString m_lastFolder;
    bool m_saveCancelled = false;
};
