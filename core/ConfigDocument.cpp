#include "ConfigDocument.h"

#include "SettingMapping.h"

ConfigDocument::ConfigDocument(QObject *parent)
    : QObject(parent)
{
    const SettingCatalog &catalog = SettingCatalog::instance();
    m_values.resize(catalog.slotCount());
    m_snapshot.resize(catalog.slotCount());
    for (const SettingRow &r : catalog.rows()) {
        for (int k = 0; k < r.count; ++k) {
            SlotValue &v = m_values[r.firstSlot + k];
            v.number = r.initialState;
            v.text = r.initialText;
        }
        if (r.snapshot)
            SettingMapping::controlToSnapshot(r, &m_values[r.firstSlot], &m_snapshot[r.firstSlot]);
    }
}

void ConfigDocument::setFile(const QString &path, const QString &displayName, bool hasFile)
{
    m_path = path;
    m_displayName = displayName;
    m_hasFile = hasFile;
    Q_EMIT fileChanged();
}

void ConfigDocument::setModified(bool modified)
{
    if (m_modified == modified)
        return;
    m_modified = modified;
    Q_EMIT modifiedChanged(modified);
}

void ConfigDocument::setCanRestore(bool enabled)
{
    if (m_canRestore == enabled)
        return;
    m_canRestore = enabled;
    Q_EMIT canRestoreChanged(enabled);
}

int ConfigDocument::slot(int row, int index) const
{
    const SettingRow &r = SettingCatalog::instance().row(row);
    Q_ASSERT(index >= 0 && index < r.count);
    return r.firstSlot + index;
}

int ConfigDocument::state(int row, int index) const
{
    return int(m_values.at(slot(row, index)).number);
}

QString ConfigDocument::text(int row, int index) const
{
    return m_values.at(slot(row, index)).text;
}

int ConfigDocument::state(QStringView control, int index) const
{
    return state(SettingCatalog::instance().indexOfControl(control), index);
}

QString ConfigDocument::text(QStringView control, int index) const
{
    return text(SettingCatalog::instance().indexOfControl(control), index);
}

void ConfigDocument::setState(int row, int index, int value)
{
    SlotValue &v = m_values[slot(row, index)];
    if (v.number == value)
        return;
    v.number = value;
    setModified(true);
    Q_EMIT valueChanged(row, index);
}

void ConfigDocument::setText(int row, int index, const QString &text)
{
    SlotValue &v = m_values[slot(row, index)];
    if (v.text == text)
        return;
    v.text = text;
    setModified(true);
    Q_EMIT valueChanged(row, index);
}

SlotValue &ConfigDocument::snapshotSlot(int row, int index)
{
    return m_snapshot[slot(row, index)];
}

void ConfigDocument::DefineKey(int action, KeySlot slot, const QString &key)
{
    m_bindings.DefineKey(action, slot, key);
    setModified(true);
    Q_EMIT bindingsChanged();
}

void ConfigDocument::DeleteKey(int action, KeySlot slot)
{
    // Deleting marks the document modified even when the slot was already empty.
    m_bindings.DeleteKey(action, slot);
    setModified(true);
    Q_EMIT bindingsChanged();
}

void ConfigDocument::replaceKeptLine(int index, const QString &line)
{
    if (m_keptLines.at(index) == line)
        return;
    m_keptLines[index] = line;
    setModified(true);
    Q_EMIT keptLineChanged(index);
}

void ConfigDocument::appendKeptLine(const QString &line)
{
    m_keptLines.append(line);
    setModified(true);
    Q_EMIT keptLineInserted(int(m_keptLines.size() - 1));
}

void ConfigDocument::removeKeptLine(int index)
{
    m_keptLines.removeAt(index);
    setModified(true);
    Q_EMIT keptLineRemoved(index);
}

void ConfigDocument::ApplySnapshot()
{
    for (const SettingRow &r : SettingCatalog::instance().rows()) {
        if (r.snapshot)
            SettingMapping::snapshotToControl(r, &m_snapshot[r.firstSlot], &m_values[r.firstSlot]);
    }
    announceReset();
    setModified(false);
}

void ConfigDocument::TakeSnapshot()
{
    for (const SettingRow &r : SettingCatalog::instance().rows()) {
        if (r.snapshot)
            SettingMapping::controlToSnapshot(r, &m_values[r.firstSlot], &m_snapshot[r.firstSlot]);
    }
    setCanRestore(true);
    setModified(false);
}

void ConfigDocument::announceReset()
{
    Q_EMIT contentReset();
    Q_EMIT bindingsChanged();
}
