#include "SearchCommands.h"

#include "CommandGate.h"
#include "Commands.h"
#include "ConfigSearch.h"
#include "DocumentCommands.h"
#include "ShellWindow.h"
#include "frmSearch.h"

SearchCommands::SearchCommands(
    ShellWindow &shell, CommandGate &gate, DocumentCommands &documents, Commands &commands, QObject *parent)
    : QObject(parent)
    , m_shell(shell)
    , m_gate(gate)
    , m_documents(documents)
{
    commands.setHandler(QStringLiteral("Search1"), [this] { RunSearchCommand(); });
}

void SearchCommands::RunSearchCommand()
{
    if (!m_search) {
        m_search = new frmSearch(m_shell.widget());
        m_search->setLoader([this] { return m_documents.saveChangesPrompt(QStringLiteral(" before loading a new?")); },
            [this](const QString &path) { return m_documents.OpenCfg(path); });
    } else {
        // A volume mounted since the last opening is offered too.
        m_search->setPlaces(ConfigSearch::places());
    }
    m_gate.setHotKeysEnabled(false);
    m_shell.ShowForm(m_search, true);
    m_gate.EnableHotKeys();
}
