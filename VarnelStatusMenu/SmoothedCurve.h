#pragma once

#include <QPointF>
#include <QRectF>

#include <vector>

namespace Varnel {

/// One cubic Bézier segment from where the one before it ended.
struct CurveSegment {
    QPointF control1;
    QPointF control2;
    QPointF end;
    bool operator==(const CurveSegment&) const = default;
};

/// The segments that join the points smoothly, one per pair of neighbours; none for fewer than two points. Points run
/// from left to right. The curve overshoots neither sideways nor beyond `chartRect`.
std::vector<CurveSegment> smoothedSegments(const std::vector<QPointF>& points, const QRectF& chartRect);

} // namespace Varnel
