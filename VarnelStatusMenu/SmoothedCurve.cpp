#include <VarnelStatusMenu/SmoothedCurve.h>

#include <algorithm>

namespace Varnel {

namespace {

constexpr qreal tension = 0.16;

QPointF clampedBetween(QPointF control, QPointF from, QPointF to, const QRectF& chartRect) {
    return {std::clamp(control.x(), from.x(), to.x()),
            std::clamp(control.y(), chartRect.y(), chartRect.y() + chartRect.height())};
}

} // namespace

std::vector<CurveSegment> smoothedSegments(const std::vector<QPointF>& points, const QRectF& chartRect) {
    std::vector<CurveSegment> segments;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const QPointF from = points[i];
        const QPointF to = points[i + 1];
        const QPointF before = i == 0 ? from : points[i - 1];
        const QPointF after = i + 2 < points.size() ? points[i + 2] : to;
        segments.push_back({clampedBetween(from + (to - before) * tension, from, to, chartRect),
                            clampedBetween(to - (after - from) * tension, from, to, chartRect), to});
    }
    return segments;
}

} // namespace Varnel
