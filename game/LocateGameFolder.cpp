#include "LocateGameFolder.h"

#include "GameFolder.h"
#include "Prompts.h"

bool LocateGameFolder(QWidget *owner, const QString &problem, QString &folder)
{
    if (GameFolder::isValid(folder))
        return true;
    const Prompts::CommandsOff off;
    for (;;) {
        // The picker opens at the first installation found where the game usually is; the user still confirms.
        const QString chosen = Prompts::folderName(
            owner, QStringLiteral("Select Quake III Arena Folder"), GameFolder::firstInstallation());
        if (chosen.isEmpty() || Prompts::exitPending())
            return false;
        if (GameFolder::isValid(chosen)) {
            folder = chosen;
            return true;
        }
        const QString question
            = QStringLiteral("Invalid Quake III Arena Dir.\nProblem: %1.\n\nWould you like to try again?").arg(problem);
        if (Prompts::ask(
                owner, Prompts::programTitle(), question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning)
            != QMessageBox::Yes)
            return false;
    }
}
