#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <VarnelShared/Text.h>

#include <QCoreApplication>

namespace Varnel {

namespace {

constexpr int longestErrorText = 72;

StatusMenuError errorRow(const QString& line) {
    const QString wholeText = QCoreApplication::translate("StatusMenu", "Error: %1").arg(line);
    return {firstCharacters(wholeText, longestErrorText), wholeText};
}

StatusMenuAction command(StatusMenuCommand command, const QString& title) {
    return {command, title, {}, {}, true};
}

void appendRows(StatusMenu& menu, const StatusPresentation& presentation) {
    menu.push_back(
        StatusMenuRow{QCoreApplication::translate("StatusMenu", "Current Output"), presentation.outputValue});
    menu.push_back(
        StatusMenuRow{QCoreApplication::translate("StatusMenu", "Daily Output"), presentation.todayOutputValue});
    menu.push_back(
        StatusMenuRow{QCoreApplication::translate("StatusMenu", "Last Updated"), presentation.lastUpdatedValue});
    if (presentation.errorLine && !presentation.errorLine->isEmpty()) {
        menu.push_back(errorRow(*presentation.errorLine));
    }
}

void appendCommands(StatusMenu& menu, const StatusPresentation& presentation) {
    menu.push_back(StatusMenuAction{StatusMenuCommand::refresh, QCoreApplication::translate("StatusMenu", "Refresh"),
                                    QKeySequence(Qt::CTRL | Qt::Key_R), QStringLiteral("view-refresh"),
                                    presentation.canRefresh});
    menu.push_back(
        StatusMenuAction{StatusMenuCommand::preferences, QCoreApplication::translate("StatusMenu", "Settings…"),
                         QKeySequence(Qt::CTRL | Qt::Key_Comma), QStringLiteral("preferences-system"), true});
    if (!presentation.isSignedIn) {
        menu.push_back(command(StatusMenuCommand::signIn, QCoreApplication::translate("StatusMenu", "Connect…")));
    }
    menu.push_back(StatusMenuSeparator{});
    if (presentation.isSignedIn) {
        menu.push_back(command(StatusMenuCommand::signOut, QCoreApplication::translate("StatusMenu", "Disconnect")));
    }
}

/// Gives the text form of each kind of entry; none for what only takes room.
struct Exporter {
    using Item = std::optional<ExportedMenuItem>;

    static ExportedMenuItem text(const QString& title) {
        return {ExportedMenuItem::Kind::text, title, std::nullopt, {}, {}, false};
    }

    Item operator()(const StatusMenuChart&) const {
        return ExportedMenuItem{ExportedMenuItem::Kind::showChart,
                                QCoreApplication::translate("StatusMenu", "Show Chart"),
                                std::nullopt,
                                {},
                                {},
                                true};
    }
    Item operator()(const StatusMenuRow& row) const { return text(row.label + QStringLiteral(": ") + row.value); }
    Item operator()(const StatusMenuError& error) const { return text(error.text); }
    Item operator()(const StatusMenuSpacer&) const { return std::nullopt; }
    Item operator()(const StatusMenuSeparator&) const {
        return ExportedMenuItem{ExportedMenuItem::Kind::separator, {}, std::nullopt, {}, {}, false};
    }
    Item operator()(const StatusMenuAction& action) const {
        return ExportedMenuItem{ExportedMenuItem::Kind::command,
                                action.title,
                                action.command,
                                action.key,
                                action.iconName,
                                action.isEnabled};
    }
};

} // namespace

StatusMenu statusMenu(const StatusPresentation& presentation) {
    StatusMenu menu;
    if (presentation.showOutputChart) {
        menu.push_back(StatusMenuChart{presentation.outputChartValues, presentation.outputChartXAxisLabels,
                                       presentation.outputChartPointLabels, presentation.outputChartYAxisMaxKW});
        menu.push_back(StatusMenuSeparator{});
    }
    appendRows(menu, presentation);
    menu.push_back(StatusMenuSpacer{});
    menu.push_back(StatusMenuSeparator{});
    appendCommands(menu, presentation);
    return menu;
}

ExportedMenu exportedMenu(const StatusMenu& menu) {
    ExportedMenu exported;
    for (const StatusMenuEntry& entry : menu) {
        if (const auto item = std::visit(Exporter{}, entry)) {
            exported.push_back(*item);
        }
        if (std::holds_alternative<StatusMenuChart>(entry)) {
            const QString title = QCoreApplication::translate("OutputWindow", "Show Chart in a Window");
            exported.push_back({ExportedMenuItem::Kind::showWindow, title, std::nullopt, {}, {}, true});
        }
    }
    return exported;
}

std::optional<StatusMenuCommand> commandForKey(const StatusMenu& menu, QKeyCombination key) {
    for (const StatusMenuEntry& entry : menu) {
        const auto* action = std::get_if<StatusMenuAction>(&entry);
        if (action != nullptr && action->isEnabled && action->key == QKeySequence(key)) {
            return action->command;
        }
    }
    return std::nullopt;
}

} // namespace Varnel
