#pragma once

#include <VarnelStatusMenu/Window/DayAxis.h>

#include <QWidget>

namespace Varnel {

class OutputChartPainter;
struct ChartFonts;

/// One day, ready to be drawn.
struct DayChart {
    DrawnDay day;
    std::optional<DayAxis> axis; ///< none without points
    double topKW = 0.1;          ///< of the value axis
    bool operator==(const DayChart&) const = default;
};

/// The large chart of one day, drawn by the rules of the menu's and true to time, with an inspector that follows the
/// mouse. What comes from the service is dotted, and the inspector says so.
class DayChartView : public QWidget {
    Q_OBJECT

public:
    explicit DayChartView(QWidget* parent = nullptr);

    /// `description` says the same in words, for who cannot see it.
    void setChart(DayChart chart, const QString& description);

    /// What the inspector says at the moment; empty while it is not there.
    QString inspectorText() const;

    QSize sizeHint() const override { return {560, 320}; }
    QSize minimumSizeHint() const override { return {280, 160}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    struct Inspected {
        OutputPoint point;
        bool isOfService = false;
        bool operator==(const Inspected&) const = default;
    };

    ChartFonts fonts() const;
    std::optional<ChartLayout> currentLayout() const;
    std::vector<QPointF> placed(const OutputCurve& curve, const ChartLayout& layout) const;
    std::optional<Inspected> pointAt(QPointF position) const;
    void setInspected(std::optional<Inspected> inspected);
    void paintCurves(OutputChartPainter& painter, const ChartLayout& layout) const;

    DayChart m_chart;
    std::optional<Inspected> m_inspected;
    QString m_timeFormat;
};

} // namespace Varnel
