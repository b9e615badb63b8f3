// KeyNames: the game's name for a pressed key or a clicked mouse button.
#pragma once

#include <QString>
#include <optional>

/// The outcome of one key capture: cancelled (Esc), or the captured key name.
struct KeyCaptureResult
{
    bool cancelled = false;
    QString keyName;
};

/// The game's name for a Windows virtual-key code; no name for Esc (27), which cancels a capture.
std::optional<QString> KeyNameFromKeyCode(quint16 keyCode);
/// "MOUSE1", "MOUSE2", "MOUSE3" for the button masks 1, 2, 4; no name for anything else.
std::optional<QString> KeyNameFromMouseButton(int button);
