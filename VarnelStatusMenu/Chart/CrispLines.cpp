#include <VarnelStatusMenu/Chart/CrispLines.h>

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Varnel {

CrispLines::CrispLines(const QPainter& painter)
    : m_toDevice(painter.deviceTransform()) {}

qreal CrispLines::width(qreal width) const {
    const qreal scale = m_toDevice.m11();
    return std::max(1.0, std::floor(width * scale)) / scale;
}

QPointF CrispLines::position(QPointF position, qreal width) const {
    const QPointF device = m_toDevice.map(position);
    return m_toDevice.inverted().map(QPointF(aligned(device.x(), width), aligned(device.y(), width)));
}

QRectF CrispLines::rect(const QRectF& rect, qreal width) const {
    return {position(rect.topLeft(), width), position(rect.bottomRight(), width)};
}

qreal CrispLines::aligned(qreal devicePosition, qreal width) const {
    const auto pixels = static_cast<int>(std::round(this->width(width) * m_toDevice.m11()));
    return pixels % 2 == 1 ? std::floor(devicePosition) + 0.5 : std::round(devicePosition);
}

} // namespace Varnel
