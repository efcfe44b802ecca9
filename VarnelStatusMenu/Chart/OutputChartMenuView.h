#pragma once

#include <VarnelStatusMenu/Chart/ChartGeometry.h>
#include <VarnelStatusMenu/Menu/MenuEntryView.h>

namespace Varnel {

/// The chart of today's output with an inspector that follows the mouse: 250 x 112 points. Its data never changes.
class OutputChartMenuView : public MenuView {
    Q_OBJECT

public:
    explicit OutputChartMenuView(StatusMenuChart chart, QWidget* parent = nullptr);

    /// The value under inspection; none while the mouse is outside the area of the values.
    std::optional<std::size_t> inspectedIndex() const { return m_inspectedIndex; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    std::optional<ChartLayout> currentLayout() const;
    std::optional<std::size_t> indexAt(QPointF position) const;
    void setInspectedIndex(std::optional<std::size_t> index);

    StatusMenuChart m_chart;
    std::optional<std::size_t> m_inspectedIndex;
};

} // namespace Varnel
