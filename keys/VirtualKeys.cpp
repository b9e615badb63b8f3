#include "VirtualKeys.h"

#include <algorithm>
#include <array>

namespace {

// The Windows virtual-key codes that are not simply a character's code.
enum VirtualKey : int {
    VkBack = 8,
    VkTab = 9,
    VkClear = 12,
    VkReturn = 13,
    VkShift = 16,
    VkControl = 17,
    VkMenu = 18,
    VkPause = 19,
    VkCapital = 20,
    VkEscape = 27,
    VkSpace = 32,
    VkPrior = 33,
    VkNext = 34,
    VkEnd = 35,
    VkHome = 36,
    VkLeft = 37,
    VkUp = 38,
    VkRight = 39,
    VkDown = 40,
    VkInsert = 45,
    VkDelete = 46,
    VkLeftWindows = 91,
    VkRightWindows = 92,
    VkApps = 93,
    VkNumpad0 = 96,
    VkMultiply = 106,
    VkAdd = 107,
    VkSubtract = 109,
    VkDecimal = 110,
    VkDivide = 111,
    VkF1 = 112,
    VkNumLock = 144,
    VkScroll = 145,
    VkOem1 = 186, // ; :
    VkOemPlus = 187,
    VkOemComma = 188,
    VkOemMinus = 189,
    VkOemPeriod = 190,
    VkOem2 = 191, // / ?
    VkOem3 = 192, // ` ~
    VkOem4 = 219, // [ {
    VkOem5 = 220, // \ |
    VkOem6 = 221, // ] }
    VkOem7 = 222, // ' "
};

struct KeyCode
{
    int qtKey;
    int code;
};

// Keys of the main keyboard that are not letters, digits or function keys. A shifted symbol reports
// the key it sits on under the US layout, so Shift+1 is the "1" key.
constexpr auto mainKeys = std::to_array<KeyCode>({
    { Qt::Key_Backspace, VkBack },
    { Qt::Key_Tab, VkTab },
    { Qt::Key_Backtab, VkTab },
    // Keypad 5 with Num Lock off: X11 reports XK_KP_Begin as Key_Clear, Windows sends VK_CLEAR.
    { Qt::Key_Clear, VkClear },
    // Main and keypad Enter are both VK_RETURN on Windows.
    { Qt::Key_Return, VkReturn },
    { Qt::Key_Enter, VkReturn },
    { Qt::Key_Shift, VkShift },
    { Qt::Key_Control, VkControl },
    { Qt::Key_Alt, VkMenu },
    { Qt::Key_AltGr, VkMenu },
    { Qt::Key_Pause, VkPause },
    { Qt::Key_CapsLock, VkCapital },
    { Qt::Key_Escape, VkEscape },
    { Qt::Key_Space, VkSpace },
    { Qt::Key_PageUp, VkPrior },
    { Qt::Key_PageDown, VkNext },
    { Qt::Key_End, VkEnd },
    { Qt::Key_Home, VkHome },
    { Qt::Key_Left, VkLeft },
    { Qt::Key_Up, VkUp },
    { Qt::Key_Right, VkRight },
    { Qt::Key_Down, VkDown },
    { Qt::Key_Insert, VkInsert },
    { Qt::Key_Delete, VkDelete },
    { Qt::Key_Meta, VkLeftWindows },
    { Qt::Key_Super_L, VkLeftWindows },
    { Qt::Key_Super_R, VkRightWindows },
    { Qt::Key_Menu, VkApps },
    { Qt::Key_NumLock, VkNumLock },
    { Qt::Key_ScrollLock, VkScroll },
    { Qt::Key_ParenRight, '0' },
    { Qt::Key_Exclam, '1' },
    { Qt::Key_At, '2' },
    { Qt::Key_NumberSign, '3' },
    { Qt::Key_Dollar, '4' },
    { Qt::Key_Percent, '5' },
    { Qt::Key_AsciiCircum, '6' },
    { Qt::Key_Dead_Circumflex, '6' },
    { Qt::Key_Ampersand, '7' },
    { Qt::Key_Asterisk, '8' },
    { Qt::Key_ParenLeft, '9' },
    { Qt::Key_Semicolon, VkOem1 },
    { Qt::Key_Colon, VkOem1 },
    { Qt::Key_Equal, VkOemPlus },
    { Qt::Key_Plus, VkOemPlus },
    { Qt::Key_Comma, VkOemComma },
    { Qt::Key_Less, VkOemComma },
    { Qt::Key_Minus, VkOemMinus },
    { Qt::Key_Underscore, VkOemMinus },
    { Qt::Key_Period, VkOemPeriod },
    { Qt::Key_Greater, VkOemPeriod },
    { Qt::Key_Slash, VkOem2 },
    { Qt::Key_Question, VkOem2 },
    // The back-quote key is a dead key under international layouts.
    { Qt::Key_QuoteLeft, VkOem3 },
    { Qt::Key_AsciiTilde, VkOem3 },
    { Qt::Key_Dead_Grave, VkOem3 },
    { Qt::Key_Dead_Tilde, VkOem3 },
    { Qt::Key_BracketLeft, VkOem4 },
    { Qt::Key_BraceLeft, VkOem4 },
    { Qt::Key_Backslash, VkOem5 },
    { Qt::Key_Bar, VkOem5 },
    { Qt::Key_BracketRight, VkOem6 },
    { Qt::Key_BraceRight, VkOem6 },
    { Qt::Key_Apostrophe, VkOem7 },
    { Qt::Key_QuoteDbl, VkOem7 },
    { Qt::Key_Dead_Acute, VkOem7 },
    { Qt::Key_Dead_Diaeresis, VkOem7 },
});

// The keypad keys whose code differs from the main keyboard's key of the same meaning. With Num Lock
// off the keypad digits arrive as the navigation keys, which share their codes with the main ones.
int keypadCode(int qtKey)
{
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return VkNumpad0 + (qtKey - Qt::Key_0);
    switch (qtKey) {
    case Qt::Key_Asterisk:
        return VkMultiply;
    case Qt::Key_Plus:
        return VkAdd;
    case Qt::Key_Minus:
        return VkSubtract;
    case Qt::Key_Period:
    case Qt::Key_Comma: // the decimal key types a comma under many layouts
        return VkDecimal;
    case Qt::Key_Slash:
        return VkDivide;
    default:
        return -1;
    }
}

int mainCode(int qtKey)
{
    // Qt's letter and digit keys carry the capital letter's or the digit's code, as Windows does.
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return VkF1 + (qtKey - Qt::Key_F1);
    const auto it
        = std::find_if(mainKeys.begin(), mainKeys.end(), [qtKey](const KeyCode &k) { return k.qtKey == qtKey; });
    // Print Screen among others: Windows sends no key-down for it either.
    return it != mainKeys.end() ? it->code : -1;
}

} // namespace

int VirtualKeys::fromQtKey(int qtKey, Qt::KeyboardModifiers modifiers, quint32 nativeVirtualKey)
{
#ifdef Q_OS_WIN
    if (nativeVirtualKey != 0)
        return int(nativeVirtualKey);
#else
    // Elsewhere the native code is a keysym or a scan code, nothing the key-name table knows.
    Q_UNUSED(nativeVirtualKey)
#endif
    if (modifiers.testFlag(Qt::KeypadModifier)) {
        if (const int code = keypadCode(qtKey); code != -1)
            return code;
    }
    return mainCode(qtKey);
}
