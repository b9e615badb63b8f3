// DocumentCommands: New, Open, Save, Save As and Restore Defaults on the window's document, with the
// save-changes prompts that guard them.
#pragma once

#include <QObject>
#include <QString>

class ConfigDocument;
class frmNew;
class QWidget;

class DocumentCommands : public QObject
{
    Q_OBJECT

public:
    DocumentCommands(QWidget *window, ConfigDocument &doc, QObject *parent = nullptr);

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
    /// Whether the last save ended without writing (the dialog was cancelled or the write failed).
    bool saveCancelled() const { return m_saveCancelled; }

    static QString configFilter() { return QStringLiteral("Configuration Files (*.cfg;*.config)|*.cfg;*.config"); }

private:
    QString startFolder() const;
    bool write(const QString &path);

    QWidget *m_window;
    ConfigDocument &m_doc;
    frmNew *m_new = nullptr;
    QString m_saveDialogTitle = QStringLiteral("Save");
    QString m_lastFolder;
    bool m_saveCancelled = false;
};
