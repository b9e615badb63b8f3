#include "Prompts.h"

#include <QFileDialog>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QQueue>
#include <QScreen>
#include <QTreeView>

namespace Prompts {

namespace {

    Gate *&gate()
    {
        static Gate *installed = nullptr;
        return installed;
    }

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
        shown().append({ title, text, !gate() || !gate()->commandsEnabled(), folder });
        if (whileShown())
            whileShown()();
    }

    // Past the last answer a test gave, every box is cancelled and every dialog too.
    Answer nextAnswer()
    {
        return answers().isEmpty() ? Answer(QMessageBox::Cancel) : answers().dequeue();
    }

    QString dialogAnswer(const QString &title, const QString &filter, const QString &folder)
    {
        record(title, filter, folder);
        const Answer a = nextAnswer();
        return a.isPath ? a.path : QString();
    }

    QString chosenFile(QWidget *parent, bool save, const QString &title, const QString &filter,
        const QString &defaultSuffix, const QString &folder)
    {
        const CommandsOff off;
        if (testing())
            return dialogAnswer(title, filter, folder);
        const std::unique_ptr<QFileDialog> dialog = fileDialog(parent, save, title, filter, defaultSuffix, folder);
        return dialog->exec() == QDialog::Accepted ? dialog->selectedFiles().value(0) : QString();
    }

} // namespace

void setGate(Gate *installed)
{
    gate() = installed;
}

bool exitPending()
{
    return gate() && gate()->exitPending();
}

CommandsOff::CommandsOff()
{
    if (gate())
        gate()->dialogOpened();
}

CommandsOff::~CommandsOff()
{
    if (gate())
        gate()->dialogClosed();
}

QMessageBox::StandardButton ask(QWidget *parent, const QString &title, const QString &text,
    QMessageBox::StandardButtons buttons, QMessageBox::Icon icon)
{
    const CommandsOff off;
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

std::unique_ptr<QFileDialog> fileDialog(QWidget *parent, bool save, const QString &title, const QString &filter,
    const QString &defaultSuffix, const QString &folder)
{
    auto dialog = std::make_unique<QFileDialog>(parent, title, folder);
    if (save) {
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setOption(QFileDialog::DontConfirmOverwrite); // Save As replaces a file without asking
    } else {
        dialog->setFileMode(QFileDialog::ExistingFile);
    }
    dialog->setNameFilters(filterList(filter));
    dialog->setDefaultSuffix(defaultSuffix);
    // Wide enough for the name, size, type and date columns side by side, none of them elided.
    const QFontMetrics metrics = dialog->fontMetrics();
    dialog->resize(dialog->sizeHint().expandedTo(QSize(metrics.averageCharWidth() * 110, metrics.height() * 26)));
    auto *details = dialog->findChild<QTreeView *>(QStringLiteral("treeView"));
    auto *files = dialog->findChild<QFileSystemModel *>();
    if (details && files) {
        details->header()->resizeSection(0, metrics.averageCharWidth() * 40);
        // Once a folder's entries are known, the size, type and date columns take what their texts need (a
        // type name can be long), and the dialog grows to show them all, within the screen.
        QFileDialog *shown = dialog.get();
        QObject::connect(files, &QFileSystemModel::directoryLoaded, details, [shown, details] {
            QHeaderView *header = details->header();
            for (int column = 1; column < header->count(); ++column)
                header->resizeSection(column,
                    qMax(header->sectionSize(column),
                        static_cast<QAbstractItemView *>(details)->sizeHintForColumn(column)));
            const int missing = header->length() - details->viewport()->width();
            const int room = shown->screen() ? shown->screen()->availableGeometry().width() : shown->width();
            if (missing > 0)
                shown->resize(qMin(shown->width() + missing + details->frameWidth() * 2, room), shown->height());
        });
    }
    return dialog;
}

QString openFileName(
    QWidget *parent, const QString &title, const QString &filter, const QString &defaultSuffix, const QString &folder)
{
    return chosenFile(parent, false, title, filter, defaultSuffix, folder);
}

QString saveFileName(
    QWidget *parent, const QString &title, const QString &filter, const QString &defaultSuffix, const QString &folder)
{
    return chosenFile(parent, true, title, filter, defaultSuffix, folder);
}

QString fileOfKind(QWidget *parent, QString path, const std::function<bool(const QString &)> &fits,
    const QString &notThisKind, const QString &filter, const QString &defaultSuffix, const QString &folder)
{
    for (;;) {
        if (path.isEmpty()) {
            path = openFileName(parent, QStringLiteral("Open"), filter, defaultSuffix, folder);
            if (path.isEmpty())
                return QString();
        }
        if (fits(path))
            return path;
        if (ask(parent, QStringLiteral("Incorrect file extension"),
                notThisKind + QStringLiteral("\nDo you want to choose another file?"),
                QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning)
            != QMessageBox::Yes)
            return QString();
        path.clear();
    }
}

QString folderName(QWidget *parent, const QString &title, const QString &initialFolder)
{
    const CommandsOff off;
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
