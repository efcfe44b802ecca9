#include <VarnelStatusMenu/Chart/ChartText.h>

#include <VarnelShared/Text.h>

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace Varnel {

namespace {

QString valueText(double kilowatts) {
    // Not std::max: it lets a negative zero through, which would be written with its sign.
    return kilowattsText(kilowatts > 0 ? kilowatts : 0.0, QLocale());
}

QString valueAtTime(const StatusMenuChart& chart, std::size_t index) {
    const QString time = chart.pointLabels.value(static_cast<qsizetype>(index));
    const QString value = valueText(chart.values[index]);
    return time.isEmpty() ? value : QCoreApplication::translate("StatusMenu", "%1 at %2").arg(value, time);
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
    const QString value = valueText(kilowatts);
    return pointLabel.isEmpty() ? value : value + QStringLiteral("  ") + pointLabel;
}

QString chartDescription(const StatusMenuChart& chart) {
    if (chart.values.empty()) {
        return QCoreApplication::translate("StatusMenu", "No data yet");
    }
    const auto peak = std::max_element(chart.values.begin(), chart.values.end()) - chart.values.begin();
    const QString samples = chart.values.size() == 1
                                ? QCoreApplication::translate("StatusMenu", "1 sample")
                                : QCoreApplication::translate("StatusMenu", "%1 samples").arg(chart.values.size());
    return QCoreApplication::translate("StatusMenu", "Latest %1, peak %2, %3")
        .arg(valueAtTime(chart, chart.values.size() - 1), valueAtTime(chart, static_cast<std::size_t>(peak)), samples);
}

} // namespace Varnel
