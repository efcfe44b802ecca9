#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace Varnel {

/// Everything that the status item and its menu show, already formatted.
struct StatusPresentation {
    QString title = QStringLiteral("SEMS --");       ///< the text in the panel
    QString outputValue = QStringLiteral("--");      ///< "Current Output", with unit
    QString todayOutputValue = QStringLiteral("--"); ///< "Daily Output", with unit
    std::vector<double> outputChartValues;           ///< today's samples in kW, in display order
    QStringList outputChartXAxisLabels;              ///< labels under the chart: start, middle, end
    QStringList outputChartPointLabels;              ///< one per value, shown by the chart's inspector
    std::optional<double> outputChartYAxisMaxKW;     ///< fixed top of the axis in kW; none lets the chart choose
    bool showOutputChart = false;
    QString lastUpdatedValue = QStringLiteral("--");
    std::optional<QString> errorLine; ///< the last error to show
    bool isSignedIn = false;          ///< chooses between Connect… and Disconnect
    bool canRefresh = false;

    /// A whole sentence, "Last reading at 16:05", while readings fail to come and the last one is old; none otherwise.
    /// The item then looks old and says so: its picture is pale, its tooltip has this as a second line.
    std::optional<QString> outdatedLine;

    /// What is shown before the first update: the default values of every field.
    static StatusPresentation initial() { return {}; }

    bool operator==(const StatusPresentation&) const = default;
};

} // namespace Varnel
