#include <Varnel/StatusPresentationBuilder.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/Text.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace Varnel {

namespace {
constexpr double smallestShownInKilowatts = 0.1;
constexpr double wattsPerKilowatt = 1000.0;
constexpr double smallestAxisKW = 0.1;
constexpr double headroom = 1.15;

std::vector<double> chartValues(const std::vector<OutputSample>& samples) {
    std::vector<double> values(samples.size());
    std::transform(samples.begin(), samples.end(), values.begin(), std::mem_fn(&OutputSample::kilowatts));
    return values;
}

double adaptiveMaxKW(const std::vector<double>& values, double peak, std::optional<double> size) {
    if (values.empty()) {
        return size.value_or(smallestAxisKW);
    }
    const double candidate = std::max(peak * headroom, smallestAxisKW);
    return size ? std::min(*size, candidate) : candidate;
}
} // namespace

StatusPresentationBuilder::StatusPresentationBuilder(const QLocale& locale)
    : m_locale(locale)
    , m_timeFormat(hoursAndMinutesFormat(locale)) {}

StatusPresentation StatusPresentationBuilder::build(const StatusValues& values,
                                                    const std::vector<OutputSample>& samples,
                                                    const AppSettings& settings, Timestamp now) const {
    StatusPresentation presentation;
    presentation.isSignedIn = values.isConnected;
    presentation.canRefresh = values.isConnected;
    presentation.showOutputChart = values.isConnected && settings.showOutputChart;
    addTexts(presentation, values);
    if (const std::optional<Timestamp> outdated = outdatedAt(values, settings); outdated && *outdated <= now) {
        presentation.outdatedLine = outdatedText(*values.lastUpdatedAt, now);
    }
    presentation.outputChartValues = chartValues(samples);
    if (presentation.showOutputChart) {
        presentation.outputChartXAxisLabels = chartXAxisLabels(samples, now);
        presentation.outputChartPointLabels = updatedPointLabels(samples);
        presentation.outputChartYAxisMaxKW =
            outputChartYAxisMaxKW(presentation.outputChartValues, values.systemSizeKW, settings.chartScaleMode);
    }
    return presentation;
}

void StatusPresentationBuilder::addTexts(StatusPresentation& presentation, const StatusValues& values) const {
    const auto absent = QStringLiteral("--");
    const QString todayOutput = values.todayOutputKWh ? formatEnergyDisplay(*values.todayOutputKWh) : absent;
    if (values.powerKW) {
        presentation.title = formatPowerDisplay(*values.powerKW);
        presentation.outputValue = presentation.title;
        presentation.todayOutputValue = todayOutput;
    } else if (values.isConnected) {
        presentation.title = absent;
        presentation.todayOutputValue = todayOutput;
    }
    if (values.lastUpdatedAt) {
        presentation.lastUpdatedValue = formatTime(*values.lastUpdatedAt);
    }
    presentation.errorLine = values.errorMessage;
}

std::optional<Timestamp> StatusPresentationBuilder::outdatedAt(const StatusValues& values,
                                                               const AppSettings& settings) {
    const bool isKeptUpToDate = values.isConnected && !values.errorMessage;
    if (isKeptUpToDate || !values.powerKW || !values.lastUpdatedAt) {
        return std::nullopt;
    }
    return *values.lastUpdatedAt + Seconds(2.0 * static_cast<double>(settings.clampedPollInterval()));
}

std::optional<Timestamp> StatusPresentationBuilder::nextChange(const StatusValues& values, const AppSettings& settings,
                                                               Timestamp now) {
    const std::optional<Timestamp> midnight = Calendar::startOfNextDay(now);
    const std::optional<Timestamp> outdated = outdatedAt(values, settings);
    return midnight && outdated > now ? std::min(outdated, midnight) : midnight;
}

QString StatusPresentationBuilder::outdatedText(Timestamp lastUpdatedAt, Timestamp now) const {
    const QString time = formatTime(lastUpdatedAt);
    if (Calendar::isSameDay(lastUpdatedAt, now)) {
        return QCoreApplication::translate("StatusPresentation", "Last reading at %1").arg(time);
    }
    const QString date = m_locale.toString(lastUpdatedAt.toDateTime().date(), QLocale::ShortFormat);
    return QCoreApplication::translate("StatusPresentation", "Last reading on %1 at %2").arg(date, time);
}

QString StatusPresentationBuilder::formatPowerDisplay(double kilowatts) const {
    const double shown = std::max(kilowatts, 0.0);
    if (shown < smallestShownInKilowatts) {
        return QString::number(std::lround(shown * wattsPerKilowatt)) + QLatin1String(" W");
    }
    return kilowattsText(shown, m_locale);
}

QString StatusPresentationBuilder::formatEnergyDisplay(double kilowattHours) const {
    return kilowattHoursText(kilowattHours, m_locale);
}

QString StatusPresentationBuilder::formatTime(Timestamp instant) const {
    return m_locale.toString(instant.toDateTime().time(), m_timeFormat);
}

QStringList StatusPresentationBuilder::chartXAxisLabels(const std::vector<OutputSample>& visibleSamples,
                                                        Timestamp referenceDate) const {
    if (visibleSamples.empty()) {
        return {};
    }
    const Timestamp start = visibleSamples.front().timestamp;
    const Timestamp end = std::max(referenceDate, start);
    const Timestamp middle = start + (end - start) * 0.5;
    return {formatTime(start), formatTime(middle), formatTime(end)};
}

QStringList StatusPresentationBuilder::chartPointLabels(const std::vector<OutputSample>& visibleSamples) const {
    QStringList labels;
    labels.reserve(static_cast<qsizetype>(visibleSamples.size()));
    for (const OutputSample& sample : visibleSamples) {
        labels << formatTime(sample.timestamp);
    }
    return labels;
}

/// The system's zone may have become another one since.
bool StatusPresentationBuilder::areStillRight(const KnownLabels& known) const {
    return known.samples.empty() || (known.labels.front() == formatTime(known.samples.front().timestamp) &&
                                     known.labels.back() == formatTime(known.samples.back().timestamp));
}

/// As `chartPointLabels`, but makes only those that it has not made for the samples before.
QStringList StatusPresentationBuilder::updatedPointLabels(const std::vector<OutputSample>& visibleSamples) const {
    if (visibleSamples.empty() || !areStillRight(m_known)) {
        m_known = {};
    }
    const auto isSameTime = [](const OutputSample& one, const OutputSample& other) {
        return one.timestamp == other.timestamp;
    };
    auto& [samples, labels] = m_known;
    const auto first = std::find_if(samples.begin(), samples.end(), [&](const OutputSample& sample) {
        return isSameTime(sample, visibleSamples.front());
    });
    labels.remove(0, first - samples.begin());
    const auto common = std::mismatch(first, samples.end(), visibleSamples.begin(), visibleSamples.end(), isSameTime);
    labels.resize(common.second - visibleSamples.begin());
    for (auto sample = common.second; sample != visibleSamples.end(); ++sample) {
        labels << formatTime(sample->timestamp);
    }
    samples = visibleSamples;
    return labels;
}

double StatusPresentationBuilder::outputChartYAxisMaxKW(const std::vector<double>& values,
                                                        std::optional<double> systemSizeKW, ChartScaleMode mode) {
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
