#pragma once

#include <Varnel/TodayOutput.h>

#include <VarnelShared/AppSettings.h>
#include <VarnelStatusMenu/StatusPresentation.h>

#include <QLocale>

namespace Varnel {

/// The last known values of one connection.
struct StatusValues {
    bool isConnected = false; ///< a session is present
    std::optional<double> powerKW = {};
    std::optional<double> todayOutputKWh = {};
    std::optional<double> systemSizeKW = {};
    std::optional<Timestamp> lastUpdatedAt = {};
    std::optional<QString> errorMessage = {}; ///< the one line for problems
};

/// Turns what is known at one moment into everything that the status item and its menu show, in the user's own formats
/// of numbers and times.
class StatusPresentationBuilder {
public:
    explicit StatusPresentationBuilder(const QLocale& locale = QLocale::system());

    /// `samples` are those of the day of `now`. The chart's labels and axis are there only where the chart is shown.
    StatusPresentation build(const StatusValues& values, const std::vector<OutputSample>& samples,
                             const AppSettings& settings, Timestamp now) const;

    /// When the last reading becomes an old one: after two intervals, while polls fail. None while nothing fails.
    static std::optional<Timestamp> outdatedAt(const StatusValues& values, const AppSettings& settings);

    /// When what is shown changes without a reading: at midnight, and when the last reading becomes an old one.
    static std::optional<Timestamp> nextChange(const StatusValues& values, const AppSettings& settings, Timestamp now);

    /// A power in kW as text: "46 W" below 0.1 kW, "1.23 kW" otherwise; a negative power counts as 0.
    QString formatPowerDisplay(double kilowatts) const;

    /// An energy in kWh with two decimals: "3.50 kWh".
    QString formatEnergyDisplay(double kilowattHours) const;

    /// Hours and minutes in the 12- or 24-hour convention of the user, in the system's zone of this moment.
    QString formatTime(Timestamp instant) const;

    /// Three times under the chart: that of the first sample, the middle, and the reference date (the first sample's
    /// own time where the reference date lies before it). None without samples.
    QStringList chartXAxisLabels(const std::vector<OutputSample>& visibleSamples, Timestamp referenceDate) const;

    /// The time of each sample.
    QStringList chartPointLabels(const std::vector<OutputSample>& visibleSamples) const;

    /// The top of the chart's vertical axis in kW, at least 0.1. Adaptive: 15 % above the peak, but not above the
    /// station's size where it is known. Fixed: the station's size, else the peak.
    static double outputChartYAxisMaxKW(const std::vector<double>& values, std::optional<double> systemSizeKW,
                                        ChartScaleMode mode);

private:
    /// The labels that were made last. A day grows by one sample at a time, and each label asks for the system's zone.
    struct KnownLabels {
        std::vector<OutputSample> samples;
        QStringList labels; ///< one for each of them
    };

    void addTexts(StatusPresentation& presentation, const StatusValues& values) const;
    QString outdatedText(Timestamp lastUpdatedAt, Timestamp now) const;
    bool areStillRight(const KnownLabels& known) const;
    QStringList updatedPointLabels(const std::vector<OutputSample>& visibleSamples) const;

    QLocale m_locale;
    QString m_timeFormat;
    mutable KnownLabels m_known;
};

} // namespace Varnel
