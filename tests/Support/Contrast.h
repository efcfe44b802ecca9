#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

namespace Varnel::Testing {

/// The relative luminance of an opaque colour, 0 to 1, as the Web Content Accessibility Guidelines define it.
inline double luminanceOf(const QColor& color) {
    const auto channel = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
}

/// The contrast of two opaque colours, 1 to 21, as the same guidelines define it.
inline double contrastOf(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminanceOf(one), luminanceOf(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace Varnel::Testing
