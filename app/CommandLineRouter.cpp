#include "CommandLineRouter.h"

#include "CommandGate.h"
#include "CommandLine.h"
#include "Commands.h"
#include "DocumentCommands.h"
#include "frmMain.h"

#include <QApplication>
#include <QTimer>

Q_LOGGING_CATEGORY(lcShell, "tarnwick.shell", QtWarningMsg)

CommandLineRouter::CommandLineRouter(
    frmMain &window, CommandGate &gate, DocumentCommands &documents, Commands &commands, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_gate(gate)
    , m_documents(documents)
    , m_commands(commands)
{
    // Handled after the closing dialog has returned to whoever opened it.
    connect(&m_gate, &CommandGate::dialogsClosed, this,
        [this] { QTimer::singleShot(0, this, &CommandLineRouter::handleWaiting); });
}

void CommandLineRouter::handOver(const QString &text)
{
    if (!m_gate.dialogOpen()) {
        HandleCommandLine(text);
        return;
    }
    qCInfo(lcShell) << "waits for the open dialog:" << text;
    m_waiting.append(text);
    if (QWidget *open = QApplication::activeModalWidget()) {
        open->raise();
        open->activateWindow();
    }
}

void CommandLineRouter::handleWaiting()
{
    while (!m_waiting.isEmpty() && !m_gate.dialogOpen())
        HandleCommandLine(m_waiting.takeFirst());
}

void CommandLineRouter::HandleCommandLine(const QString &text)
{
    m_window.showNormal(); // also out of a maximized state
    m_window.raise();
    m_window.activateWindow();
    const CommandLine::Request request = CommandLine::classify(text);
    switch (request.action) {
    case CommandLine::Action::Nothing:
        return;
    case CommandLine::Action::OpenDialog:
        m_commands.run(QStringLiteral("Open1"));
        return;
    case CommandLine::Action::OpenConfig:
        // A save the user agreed to but cancelled keeps the document: nothing is thrown away unasked.
        if (m_documents.saveChangesPrompt(QStringLiteral(" before loading a new?"))
            && m_documents.OpenCfg(request.path))
            qCInfo(lcShell) << "opened" << request.path;
        return;
    case CommandLine::Action::Import:
        if (m_documents.ImportFile(request.path, *request.kind))
            qCInfo(lcShell) << "imported" << request.path;
        return;
    }
}
