#include <VarnelStatusMenu/Chart/OutputChartMenuView.h>

#include <VarnelStatusMenu/Chart/ChartText.h>
#include <VarnelStatusMenu/Chart/OutputChartPainter.h>
#include <VarnelStatusMenu/Menu/MenuStyle.h>

#include <QCoreApplication>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace Varnel {

namespace {

constexpr int chartHeight = 112;

} // namespace

OutputChartMenuView::OutputChartMenuView(StatusMenuChart chart, QWidget* parent)
    : MenuView(chartHeight, parent)
    , m_chart(std::move(chart)) {
    setMouseTracking(true);
    setAccessibleName(QCoreApplication::translate("StatusMenu", "Today's output"));
    setAccessibleDescription(chartDescription(m_chart));
}

void OutputChartMenuView::paintEvent(QPaintEvent* /*event*/) {
    const auto layout = currentLayout();
    if (!layout) {
        m_inspectedIndex.reset();
        return;
    }
    QPainter painter(this);
    paintOutputChart(painter, m_chart, *layout, turnedOver(size(), layoutDirection()), palette(), m_inspectedIndex);
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
    const QPointF inChart = turnedOver(size(), layoutDirection()).map(position);
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
