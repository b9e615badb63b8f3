// AppFont: the window text is Tahoma; where the desktop lacks it, a free Tahoma or a close sans-serif.
#pragma once

#include <QFont>

namespace AppFont {

/// Makes "Tahoma" resolve (registering a free copy, or mapping the name onto a close sans-serif) and
/// sets it as the application font at 8 points. Call once the application object exists.
void install();

} // namespace AppFont
