// OkCancelButtons: the "&OK" (default) and "&Cancel" pair of a dialog, named cmdOK and cmdCancel, wired to
// accept and reject.
#pragma once

class QDialog;
class QDialogButtonBox;

QDialogButtonBox *OkCancelButtons(QDialog *dialog);
