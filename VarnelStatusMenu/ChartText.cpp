#include <VarnelStatusMenu/ChartText.h>

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace Varnel {

namespace {

QString kilowattsText(double kilowatts) {
    // Not std::max: it lets a negative zero through, which would be written with its sign.
    return QLocale().toString(kilowatts > 0 ? kilowatts : 0.0, 'f', 2) + QStringLiteral(" kW");
}

QString valueAtTime(const StatusMenuChart& chart, std::size_t index) {
    const QString time = chart.pointLabels.value(static_cast<qsizetype>(index));
    const QString value = kilowattsText(chart.values[index]);
    return time.isEmpty() ? value : value + QStringLiteral(" at ") + time;
}

} // namespace

QString axisText(double kilowatts) {
    return QLocale().toString(kilowatts, 'f', 1);
}

QString axisTopText(double kilowatts) {
    const double rounded = std::round(kilowatts * 10) / 10;
    return QLocale().toString(rounded, 'f', rounded == std::floor(rounded) ? 0 : 1);
}

QString inspectorText(double kilowatts, const QString& pointLabel) {
    const QString value = kilowattsText(kilowatts);
    return pointLabel.isEmpty() ? value : value + QStringLiteral("  ") + pointLabel;
}

QString chartDescription(const StatusMenuChart& chart) {
    if (chart.values.empty()) {
        return QStringLiteral("No data yet");
    }
    const auto peak = std::max_element(chart.values.begin(), chart.values.end()) - chart.values.begin();
    const QString samples =
        chart.values.size() == 1 ? QStringLiteral("1 sample") : QStringLiteral("%1 samples").arg(chart.values.size());
    return QStringLiteral("Latest %1, peak %2, %3")
        .arg(valueAtTime(chart, chart.values.size() - 1), valueAtTime(chart, static_cast<std::size_t>(peak)), samples);
}

} // namespace Varnel
