// ConfigDocument: the one open configuration — every control's value, the key bindings, the lines kept
// from the file, and the snapshot of the values last read or written.
#pragma once

#include "ActionBindings.h"
#include "SettingCatalog.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

/// One value slot of a control: the state (check box, position) in `number`, or the text.
/// Snapshot slots use the same shape in snapshot units (numbers may be fractional or huge).
struct SlotValue
{
    double number = 0;
    QString text;

    bool operator==(const SlotValue &) const = default;
};

class ConfigDocument : public QObject
{
    Q_OBJECT

public:
    /// A document with the controls' initial contents and a snapshot equal to them.
    explicit ConfigDocument(QObject *parent = nullptr);

    // The file the document belongs to.
    QString path() const { return m_path; }
    QString displayName() const { return m_displayName; }
    bool HasFile() const { return m_hasFile; }
    void setFile(const QString &path, const QString &displayName, bool hasFile);
    bool isModified() const { return m_modified; }
    void setModified(bool modified);
    /// Restore Defaults is offered once a file was read or the whole document written.
    bool canRestore() const { return m_canRestore; }
    void setCanRestore(bool enabled);

    // Current values, addressed by catalog row and index inside a control array.
    int state(int row, int index = 0) const;
    QString text(int row, int index = 0) const;
    /// An edit of a control: marks the document modified when the value changes.
    void setState(int row, int index, int value);
    void setText(int row, int index, const QString &text);
    int state(QStringView control, int index = 0) const;
    QString text(QStringView control, int index = 0) const;

    const QList<SlotValue> &values() const { return m_values; }
    const QList<SlotValue> &snapshot() const { return m_snapshot; }
    SlotValue &snapshotSlot(int row, int index = 0);

    // Key bindings.
    const ActionBindings &bindings() const { return m_bindings; }
    /// Bindings as a read or a reset changes them: no edit, so the modified flag stays.
    ActionBindings &bindingsForUpdate() { return m_bindings; }
    void DefineKey(int action, KeySlot slot, const QString &key);
    void DeleteKey(int action, KeySlot slot);

    // Lines carried through from the last file read.
    const QStringList &keptLines() const { return m_keptLines; }
    /// The lines of a read; views hear of them with the contentReset that follows.
    void setKeptLines(QStringList lines) { m_keptLines = std::move(lines); }
    /// Edits of one kept line: each marks the document modified.
    void replaceKeptLine(int index, const QString &line);
    void appendKeptLine(const QString &line);
    void removeKeptLine(int index);

    /// Every current value from the snapshot; bindings untouched; not modified afterwards.
    void ApplySnapshot();
    /// The snapshot from the current values; Restore Defaults offered; not modified afterwards.
    void TakeSnapshot();

    /// Tells views that many values changed at once (a read, a reset).
    void announceReset();

Q_SIGNALS:
    void valueChanged(int row, int index);
    void keptLineChanged(int index);
    void keptLineInserted(int index);
    void keptLineRemoved(int index);
    void bindingsChanged();
    void contentReset();
    void modifiedChanged(bool modified);
    void fileChanged();
    void canRestoreChanged(bool enabled);

private:
    int slot(int row, int index) const;

    QString m_path;
    QString m_displayName;
    bool m_hasFile = false;
    bool m_modified = false;
    bool m_canRestore = false;
    QList<SlotValue> m_values;
    QList<SlotValue> m_snapshot;
    ActionBindings m_bindings;
    QStringList m_keptLines;
};
