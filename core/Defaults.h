// Defaults: the default key bindings and list choices, the New command's three modes, and the
// document a freshly started program holds.
#pragma once

#include "ConfigDocument.h"

#include <QString>

enum class NewMode { KeepControlKeys = 0, ResetToDefaults = 1, Clear = 2 };

/// Default keys, default list choices and default snapshot entries; other values stay. Not modified after.
void Defaults(ConfigDocument &doc, bool reset);
/// "New All (Clear)": award counters to 0, every binding removed, the thirteen HUD boxes cleared.
void NewAllClear(ConfigDocument &doc);
/// A new document named `name`, detached from any file; Restore Defaults withdrawn; not modified.
void NewCfg(ConfigDocument &doc, const QString &name, NewMode mode);
/// Turns a fresh document into the one a started program shows: Defaults, then New "Untitled" (Clear).
void StartUpDocument(ConfigDocument &doc);
/// The key a default binding gives an action's slot ("" for none).
QString defaultKey(int action, KeySlot slot);
