// ImageList: the main window's pictures, looked up by icon key ("NEW", "OPEN", ...).
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QStringList>

namespace ImageList {

/// Every key the list knows, in a fixed order.
QStringList keys();

/// The desktop's themed icon when its theme has a fitting one, else our own drawing; a null icon for an unknown
/// key. The menu's check marks (CHK1, CHK2) are always our own. Icons are cached per key for the current theme.
QIcon icon(const QString &key);

/// Our own drawing of the key at `size` × `size` device-independent pixels, on a transparent background (null
/// pixmap for an unknown key or a size below 1). The pixmap has a device pixel ratio of 1; icon() carries the larger
/// sizes that high-density screens pick.
QPixmap drawn(const QString &key, int size = 16);

/// The freedesktop theme icon names tried for a key, best first (empty for the check marks and unknown keys).
QStringList themeNames(const QString &key);

} // namespace ImageList
