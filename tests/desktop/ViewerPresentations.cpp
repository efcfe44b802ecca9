#include "ViewerPresentations.h"

#include <cmath>
#include <numbers>

namespace Varnel::Testing {

namespace {

QString clockText(double hours) {
    const int minutes = static_cast<int>(hours * 60);
    return QStringLiteral("%1:%2")
        .arg(minutes / 60, 2, 10, QLatin1Char('0'))
        .arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

/// A day from six to six with passing clouds, in `count` samples.
StatusPresentation connected(int count) {
    StatusPresentation presentation;
    presentation.title = presentation.outputValue = QStringLiteral("3.42 kW");
    presentation.todayOutputValue = QStringLiteral("18.70 kWh");
    presentation.lastUpdatedValue = QStringLiteral("15:30");
    presentation.outputChartYAxisMaxKW = 4.83;
    presentation.showOutputChart = presentation.isSignedIn = presentation.canRefresh = true;
    for (int i = 0; i < count; ++i) {
        const double share = count == 1 ? 0.5 : static_cast<double>(i) / (count - 1);
        const double sun = 4.2 * std::pow(std::sin(std::numbers::pi * (0.02 + 0.76 * share)), 1.5);
        presentation.outputChartValues.push_back(sun * (1 - 0.25 * std::pow(std::sin(31 * share), 4)));
        presentation.outputChartPointLabels << clockText(6 + 9.5 * share);
    }
    presentation.outputChartXAxisLabels = QStringList{clockText(6), clockText(10.75), clockText(15.5)};
    return presentation;
}

StatusPresentation withError(const QString& line) {
    StatusPresentation presentation = connected(115);
    presentation.errorLine = line;
    return presentation;
}

StatusPresentation withoutData() {
    StatusPresentation presentation = connected(0);
    presentation.title = presentation.outputValue = presentation.todayOutputValue = QStringLiteral("--");
    presentation.lastUpdatedValue = QStringLiteral("--");
    presentation.outputChartXAxisLabels.clear();
    return presentation;
}

StatusPresentation withOwnScale() {
    StatusPresentation presentation = connected(115);
    presentation.outputChartYAxisMaxKW.reset();
    return presentation;
}

} // namespace

std::map<QString, StatusPresentation> viewerPresentations() {
    const QString shortError = QStringLiteral("Network error");
    const QString longError =
        QStringLiteral("The service at the configured address answered with something that is not "
                       "a power reading & gave no reason; check the address in the settings.");
    return {{QStringLiteral("signed-out"), StatusPresentation::initial()},
            {QStringLiteral("connected"), connected(115)},
            {QStringLiteral("own-scale"), withOwnScale()},
            {QStringLiteral("one-sample"), connected(1)},
            {QStringLiteral("no-data"), withoutData()},
            {QStringLiteral("error"), withError(shortError)},
            {QStringLiteral("long-error"), withError(longError)},
            {QStringLiteral("1440-samples"), connected(1440)}};
}

} // namespace Varnel::Testing
