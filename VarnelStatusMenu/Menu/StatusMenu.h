#pragma once

#include <VarnelStatusMenu/StatusPresentation.h>

#include <QKeySequence>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>
#include <vector>

namespace Varnel {

/// What a person can choose in the status menu.
enum class StatusMenuCommand { refresh, preferences, signIn, signOut };

/// The chart of today's output.
struct StatusMenuChart {
    std::vector<double> values; ///< kW
    QStringList xAxisLabels;
    QStringList pointLabels;
    std::optional<double> yAxisMaxKW;
    bool operator==(const StatusMenuChart&) const = default;
};
/// A label and its value.
struct StatusMenuRow {
    QString label;
    QString value;
    bool operator==(const StatusMenuRow&) const = default;
};
/// The error row: `text` is what is drawn, `wholeText` is the tooltip and the accessible text.
struct StatusMenuError {
    QString text;      ///< "Error: " and the line, cut to 72 characters
    QString wholeText; ///< the same, not cut
    bool operator==(const StatusMenuError&) const = default;
};
/// Four points of nothing.
struct StatusMenuSpacer {
    bool operator==(const StatusMenuSpacer&) const = default;
};
struct StatusMenuSeparator {
    bool operator==(const StatusMenuSeparator&) const = default;
};
struct StatusMenuAction {
    StatusMenuCommand command = StatusMenuCommand::refresh;
    QString title;
    QKeySequence key; ///< empty: none
    QString iconName; ///< of the icon naming specification; empty: none
    bool isEnabled = true;
    bool operator==(const StatusMenuAction&) const = default;
};
using StatusMenuEntry = std::variant<StatusMenuChart, StatusMenuRow, StatusMenuError, StatusMenuSpacer,
                                     StatusMenuSeparator, StatusMenuAction>;

/// The menu as a value, in the order in which it is shown.
using StatusMenu = std::vector<StatusMenuEntry>;

/// One row of the menu that a panel shows by itself: text only.
struct ExportedMenuItem {
    enum class Kind { text, separator, command, showChart, showWindow };
    Kind kind = Kind::text; ///< `text` is a disabled row
    QString title;
    std::optional<StatusMenuCommand> command; ///< of `command` alone
    QKeySequence key;
    QString iconName;
    bool isEnabled = false;
    bool operator==(const ExportedMenuItem&) const = default;
};
using ExportedMenu = std::vector<ExportedMenuItem>;

/// The menu that shows the presentation.
StatusMenu statusMenu(const StatusPresentation& presentation);

/// The same rows and commands as text, with "Show Chart" and "Show Chart in a Window" at the head when the menu has a
/// chart.
ExportedMenu exportedMenu(const StatusMenu& menu);

/// The enabled command whose key equivalent is the pressed key.
std::optional<StatusMenuCommand> commandForKey(const StatusMenu& menu, QKeyCombination key);

} // namespace Varnel
