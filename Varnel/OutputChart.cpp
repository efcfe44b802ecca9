#include <Varnel/OutputChart.h>

#include <algorithm>

namespace Varnel {

namespace {
constexpr double smallestAxisKW = 0.1;
constexpr double headroom = 1.15;

double adaptiveMaxKW(const std::vector<double>& values, double peak, std::optional<double> size) {
    if (values.empty()) {
        return size.value_or(smallestAxisKW);
    }
    const double candidate = std::max(peak * headroom, smallestAxisKW);
    return size ? std::min(*size, candidate) : candidate;
}
} // namespace

QStringList chartXAxisLabels(const std::vector<OutputSample>& visibleSamples, Timestamp referenceDate,
                             const StatusPresentationBuilder& formats) {
    if (visibleSamples.empty()) {
        return {};
    }
    const Timestamp start = visibleSamples.front().timestamp;
    const Timestamp end = std::max(referenceDate, start);
    const Timestamp middle = start + (end - start) * 0.5;
    return {formats.formatTime(start), formats.formatTime(middle), formats.formatTime(end)};
}

QStringList chartPointLabels(const std::vector<OutputSample>& visibleSamples,
                             const StatusPresentationBuilder& formats) {
    QStringList labels;
    labels.reserve(static_cast<qsizetype>(visibleSamples.size()));
    for (const OutputSample& sample : visibleSamples) {
        labels << formats.formatTime(sample.timestamp);
    }
    return labels;
}

double outputChartYAxisMaxKW(const std::vector<double>& values, std::optional<double> systemSizeKW,
                             ChartScaleMode mode) {
    const double largest = values.empty() ? smallestAxisKW : *std::max_element(values.begin(), values.end());
    const double peak = std::max(largest, smallestAxisKW);
    const std::optional<double> size =
        systemSizeKW ? std::optional(std::max(*systemSizeKW, smallestAxisKW)) : std::nullopt;
    switch (mode) {
    case ChartScaleMode::adaptive:
        return adaptiveMaxKW(values, peak, size);
    case ChartScaleMode::fixed:
        break;
    }
    return size.value_or(peak);
}

} // namespace Varnel
