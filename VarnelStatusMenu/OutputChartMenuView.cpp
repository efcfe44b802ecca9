#include <VarnelStatusMenu/OutputChartMenuView.h>

#include <VarnelStatusMenu/ChartText.h>
#include <VarnelStatusMenu/MenuFonts.h>
#include <VarnelStatusMenu/OutputChartPainter.h>

#include <QEnterEvent>
#include <QMouseEvent>

#include <utility>

namespace Varnel {

OutputChartMenuView::OutputChartMenuView(StatusMenuChart chart, QWidget* parent)
    : QWidget(parent)
    , m_chart(std::move(chart)) {
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Today's output"));
    setAccessibleDescription(chartDescription(m_chart));
}

QSize OutputChartMenuView::sizeHint() const {
    return {250, 112};
}

void OutputChartMenuView::paintEvent(QPaintEvent* /*event*/) {
    const auto layout = currentLayout();
    if (!layout) {
        m_inspectedIndex.reset();
        return;
    }
    QPainter painter(this);
    OutputChartPainter(painter, m_chart, *layout, height(), palette()).paint(m_inspectedIndex);
}

void OutputChartMenuView::enterEvent(QEnterEvent* event) {
    setInspectedIndex(indexAt(event->position()));
}

void OutputChartMenuView::mouseMoveEvent(QMouseEvent* event) {
    setInspectedIndex(indexAt(event->position()));
}

void OutputChartMenuView::leaveEvent(QEvent* /*event*/) {
    setInspectedIndex(std::nullopt);
}

std::optional<ChartLayout> OutputChartMenuView::currentLayout() const {
    const QFontMetricsF metrics(MenuFonts::axisLabel());
    return chartLayout(m_chart, size(), [&metrics](const QString& text) { return metrics.horizontalAdvance(text); });
}

std::optional<std::size_t> OutputChartMenuView::indexAt(QPointF position) const {
    const auto layout = currentLayout();
    const QPointF inChart = turnedOver(height()).map(position);
    if (!layout || !layout->chartRect.contains(inChart)) {
        return std::nullopt;
    }
    return nearestPointIndex(chartPoints(m_chart.values, *layout), inChart.x());
}

void OutputChartMenuView::setInspectedIndex(std::optional<std::size_t> index) {
    if (index != m_inspectedIndex) {
        m_inspectedIndex = index;
        update();
    }
}

} // namespace Varnel
