#include <VarnelStatusMenu/Window/DayChartView.h>

#include <VarnelShared/Text.h>
#include <VarnelStatusMenu/Chart/ChartText.h>
#include <VarnelStatusMenu/Chart/OutputChartPainter.h>

#include <QCoreApplication>
#include <QCursor>
#include <QDateTime>
#include <QEnterEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <limits>
#include <utility>

namespace Varnel {

namespace {

constexpr qreal gutterRoom = 4; // below the labels of the time axis

/// A part of the widget's own font, which follows the desktop's size of text.
QFont scaled(QFont font, qreal factor) {
    font.setPixelSize(std::max(9, static_cast<int>(std::lround(QFontInfo(font).pixelSize() * factor))));
    return font;
}

QString timeText(Timestamp at, const QString& format) {
    return QLocale().toString(at.toDateTime().time(), format);
}

} // namespace

DayChartView::DayChartView(QWidget* parent)
    : QWidget(parent)
    , m_timeFormat(hoursAndMinutesFormat(QLocale())) {
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(QCoreApplication::translate("OutputWindow", "Output of the day"));
}

void DayChartView::setChart(DayChart chart, const QString& description) {
    setAccessibleDescription(description);
    if (chart != m_chart) {
        m_chart = std::move(chart);
        m_inspected = underMouse() ? pointAt(mapFromGlobal(QPointF(QCursor::pos()))) : std::nullopt;
        update();
    }
}

QString DayChartView::inspectorText() const {
    if (!m_inspected) {
        return {};
    }
    const QString time = timeText(m_inspected->point.at, m_timeFormat);
    return Varnel::inspectorText(m_inspected->point.kilowatts,
                                 m_inspected->isOfService
                                     ? QCoreApplication::translate("OutputWindow", "%1 (from the service)").arg(time)
                                     : time);
}

ChartFonts DayChartView::fonts() const {
    QFont inspector = scaled(font(), 0.9);
    inspector.setWeight(QFont::Medium);
    return {scaled(font(), 0.8), font(), inspector};
}

std::optional<ChartLayout> DayChartView::currentLayout() const {
    const QFontMetricsF metrics(fonts().axis);
    return chartLayout(
        {{}, {QString()}, {}, m_chart.topKW}, size(),
        [&metrics](const QString& text) { return metrics.horizontalAdvance(text); }, metrics.height() + gutterRoom);
}

std::vector<QPointF> DayChartView::placed(const OutputCurve& curve, const ChartLayout& layout) const {
    std::vector<QPointF> points;
    points.reserve(curve.size());
    for (const OutputPoint& point : curve) {
        points.emplace_back(placeOnAxis(point.at, *m_chart.axis, layout.chartRect),
                            heightInChart(point.kilowatts, layout));
    }
    return points;
}

void DayChartView::paintEvent(QPaintEvent* /*event*/) {
    const std::optional<ChartLayout> layout = currentLayout();
    if (!layout) {
        return;
    }
    QPainter painter(this);
    const ChartFonts used = fonts();
    OutputChartPainter chart(painter, *layout, turnedOver(size(), layoutDirection()), palette(), used);
    chart.paintFrame({0.0, 0.25, 0.5, 0.75, 1.0});
    if (!m_chart.axis) {
        chart.paintEmptyText();
        return;
    }
    paintCurves(chart, *layout);
    if (m_inspected) {
        chart.paintInspector(placed({m_inspected->point}, *layout).front(), inspectorText());
    }
    chart.paintXAxisLabels(placedAxisLabels(*m_chart.axis, layout->chartRect, textSizeIn(used.axis), m_timeFormat));
}

void DayChartView::paintCurves(OutputChartPainter& painter, const ChartLayout& layout) const {
    for (const OutputCurve& curve : m_chart.day.filled) {
        painter.paintBorrowedValues(placed(curve, layout));
    }
    for (const OutputCurve& curve : m_chart.day.measured) {
        painter.paintValues(placed(curve, layout));
    }
}

void DayChartView::enterEvent(QEnterEvent* event) {
    setInspected(pointAt(event->position()));
}

void DayChartView::mouseMoveEvent(QMouseEvent* event) {
    setInspected(pointAt(event->position()));
}

void DayChartView::leaveEvent(QEvent* /*event*/) {
    setInspected(std::nullopt);
}

std::optional<DayChartView::Inspected> DayChartView::pointAt(QPointF position) const {
    const std::optional<ChartLayout> layout = currentLayout();
    const QPointF inChart = turnedOver(size(), layoutDirection()).map(position);
    if (!layout || !m_chart.axis || !layout->chartRect.contains(inChart)) {
        return std::nullopt;
    }
    std::optional<Inspected> nearest;
    qreal least = std::numeric_limits<qreal>::max();
    const auto consider = [&](const std::vector<OutputCurve>& curves, bool isOfService) {
        for (const OutputCurve& curve : curves) {
            for (const OutputPoint& point : curve) {
                const qreal away = std::abs(placeOnAxis(point.at, *m_chart.axis, layout->chartRect) - inChart.x());
                if (away < least) {
                    least = away;
                    nearest = Inspected{point, isOfService};
                }
            }
        }
    };
    consider(m_chart.day.measured, false); // first: a reading is nearer than the filling that begins at it
    consider(m_chart.day.filled, true);
    return nearest;
}

void DayChartView::setInspected(std::optional<Inspected> inspected) {
    if (inspected != m_inspected) {
        m_inspected = inspected;
        update();
    }
}

} // namespace Varnel
