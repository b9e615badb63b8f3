// DocumentCommands: New, Open, Save, Save As and Restore Defaults on the window's document, with the
// save-changes prompts that guard them.
#pragma once

#include <QObject>
#include <QString>

class ConfigDocument;
class frmLoad;
class frmMain;
class frmNew;

class DocumentCommands : public QObject
{
    Q_OBJECT

public:
    DocumentCommands(frmMain *window, ConfigDocument &doc, QObject *parent = nullptr);

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
    /// Writes the area of a partial settings kind (0 Controls, 1 Renderer, 2 HUD Display, 3 Railgun) to
    /// `path`; with an empty path it asks for one. True when the file was written.
    bool ExportFile(QString path, int kind);
    /// Reads the area of a kind from `path` into the document and shows its page; with an empty path it
    /// asks for one. Any configuration file will do: only the kind's area is taken from it. True when read.
    bool ImportFile(QString path, int kind);
    /// Whether the last save ended without writing (the dialog was cancelled or the write failed).
    bool saveCancelled() const { return m_saveCancelled; }

    /// The page an import of `kind` shows (2 Control, 3 Renderer, 5 HUD Display, 6 Railgun).
    static int pageOfKind(int kind);
    static QString configFilter() { return QStringLiteral("Configuration Files (*.cfg;*.config)|*.cfg;*.config"); }

Q_SIGNALS:
    /// A page of the window is to be shown (after an import).
    void pageWanted(int index);

private:
    QString startFolder() const;
    /// The "Incorrect file extension" question: true when the user wants to choose another file.
    bool chooseAnotherFile(const QString &question);
    bool readWhileSplashShows(const QString &path, QString *error);
    bool write(const QString &path);

    frmMain *m_window;
    ConfigDocument &m_doc;
    frmNew *m_new = nullptr;
    frmLoad *m_load = nullptr;
    QString m_saveDialogTitle = QStringLiteral("Save");
    QString m_lastFolder;
    bool m_saveCancelled = false;
};
