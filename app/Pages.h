// Pages: the main window's pages in the order of their buttons, and the help board's message types.
#pragma once

enum class Page { Client, Server, Control, Renderer, SoundNetwork, HudDisplay, Railgun, Pk3Explorer, AllVariables };
constexpr int PageCount = 9;

enum class ControlSubPage { Move, Shoot, Look, Miscellaneous };
constexpr int ControlSubPageCount = 4;
