// Rectangles that are fitted and converted.
#include "television/Geometry.h"

#include <cmath>

namespace television {
namespace {

std::int32_t Rounded(double value) { return static_cast<std::int32_t>(std::lround(value)); }

// Edges are scaled, not widths, so that rectangles that touch still touch.
double Scaled(double edge, double fromStart, double fromLength, double toStart, double toLength) {
    return toStart + (edge - fromStart) * toLength / fromLength;
}

}  // namespace

TPTRect Fit(const TPTRect& outer, double aspectRatio) {
    if (outer.width <= 0 || outer.height <= 0 || !(aspectRatio > 0)) return outer;
    TPTRect inner = outer;
    if (outer.width > outer.height * aspectRatio)
        inner.width = Rounded(outer.height * aspectRatio);
    else
        inner.height = Rounded(outer.width / aspectRatio);
    inner.x += (outer.width - inner.width) / 2;
    inner.y += (outer.height - inner.height) / 2;
    return inner;
}

bool Convert(const TPTRect& rectangle, const TPTRect& from, const TPTRect& to, TPTRect& result) {
    result = rectangle;
    if (from.width <= 0 || from.height <= 0) return false;
    const auto x = [&](double edge) { return Rounded(Scaled(edge, from.x, from.width, to.x, to.width)); };
    const auto y = [&](double edge) { return Rounded(Scaled(edge, from.y, from.height, to.y, to.height)); };
    result.x = x(rectangle.x);
    result.y = y(rectangle.y);
    result.width = x(static_cast<double>(rectangle.x) + rectangle.width) - result.x;
    result.height = y(static_cast<double>(rectangle.y) + rectangle.height) - result.y;
    return true;
}

}  // namespace television
