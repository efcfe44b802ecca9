// Shows the status item and its menu for one of a few presentations and prints each command that is chosen, for looking
// at them and for the desktop tests.

#include <VarnelShared/Clock.h>
#include <VarnelShared/SystemTime.h>
#include <VarnelStatusMenu/Linux/SessionStatusItem.h>
#include <VarnelStatusMenu/Menu/PopupPlacement.h>
#include <VarnelStatusMenu/StatusBarController.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QMap>
#include <QPalette>
#include <QTextStream>
#include <QTime>

#include <cmath>
#include <numbers>

using namespace Varnel;

namespace {

QString clockText(double hours) {
    return QTime(0, 0).addSecs(static_cast<int>(hours * 3600)).toString(QStringLiteral("HH:mm"));
}

/// A day from six to half past three with passing clouds, in `count` samples.
StatusPresentation connected(int count, const QString& errorLine = {}) {
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
    presentation.errorLine = errorLine;
    return presentation;
}

StatusPresentation withoutData() {
    StatusPresentation presentation;
    presentation.title = QStringLiteral("--");
    presentation.showOutputChart = presentation.isSignedIn = presentation.canRefresh = true;
    return presentation;
}

StatusPresentation outdated() {
    StatusPresentation presentation = connected(115, QStringLiteral("Network error"));
    presentation.outdatedLine = QStringLiteral("Last reading at 15:30");
    return presentation;
}

const QMap<QString, StatusPresentation>& presentations() {
    static const QMap<QString, StatusPresentation> byName{
        {QStringLiteral("signed-out"), StatusPresentation::initial()},
        {QStringLiteral("connected"), connected(115)},
        {QStringLiteral("one-sample"), connected(1)},
        {QStringLiteral("no-data"), withoutData()},
        {QStringLiteral("error"), connected(115, QStringLiteral("Network error"))},
        {QStringLiteral("long-error"),
         connected(115, QStringLiteral("The service at the configured address answered with something that is not a "
                                       "power reading & gave no reason; check the address in the settings."))},
        {QStringLiteral("1440-samples"), connected(1440)},
        {QStringLiteral("outdated"), outdated()},
    };
    return byName;
}

QPalette darkPalette() {
    QPalette palette(QColor(0x35, 0x36, 0x3a), QColor(0x2b, 0x2c, 0x30));
    palette.setColor(QPalette::Base, QColor(0x24, 0x25, 0x28));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8b, 0xe8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

std::function<void()> printing(const char* text) {
    return [text] { QTextStream(stdout) << text << Qt::endl; };
}

} // namespace

int main(int argc, char** argv) {
    choosePlatform();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Use a dark palette."));
    parser.addOption(dark);
    parser.addHelpOption();
    const QString names = presentations().keys().join(QStringLiteral(", "));
    parser.addPositionalArgument(QStringLiteral("presentation"), names);
    parser.process(application);
    const auto chosen = presentations().find(parser.positionalArguments().value(0, QStringLiteral("connected")));
    if (chosen == presentations().end()) {
        parser.showHelp(1);
    }
    if (parser.isSet(dark)) {
        QApplication::setPalette(darkPalette());
    }
    const SystemClock clock;
    SystemTimers timers(clock);
    StatusBarController controller(std::make_unique<SessionStatusItem>(QStringLiteral("com.varnel.menubar"), timers));
    controller.onRefresh = printing("refresh");
    controller.onOpenPreferences = printing("preferences");
    controller.onSignIn = printing("signIn");
    controller.onSignOut = printing("signOut");
    controller.update(*chosen);
    return QApplication::exec();
}
