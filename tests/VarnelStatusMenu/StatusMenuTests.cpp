#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <gtest/gtest.h>

using namespace Varnel;

namespace {

/// One line per entry, for comparing whole menus; a disabled command stands in parentheses.
struct Outline {
    QString operator()(const StatusMenuChart& chart) const {
        return QStringLiteral("chart of %1").arg(chart.values.size());
    }
    QString operator()(const StatusMenuRow& row) const { return row.label + QLatin1Char('|') + row.value; }
    QString operator()(const StatusMenuError& error) const { return error.text; }
    QString operator()(const StatusMenuSpacer&) const { return QStringLiteral("spacer"); }
    QString operator()(const StatusMenuSeparator&) const { return QStringLiteral("-"); }
    QString operator()(const StatusMenuAction& action) const {
        const QString text = (action.title + QLatin1Char(' ') + action.key.toString()).trimmed();
        return action.isEnabled ? text : QStringLiteral("(%1)").arg(text);
    }
};

std::string outline(const StatusMenu& menu) {
    QStringList lines;
    for (const StatusMenuEntry& entry : menu) {
        lines << std::visit(Outline{}, entry);
    }
    return lines.join(QLatin1Char('\n')).toStdString();
}

} // namespace

TEST(StatusMenu, OffersToConnectBeforeAnyUpdate) {
    EXPECT_EQ(outline(statusMenu(StatusPresentation::initial())),
              "Current Output|--\nDaily Output|--\nLast Updated|--\nspacer\n-\n"
              "(Refresh Ctrl+R)\nSettings… Ctrl+,\nConnect…\n-");
}

TEST(StatusMenu, ShowsChartErrorAndDisconnectWhenSignedIn) {
    StatusPresentation presentation;
    presentation.outputValue = QStringLiteral("3.50 kW");
    presentation.outputChartValues = {1, 2};
    presentation.showOutputChart = presentation.isSignedIn = presentation.canRefresh = true;
    presentation.errorLine = QStringLiteral("Network error");
    EXPECT_EQ(
        outline(statusMenu(presentation)),
        "chart of 2\n-\nCurrent Output|3.50 kW\nDaily Output|--\nLast Updated|--\nError: Network error\nspacer\n-\n"
        "Refresh Ctrl+R\nSettings… Ctrl+,\n-\nDisconnect");
}

TEST(StatusMenu, CutsTheErrorAfter72CharactersAndKeepsTheWhole) {
    const QString sun = QString::fromUtf8("☀️");  // two code units that are one character
    const QString star = QString::fromUtf8("𝄞"); // a surrogate pair
    const struct {
        const char* name;
        QString line;
        QString shown;
    } cases[] = {
        {"short", QStringLiteral("no"), QStringLiteral("no")},
        {"just fits", QString(65, QLatin1Char('x')), QString(65, QLatin1Char('x'))},
        {"too long", QString(200, QLatin1Char('x')), QString(65, QLatin1Char('x'))},
        {"surrogates at the cut", QString(64, QLatin1Char('x')) + star + star, QString(64, QLatin1Char('x')) + star},
        {"combined at the cut", QString(64, QLatin1Char('x')) + sun + sun, QString(64, QLatin1Char('x')) + sun},
    };
    const auto belowTheRows = [](const QString& errorLine) {
        StatusPresentation presentation;
        presentation.errorLine = errorLine;
        return statusMenu(presentation).at(3);
    };
    for (const auto& [name, line, shown] : cases) {
        const auto error = std::get<StatusMenuError>(belowTheRows(line));
        EXPECT_EQ(error.text.toStdString(), "Error: " + shown.toStdString()) << name;
        EXPECT_EQ(error.wholeText.toStdString(), "Error: " + line.toStdString()) << name;
    }
    EXPECT_TRUE(std::holds_alternative<StatusMenuSpacer>(belowTheRows({})));
}
