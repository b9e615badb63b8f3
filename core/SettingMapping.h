// SettingMapping: how one catalogued setting moves between a file value, the snapshot and its control.
#pragma once

#include "ConfigDocument.h"
#include "SettingCatalog.h"

namespace SettingMapping {

/// Stores a value read from a file into the row's snapshot slots. Returns false, leaving them as they
/// were, when a numeric setting receives a value that is not a number.
bool readIntoSnapshot(const SettingRow &row, const QString &value, SlotValue *snapshot);
/// Sets the row's controls from its snapshot slots (clamped to the controls' ranges).
void snapshotToControl(const SettingRow &row, const SlotValue *snapshot, SlotValue *control);
/// The row's snapshot slots from its controls.
void controlToSnapshot(const SettingRow &row, const SlotValue *control, SlotValue *snapshot);
/// The value the writer puts between the quotes of the row's setting line.
QString fileValue(const SettingRow &row, const SlotValue *control);

} // namespace SettingMapping
