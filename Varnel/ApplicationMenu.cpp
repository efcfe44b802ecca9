#include <Varnel/ApplicationMenu.h>

#include <QAction>
#include <QMenu>

namespace Varnel {

namespace {
ApplicationMenuEntry separator() {
    ApplicationMenuEntry entry;
    entry.isSeparator = true;
    return entry;
}

ApplicationMenuEntry entry(ApplicationCommand command, const QString& title, const QKeySequence& key = {},
                           bool isEnabled = true) {
    return {false, command, title, key, isEnabled};
}
} // namespace

std::vector<ApplicationMenuEntry> applicationMenuEntries() {
    return {
        entry(ApplicationCommand::about, QStringLiteral("About Varnel")),
        separator(),
        entry(ApplicationCommand::settings, QStringLiteral("Settings"), QKeyCombination(Qt::CTRL, Qt::Key_Comma)),
        entry(ApplicationCommand::checkForUpdates, QStringLiteral("Check for Updates...")),
        separator(),
        entry(ApplicationCommand::hide, QStringLiteral("Hide Varnel"), QKeyCombination(Qt::CTRL, Qt::Key_H)),
        entry(ApplicationCommand::hideOthers, QStringLiteral("Hide Others"),
              QKeyCombination(Qt::CTRL | Qt::ALT, Qt::Key_H), false),
        entry(ApplicationCommand::showAll, QStringLiteral("Show all"), {}, false),
        entry(ApplicationCommand::quit, QStringLiteral("Quit Varnel"), QKeyCombination(Qt::CTRL, Qt::Key_Q)),
    };
}

std::unique_ptr<QMenu> makeApplicationMenu(const std::function<void(ApplicationCommand)>& choose) {
    auto menu = std::make_unique<QMenu>(QStringLiteral("&Varnel"));
    for (const ApplicationMenuEntry& entry : applicationMenuEntries()) {
        if (entry.isSeparator) {
            menu->addSeparator();
            continue;
        }
        QAction* action = menu->addAction(entry.title);
        action->setShortcut(entry.key);
        action->setEnabled(entry.isEnabled);
        QObject::connect(action, &QAction::triggered, menu.get(),
                         [choose, command = entry.command] { choose(command); });
    }
    return menu;
}

} // namespace Varnel
