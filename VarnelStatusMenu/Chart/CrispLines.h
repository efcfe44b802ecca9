#pragma once

#include <QRectF>
#include <QTransform>

class QPainter;

namespace Varnel {

/// Fits thin straight lines to the pixels of the device that is painted on, so that they are sharp at every scale
/// factor. Positions are those of the painter, in logical pixels.
class CrispLines {
public:
    explicit CrispLines(const QPainter& painter);

    /// The width in whole device pixels, rounded down, but at least one.
    qreal width(qreal width) const;

    /// The position nearest to `position` where the edges of a line of `width` fall between device pixels.
    QPointF position(QPointF position, qreal width) const;
    QRectF rect(const QRectF& rect, qreal width) const;

private:
    qreal aligned(qreal devicePosition, qreal width) const;

    QTransform m_toDevice;
};

} // namespace Varnel
