#pragma once

#include <QKeySequence>
#include <QString>

#include <functional>
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
    bool isEnabled = true;
};

/// The entries in order. Hiding other applications and showing all of them is there and disabled: no freedesktop
/// desktop lets one program do that to another.
std::vector<ApplicationMenuEntry> applicationMenuEntries();

/// The menu "Varnel" with these entries; `choose` is called for the one that is chosen.
std::unique_ptr<QMenu> makeApplicationMenu(const std::function<void(ApplicationCommand)>& choose);

} // namespace Varnel
