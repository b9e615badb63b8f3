// ActionTable: the 37 game actions a player can bind, in the order every binding loop visits them.
#pragma once

#include <QString>
#include <array>

struct ActionInfo
{
    const char *page; // "Move", "Shoot", "Look" or "Misc"
    const char *caption; // the label shown beside the key button
    const char *command; // the game command, lower case, without quotes
};

namespace ActionTable {

constexpr int Count = 37;

const std::array<ActionInfo, Count> &actions();
QString caption(int index);
/// The command without quotes, e.g. +forward.
QString command(int index);
/// The command as bind lines carry it: "+forward" with its double quotes.
QString quotedCommand(int index);

} // namespace ActionTable
