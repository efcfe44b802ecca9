#pragma once

#include <Varnel/StatusPresentationBuilder.h>
#include <Varnel/TodayOutputSamples.h>

#include <VarnelShared/AppSettings.h>

#include <QStringList>

#include <optional>
#include <vector>

namespace Varnel {

/// Three times under the chart: that of the first sample, the middle, and the reference date (the first sample's own
/// time where the reference date lies before it). None without samples.
QStringList chartXAxisLabels(const std::vector<OutputSample>& visibleSamples, Timestamp referenceDate,
                             const StatusPresentationBuilder& formats);

/// The time of each sample.
QStringList chartPointLabels(const std::vector<OutputSample>& visibleSamples, const StatusPresentationBuilder& formats);

/// The top of the chart's vertical axis in kW, at least 0.1. Adaptive: 15 % above the peak, but not above the
/// station's size where it is known. Fixed: the station's size, else the peak.
double outputChartYAxisMaxKW(const std::vector<double>& values, std::optional<double> systemSizeKW,
                             ChartScaleMode mode);

} // namespace Varnel
