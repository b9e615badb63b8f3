// SearchCommands: the Tools menu's Q3Config Search — the search dialog, and its Load through the document's
// own open sequence.
#pragma once

#include <QObject>

class CommandGate;
class Commands;
class DocumentCommands;
class ShellWindow;
class frmSearch;

class SearchCommands : public QObject
{
    Q_OBJECT

public:
    /// Registers the command "Search1" with `commands`.
    SearchCommands(ShellWindow &shell, CommandGate &gate, DocumentCommands &documents, Commands &commands,
        QObject *parent = nullptr);

    /// Shows the search dialog modally, as it was left; a file it loads becomes the document.
    void RunSearchCommand();

private:
    ShellWindow &m_shell;
    CommandGate &m_gate;
    DocumentCommands &m_documents;
    frmSearch *m_search = nullptr;
};
