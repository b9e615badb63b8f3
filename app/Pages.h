// Pages: the main window's pages in the order of their buttons, and the help board's message types.
#pragma once

enum class Page { Client, Server, Control, Renderer, SoundNetwork, HudDisplay, Railgun, Pk3Explorer };
constexpr int PageCount = 8;

enum class ControlSubPage { Move, Shoot, Look, Miscellaneous };
constexpr int ControlSubPageCount = 4;
