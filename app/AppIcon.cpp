#include "AppIcon.h"

namespace AppIcon {

QIcon icon()
{
    return QIcon(QStringLiteral(":/icons/tarnwick.svg"));
}

} // namespace AppIcon
