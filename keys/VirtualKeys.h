// VirtualKeys: the Windows virtual-key code of a key event, the code the key-name table is keyed by.
#pragma once

#include <Qt>

namespace VirtualKeys {

/// The virtual-key code for a key that went down, or -1 when the key has none (the capture ignores it).
/// On Windows the native code is used as it is; elsewhere Qt's key and keypad flag are mapped onto the
/// code the same key gives on Windows (keypad 1 with Num Lock on is VK_NUMPAD1, with it off VK_END).
/// Shift, Ctrl and Alt held with a key play no part: Shift+1 is the "1" key.
int fromQtKey(int qtKey, Qt::KeyboardModifiers modifiers, quint32 nativeVirtualKey = 0);

} // namespace VirtualKeys
