#include "LocateGameFolder.h"

#include "GameFolder.h"
#include "Program.h"
#include "Prompts.h"

bool LocateGameFolder(QWidget *owner, const QString &problem)
{
    if (GameFolder::isValid(GameFolder::path()))
        return true;
    const Program::HotKeysOff off;
    for (;;) {
        const QString chosen = Prompts::folderName(owner, QStringLiteral("Select Quake III Arena Folder"), QString());
        if (chosen.isEmpty() || Program::TrayExitPending)
            return false;
        if (GameFolder::isValid(chosen)) {
            GameFolder::setPath(chosen);
            return true;
        }
        const QString question
            = QStringLiteral("Invalid Quake III Arena Dir.\nProblem: %1.\n\nWould you like to try again?").arg(problem);
        if (Prompts::ask(
                owner, QStringLiteral("Tarnwick"), question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning)
            != QMessageBox::Yes)
            return false;
    }
}
