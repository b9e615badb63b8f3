// Twips: window measures are designed in twips, 15 to a device-independent pixel.
#pragma once

#include <QRect>

namespace Twips {

constexpr int perPixel = 15;

/// Pixels for a length in twips, rounded to the nearest pixel.
constexpr int px(int twips)
{
    return twips >= 0 ? (2 * twips + perPixel) / (2 * perPixel) : -px(-twips);
}

constexpr QRect rect(int left, int top, int width, int height)
{
    return QRect(px(left), px(top), px(width), px(height));
}

} // namespace Twips
