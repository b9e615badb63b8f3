// AppIcon: the program's own icon, the one its windows show and the desktop's menus list.
#pragma once

#include <QIcon>

namespace AppIcon {

/// Tarnwick's icon, drawn from its SVG at whatever size a window asks for.
QIcon icon();

} // namespace AppIcon
