// AppIcon: the program's own icon, the one its windows show and the desktop's menus list.
#pragma once

#include <QIcon>

namespace AppIcon {

/// Tarnwick's icon, in every size a window or panel asks for.
QIcon icon();

} // namespace AppIcon
