#include <Varnel/AppDelegate.h>

#include <Varnel/OutputChart.h>

namespace Varnel {

namespace {
const auto absentValue = QStringLiteral("--");

std::vector<double> chartValues(const std::vector<OutputSample>& samples) {
    std::vector<double> values;
    values.reserve(samples.size());
    for (const OutputSample& sample : samples) {
        values.push_back(sample.kilowatts);
    }
    return values;
}
} // namespace

void AppDelegate::updateStatusBar() {
    if (m_isTerminated) {
        return;
    }
    const Timestamp now = m_platform.clock.now();
    m_todayOutputSamples.resetIfNeeded(now);
    scheduleMidnightUpdate(now);
    StatusPresentation presentation;
    presentation.isSignedIn = m_semsSession.has_value();
    presentation.canRefresh = presentation.isSignedIn;
    presentation.showOutputChart = presentation.isSignedIn && m_settings.showOutputChart;
    addValues(presentation);
    addChart(presentation, now);
    presentation.errorLine = m_lastErrorMessage;
    m_statusBarController.update(presentation);
    showConnectionState();
}

void AppDelegate::addValues(StatusPresentation& presentation) const {
    const StatusPresentationBuilder& formats = m_statusPresentationBuilder;
    const QString todayOutput =
        m_latestTodayOutputKWh ? formats.formatEnergyDisplay(*m_latestTodayOutputKWh) : absentValue;
    if (m_latestPowerKW) {
        presentation.title = formats.formatPowerDisplay(*m_latestPowerKW);
        presentation.outputValue = presentation.title;
        presentation.todayOutputValue = todayOutput;
    } else if (presentation.isSignedIn) {
        presentation.title = absentValue;
        presentation.todayOutputValue = todayOutput;
    }
    if (m_lastUpdatedAt) {
        presentation.lastUpdatedValue = formats.formatTime(*m_lastUpdatedAt);
    }
}

void AppDelegate::addChart(StatusPresentation& presentation, Timestamp now) const {
    const std::vector<OutputSample> visible = m_todayOutputSamples.visible(now);
    presentation.outputChartValues = chartValues(visible);
    if (!presentation.showOutputChart) {
        return;
    }
    presentation.outputChartXAxisLabels = chartXAxisLabels(visible, now, m_statusPresentationBuilder);
    presentation.outputChartPointLabels = chartPointLabels(visible, m_statusPresentationBuilder);
    presentation.outputChartYAxisMaxKW =
        outputChartYAxisMaxKW(presentation.outputChartValues, m_systemSizeKW, m_settings.chartScaleMode);
}

} // namespace Varnel
