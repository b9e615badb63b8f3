#include "KeyNames.h"

#include <QHash>

namespace {

const QHash<quint16, QString> &namedKeys()
{
    static const QHash<quint16, QString> table = [] {
        QHash<quint16, QString> t {
            { 8, QStringLiteral("BACKSPACE") },
            { 9, QStringLiteral("TAB") },
            { 12, QStringLiteral("KP_5") },
            { 13, QStringLiteral("ENTER") },
            { 16, QStringLiteral("SHIFT") },
            { 17, QStringLiteral("CTRL") },
            { 18, QStringLiteral("ALT") },
            { 19, QStringLiteral("PAUSE") },
            { 20, QStringLiteral("CAPSLOCK") },
            { 32, QStringLiteral("SPACE") },
            { 33, QStringLiteral("PGUP") },
            { 34, QStringLiteral("PGDN") },
            { 35, QStringLiteral("END") },
            { 36, QStringLiteral("HOME") },
            { 37, QStringLiteral("LEFTARROW") },
            { 38, QStringLiteral("UPARROW") },
            { 39, QStringLiteral("RIGHTARROW") },
            { 40, QStringLiteral("DOWNARROW") },
            { 45, QStringLiteral("INS") },
            { 46, QStringLiteral("DEL") },
            { 91, QStringLiteral("0x00") },
            { 92, QStringLiteral("0x00") },
            { 93, QStringLiteral("0x00") },
            { 96, QStringLiteral("KP_INS") },
            { 97, QStringLiteral("KP_END") },
            { 98, QStringLiteral("KP_DOWNARROW") },
            { 99, QStringLiteral("KP_PGDN") },
            { 100, QStringLiteral("KP_LEFTARROW") },
            { 101, QStringLiteral("KP_5") },
            { 102, QStringLiteral("KP_RIGHTARROW") },
            { 103, QStringLiteral("KP_HOME") },
            { 104, QStringLiteral("KP_UPARROW") },
            { 105, QStringLiteral("KP_PGUP") },
            { 106, QStringLiteral("*") },
            { 107, QStringLiteral("KP_PLUS") },
            { 108, QStringLiteral("KP_ENTER") },
            { 109, QStringLiteral("KP_MINUS") },
            { 110, QStringLiteral(".") },
            { 111, QStringLiteral("/") },
            { 144, QStringLiteral("KP_NUMLOCK") },
            { 145, QStringLiteral("0x00") },
            { 186, QStringLiteral("SEMICOLON") },
            { 187, QStringLiteral("=") },
            { 188, QStringLiteral(",") },
            { 189, QStringLiteral("-") },
            { 190, QStringLiteral(".") },
            { 191, QStringLiteral("/") },
            { 192, QStringLiteral("`") },
            { 219, QStringLiteral("[") },
            { 220, QStringLiteral("\\") },
            { 221, QStringLiteral("]") },
            { 222, QStringLiteral("'") },
        };
        for (quint16 f = 1; f <= 16; ++f)
            t.insert(quint16(111 + f), QStringLiteral("F%1").arg(f));
        return t;
    }();
    return table;
}

} // namespace

std::optional<QString> KeyNameFromKeyCode(quint16 keyCode)
{
    constexpr quint16 escape = 27;
    if (keyCode == escape)
        return std::nullopt;
    if (const auto it = namedKeys().constFind(keyCode); it != namedKeys().constEnd())
        return *it;
    // Digits and letters name themselves: the character whose code is the key code.
    // A code outside the 8-bit range has no character; the game calls such keys 0x00.
    if (keyCode > 0xFF)
        return QStringLiteral("0x00");
    return QString(QChar::fromLatin1(char(keyCode)));
}

std::optional<QString> KeyNameFromMouseButton(int button)
{
    switch (button) {
    case 1:
        return QStringLiteral("MOUSE1");
    case 2:
        return QStringLiteral("MOUSE2");
    case 4:
        return QStringLiteral("MOUSE3");
    default:
        return std::nullopt;
    }
}
