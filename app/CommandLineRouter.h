// CommandLineRouter: what the command line of this start, or one a later copy hands over, asks of the window —
// open a configuration, import a partial settings file, show the Open dialog — carried out, with the
// save-changes question first where a document would be replaced.
#pragma once

#include <QLoggingCategory>
#include <QObject>
#include <QStringList>

class CommandGate;
class Commands;
class DocumentCommands;
class frmMain;

/// What the shell does at start-up and when a later copy hands over ("tarnwick.shell.info=true" to see it).
Q_DECLARE_LOGGING_CATEGORY(lcShell)

class CommandLineRouter : public QObject
{
    Q_OBJECT

public:
    CommandLineRouter(
        frmMain &window, CommandGate &gate, DocumentCommands &documents, Commands &commands, QObject *parent = nullptr);

    /// Brings the window to the front, normal sized, and opens what `text` names; an empty text only brings it.
    void HandleCommandLine(const QString &text);
    /// A later copy's command line. While a box or dialog is open it waits — the open one comes to the front —
    /// and is handled once the last one closes; otherwise it is handled at once.
    void handOver(const QString &text);

private:
    void handleWaiting();

    frmMain &m_window;
    CommandGate &m_gate;
    DocumentCommands &m_documents;
    Commands &m_commands;
    QStringList m_waiting;
};
