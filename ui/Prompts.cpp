#include "Prompts.h"

#include "Program.h"

#include <QFileDialog>
#include <QQueue>

namespace Prompts {

namespace {

    QQueue<Answer> &answers()
    {
        static QQueue<Answer> queue;
        return queue;
    }

    QList<Shown> &shown()
    {
        static QList<Shown> list;
        return list;
    }

    bool &testing()
    {
        static bool on = false;
        return on;
    }

    std::function<void()> &whileShown()
    {
        static std::function<void()> hook;
        return hook;
    }

    void record(const QString &title, const QString &text, const QString &folder = QString())
    {
        shown().append({ title, text, !Program::HotKeysEnabled, folder });
        if (whileShown())
            whileShown()();
    }

    // Past the last answer a test gave, every box is cancelled and every dialog too.
    Answer nextAnswer()
    {
        return answers().isEmpty() ? Answer(QMessageBox::Cancel) : answers().dequeue();
    }

} // namespace

QMessageBox::StandardButton ask(QWidget *parent, const QString &title, const QString &text,
    QMessageBox::StandardButtons buttons, QMessageBox::Icon icon)
{
    const Program::HotKeysOff off;
    if (testing()) {
        record(title, text);
        const Answer a = nextAnswer();
        return a.isPath ? QMessageBox::Cancel : a.button;
    }
    QMessageBox box(icon, title, text, buttons, parent);
    return QMessageBox::StandardButton(box.exec());
}

QString errorText(int number, const QString &description)
{
    return QStringLiteral("An error occurred:\nErr Number %1\nErr Description: %2").arg(number).arg(description);
}

void reportError(QWidget *parent, const QString &operation, int number, const QString &description)
{
    ask(parent, operation, errorText(number, description), QMessageBox::Ok, QMessageBox::Critical);
}

QStringList filterList(const QString &filter)
{
    // "Name|pattern;pattern|Name|pattern" pairs become "Name (pattern pattern)" entries.
    const QStringList parts = filter.split(u'|');
    QStringList out;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString name = parts[i];
        const QString patterns = QString(parts[i + 1]).replace(u';', u' ');
        if (const qsizetype open = name.indexOf(u'('); open >= 0)
            name = name.left(open).trimmed();
        out.append(QStringLiteral("%1 (%2)").arg(name, patterns));
    }
    return out;
}

static QString dialogAnswer(const QString &title, const QString &filter, const QString &folder)
{
    record(title, filter, folder);
    const Answer a = nextAnswer();
    return a.isPath ? a.path : QString();
}

QString openFileName(QWidget *parent, const QString &title, const QString &filter, const QString &folder)
{
    const Program::HotKeysOff off;
    if (testing())
        return dialogAnswer(title, filter, folder);
    QFileDialog dialog(parent, title, folder);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(filterList(filter));
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString saveFileName(
    QWidget *parent, const QString &title, const QString &filter, const QString &defaultSuffix, const QString &folder)
{
    const Program::HotKeysOff off;
    if (testing())
        return dialogAnswer(title, filter, folder);
    QFileDialog dialog(parent, title, folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // Save As replaces a file without asking
    dialog.setNameFilters(filterList(filter));
    dialog.setDefaultSuffix(defaultSuffix);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString folderName(QWidget *parent, const QString &title, const QString &initialFolder)
{
    const Program::HotKeysOff off;
    if (testing())
        return dialogAnswer(title, initialFolder, initialFolder);
    return QFileDialog::getExistingDirectory(parent, title, initialFolder, QFileDialog::ShowDirsOnly);
}

void setNextAnswers(const QList<Answer> &list)
{
    testing() = true;
    answers().clear();
    for (const Answer &a : list)
        answers().enqueue(a);
    shown().clear();
}

void setWhileShown(std::function<void()> hook)
{
    whileShown() = std::move(hook);
}

bool hasPendingAnswers()
{
    return !answers().isEmpty();
}

QList<Shown> takeShown()
{
    return std::exchange(shown(), {});
}

} // namespace Prompts
