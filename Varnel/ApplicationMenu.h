#pragma once

#include <QKeySequence>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <vector>

class QMenu;

namespace Varnel {

/// What the application menu offers.
enum class ApplicationCommand { about, settings, checkForUpdates, hide, hideOthers, showAll, quit };

struct ApplicationMenuEntry {
    bool isSeparator = false;
    ApplicationCommand command = ApplicationCommand::about;
    QString title;
    QKeySequence key; ///< empty: none
};

/// The entries in order. Hiding other applications and showing all of them is there without an action: no freedesktop
/// desktop lets one program do that to another.
std::vector<ApplicationMenuEntry> applicationMenuEntries();

/// What is done for each command; a command that has nothing here is disabled in the menu.
using ApplicationCommandActions = std::map<ApplicationCommand, std::function<void()>>;

/// The menu "Varnel" with these entries.
std::unique_ptr<QMenu> makeApplicationMenu(const ApplicationCommandActions& actions);

} // namespace Varnel
